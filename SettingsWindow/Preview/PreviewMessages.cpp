#include "PreviewMessages.h"

#include <QDataStream>
#include <QIODevice>

#include <cmath>
#include <cstddef>
#include <type_traits>
#include <utility>

namespace {

// A message is the number of its kind, the length of what follows, and that.

using PreviewAnswers::Failed;
using PreviewAnswers::Picture;
using PreviewAnswers::Sheets;
using PreviewRequests::Draw;
using PreviewRequests::Prepare;

constexpr qsizetype kHeadBytes = 2 * sizeof(quint32);
constexpr QDataStream::Version kVersion = QDataStream::Qt_6_4;
constexpr double kMostPoints = 1e7; ///< of a page's edge; far more than a page can have

void write(QDataStream &stream, const Prepare &prepare)
{
    stream << prepare.optionString << prepare.documentPath << prepare.toolkitBundle
           << prepare.userName << prepare.title << prepare.memory << prepare.writing
           << prepare.pages << prepare.preparingSeconds << prepare.drawingSeconds;
}

bool read(QDataStream &stream, Prepare &prepare)
{
    stream >> prepare.optionString >> prepare.documentPath >> prepare.toolkitBundle >>
        prepare.userName >> prepare.title >> prepare.memory >> prepare.writing >> prepare.pages >>
        prepare.preparingSeconds >> prepare.drawingSeconds;
    return true;
}

void write(QDataStream &stream, const Draw &draw)
{
    stream << draw.page << draw.box;
}

bool read(QDataStream &stream, Draw &draw)
{
    stream >> draw.page >> draw.box;
    return draw.page >= 0 && !draw.box.isEmpty();
}

/// A value of an enumeration that ends with `last`.
template <class Enumeration>
bool readEnumeration(QDataStream &stream, Enumeration &value, Enumeration last)
{
    quint8 number = 0;
    stream >> number;
    value = static_cast<Enumeration>(number);
    return number <= static_cast<quint8>(last);
}

void write(QDataStream &stream, const Refusal &refusal)
{
    stream << refusal.description << refusal.reason;
}

bool read(QDataStream &stream, Refusal &refusal)
{
    stream >> refusal.description >> refusal.reason;
    return true;
}

void write(QDataStream &stream, Note note)
{
    stream << static_cast<quint8>(note);
}

bool read(QDataStream &stream, Note &note)
{
    return readEnumeration(stream, note, Note::NoToolkit);
}

void write(QDataStream &stream, const Sheet &sheet)
{
    stream << static_cast<quint8>(sheet.kind) << static_cast<quint8>(sheet.turnedOver)
           << qint32(sheet.frontPage) << qint32(sheet.backPage) << sheet.tray << sheet.medium
           << sheet.front << sheet.back;
}

bool read(QDataStream &stream, Sheet &sheet)
{
    const bool known = readEnumeration(stream, sheet.kind, Sheet::Kind::BackCover) &&
                       readEnumeration(stream, sheet.turnedOver, Sheet::Edge::Short);
    qint32 frontPage = 0;
    qint32 backPage = 0;
    stream >> frontPage >> backPage >> sheet.tray >> sheet.medium >> sheet.front >> sheet.back;
    sheet.frontPage = frontPage;
    sheet.backPage = backPage;
    return known && frontPage >= 0 && backPage >= -1 && canBeDrawn(sheet.front) &&
           (!sheet.hasBack() || canBeDrawn(sheet.back));
}

void write(QDataStream &stream, const Sheets &sheets)
{
    for (const Sheet &sheet : sheets.sheets)
        write(stream, sheet);
}

/// How many there are is not said ahead: nobody can make this take more memory than was sent.
bool read(QDataStream &stream, Sheets &sheets)
{
    while (!stream.atEnd() && stream.status() == QDataStream::Ok) {
        Sheet sheet;
        if (!read(stream, sheet))
            return false;
        sheets.sheets.append(sheet);
    }
    return !sheets.sheets.isEmpty();
}

void write(QDataStream &stream, const Picture &picture)
{
    stream << picture.size << picture.pixels;
}

bool read(QDataStream &stream, Picture &picture)
{
    stream >> picture.size >> picture.pixels;
    return !picture.size.isEmpty() &&
           picture.pixels.size() / 4 / picture.size.width() == picture.size.height() &&
           picture.pixels.size() % (qsizetype{4} * picture.size.width()) == 0;
}

void write(QDataStream &stream, const Failed &failed)
{
    stream << static_cast<quint8>(failed.failure) << failed.detail;
}

bool read(QDataStream &stream, Failed &failed)
{
    const bool known = readEnumeration(stream, failed.failure, Failure::Other);
    stream >> failed.detail;
    return known;
}

template <class Message>
QByteArray bytesOfMessage(const Message &message)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(kVersion);
    stream << static_cast<quint32>(message.index()) << quint32(0);
    std::visit([&stream](const auto &alternative) { write(stream, alternative); }, message);
    stream.device()->seek(sizeof(quint32));
    stream << static_cast<quint32>(bytes.size() - kHeadBytes);
    return bytes;
}

/// The message of that kind, if the bytes are one from the first to the last.
template <class Message, std::size_t Kind = 0>
std::optional<Message> messageOfKind(quint32 kind, const QByteArray &bytes)
{
    if constexpr (Kind < std::variant_size_v<Message>) {
        if (kind != Kind)
            return messageOfKind<Message, Kind + 1>(kind, bytes);
        std::variant_alternative_t<Kind, Message> message = {};
        QDataStream stream(bytes);
        stream.setVersion(kVersion);
        if (read(stream, message) && stream.atEnd() && stream.status() == QDataStream::Ok)
            return message;
    }
    return std::nullopt;
}

} // namespace

bool canBeDrawn(QSizeF size)
{
    const auto isEdge = [](double edge) { return std::isfinite(edge) && edge <= kMostPoints; };
    return !size.isEmpty() && isEdge(size.width()) && isEdge(size.height());
}

QByteArray bytesOf(const PreviewRequest &request)
{
    return bytesOfMessage(request);
}

QByteArray bytesOf(const PreviewAnswer &answer)
{
    return bytesOfMessage(answer);
}

template <class Message>
std::optional<Message> MessageReader<Message>::next()
{
    if (_isNonsense || _bytes.size() < kHeadBytes)
        return std::nullopt;
    QDataStream head(_bytes);
    quint32 kind = 0;
    quint32 length = 0;
    head >> kind >> length;
    _isNonsense = kind >= std::variant_size_v<Message> || length > _mostBytes;
    if (_isNonsense || _bytes.size() - kHeadBytes < length)
        return std::nullopt;
    auto message = messageOfKind<Message>(kind, _bytes.mid(kHeadBytes, length));
    _isNonsense = !message;
    _bytes.remove(0, kHeadBytes + length);
    return message;
}

template class MessageReader<PreviewRequest>;
template class MessageReader<PreviewAnswer>;
