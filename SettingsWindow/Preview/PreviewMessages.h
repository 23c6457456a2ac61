#pragma once

#include "Sheet.h"

#include <QByteArray>
#include <QList>
#include <QSize>
#include <QString>

#include <optional>
#include <variant>

// What the window and the process that opens documents say to each other, through the standard
// streams of the latter. Either side may be anything, so whatever is read is checked.

/// What the toolkit has not done: what was asked for ("Unable to apply watermark"), and its words.
struct Refusal {
    QString description;
    QString reason; ///< perhaps empty
    bool operator==(const Refusal &) const = default;
};

/// What is to be known of sheets that are otherwise as asked for.
enum class Note {
    CoversOfJobsPaper, ///< a cover was to be of other paper than the job, which is a PDF
    NoToolkit,         ///< the queue names no toolkit: nothing is done to the document
};

/// Why there are no sheets, or no picture.
enum class Failure {
    DocumentUnreadable, ///< the system's words are the detail
    DocumentEmpty,
    DocumentNoPDF,
    DocumentDamaged,
    DocumentLocked, ///< with a password
    TooManyPages,
    NoPPD,      ///< the detail names the file and the reason
    NoToolkit,  ///< ours is not where it is installed; the detail says what there is instead
    NoPlace,    ///< for temporary files; the detail is the system's words
    NotDrawn,   ///< a page
    NotStarted, ///< the process, the detail is the system's words
    NoMemory,
    TooLong, ///< in time
    Ended,   ///< by itself, unexpectedly; the detail says how
    Other,   ///< in the words of the detail
};

namespace PreviewRequests {

/// The first one: opens the document.
struct Prepare {
    QString optionString;
    QString documentPath; ///< empty for the sample
    QString toolkitBundle;
    QString userName;
    QString title;
    qint64 memory = 0;  ///< @see PreviewLimits
    qint64 writing = 0; ///< likewise
    qint32 pages = 0;   ///< likewise
    qint32 preparingSeconds = 0;
    qint32 drawingSeconds = 0;
    bool operator==(const Prepare &) const = default;
};

/// All further ones: draws a page.
struct Draw {
    qint32 page = 0;
    QSize box = {}; ///< pixels, which the page is fitted into
    bool operator==(const Draw &) const = default;
};

} // namespace PreviewRequests

using PreviewRequest = std::variant<PreviewRequests::Prepare, PreviewRequests::Draw>;

namespace PreviewAnswers {

/// To Prepare, after any refusals and notes.
struct Sheets {
    QList<Sheet> sheets; ///< at least one
    bool operator==(const Sheets &) const = default;
};

/// To Draw.
struct Picture {
    QSize size; ///< pixels
    /// Row by row from the top, four bytes each as QImage::Format_RGB32 has them.
    QByteArray pixels;
    bool operator==(const Picture &) const = default;
};

/// To either, in the place of the above.
struct Failed {
    Failure failure = Failure::Other;
    QString detail = {};
    bool operator==(const Failed &) const = default;
};

} // namespace PreviewAnswers

using PreviewAnswer = std::variant<Refusal, Note, PreviewAnswers::Sheets, PreviewAnswers::Picture,
                                   PreviewAnswers::Failed>;

/// Whether a page's extent, in points, is one: above 0 and of a length that a page can have.
bool canBeDrawn(QSizeF size);

/// The bytes of a message.
QByteArray bytesOf(const PreviewRequest &request);
QByteArray bytesOf(const PreviewAnswer &answer);

/// Takes messages out of bytes as they come in, in pieces of any size.
template <class Message>
class MessageReader {
public:
    /// @param mostBytes  a longer message is nonsense
    explicit MessageReader(qint64 mostBytes) : _mostBytes(mostBytes) {}

    void add(const QByteArray &bytes) { _bytes += bytes; }

    /// @return nullopt until the next message is there as a whole, and from nonsense on
    std::optional<Message> next();

    /// Whether something else has come than a message.
    bool isNonsense() const { return _isNonsense; }

private:
    qint64 _mostBytes;
    QByteArray _bytes;
    bool _isNonsense = false;
};

extern template class MessageReader<PreviewRequest>;
extern template class MessageReader<PreviewAnswer>;
