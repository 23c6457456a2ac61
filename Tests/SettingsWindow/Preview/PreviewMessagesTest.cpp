#include "PreviewMessages.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr qint64 kMostBytes = 1000;

template <class Message>
std::optional<Message> readBack(const Message &message)
{
    MessageReader<Message> reader(kMostBytes);
    reader.add(bytesOf(message));
    return reader.next();
}

PreviewAnswer sheetsWith(const Sheet &sheet)
{
    return PreviewAnswers::Sheets{{sheet}};
}

Sheet soundSheet()
{
    return {
        Sheet::Kind::BackCover, 4, 5, Sheet::Edge::Short, "Tray2", "Card", {595, 842}, {842, 595}};
}

bool isRefused(const PreviewAnswer &answer)
{
    MessageReader<PreviewAnswer> reader(kMostBytes);
    reader.add(bytesOf(answer));
    return !reader.next() && reader.isNonsense();
}

TEST(PreviewMessagesTest, RequestsArriveAsTheyWereSent)
{
    const PreviewRequest prepare = PreviewRequests::Prepare{
        "PageSize=A4", "/tmp/ä.pdf", "/bundle", "anna", "Title", 1, 2, 3, 4, 5};
    const PreviewRequest draw = PreviewRequests::Draw{7, {640, 480}};
    EXPECT_EQ(prepare, readBack(prepare));
    EXPECT_EQ(draw, readBack(draw));
}

TEST(PreviewMessagesTest, AnswersArriveAsTheyWereSent)
{
    const PreviewAnswer answers[] = {Refusal{"Unable", "because"}, Note::NoToolkit,
                                     sheetsWith(soundSheet()),
                                     PreviewAnswers::Picture{{2, 1}, "12345678"},
                                     PreviewAnswers::Failed{Failure::Other, "words"}};
    for (const PreviewAnswer &answer : answers)
        EXPECT_EQ(answer, readBack(answer));
}

TEST(PreviewMessagesTest, MessagesAreReadFromPiecesOfAnySize)
{
    const PreviewAnswer first = Refusal{"a", "b"};
    const PreviewAnswer second = Note::CoversOfJobsPaper;
    MessageReader<PreviewAnswer> reader(kMostBytes);
    std::vector<PreviewAnswer> read;
    for (const char byte : bytesOf(first) + bytesOf(second)) {
        reader.add(QByteArray(1, byte));
        while (const auto answer = reader.next())
            read.push_back(*answer);
    }
    EXPECT_EQ((std::vector{first, second}), read);
    EXPECT_FALSE(reader.isNonsense());
}

TEST(PreviewMessagesTest, AMessageOfAnUnknownKindIsNonsense)
{
    MessageReader<PreviewAnswer> reader(kMostBytes);
    reader.add(QByteArray("\0\0\0\x05\0\0\0\0", 8)); // there are five kinds
    EXPECT_FALSE(reader.next());
    EXPECT_TRUE(reader.isNonsense());
}

TEST(PreviewMessagesTest, AMessageThatIsTooLongIsNonsenseBeforeItIsThere)
{
    MessageReader<PreviewAnswer> reader(kMostBytes);
    reader.add(QByteArray("\0\0\0\0\0\0\x03\xe9", 8)); // 1001
    EXPECT_FALSE(reader.next());
    EXPECT_TRUE(reader.isNonsense());
}

TEST(PreviewMessagesTest, NothingIsReadBehindNonsense)
{
    MessageReader<PreviewAnswer> reader(kMostBytes);
    reader.add(QByteArray("\0\0\0\x05\0\0\0\0", 8) + bytesOf(PreviewAnswer(Note::NoToolkit)));
    EXPECT_FALSE(reader.next());
    EXPECT_FALSE(reader.next());
}

TEST(PreviewMessagesTest, EveryTruncationOfAMessageIsNoMessage)
{
    const PreviewAnswer answer = sheetsWith(soundSheet());
    const QByteArray whole = bytesOf(answer);
    for (qsizetype length = 8; length < whole.size(); ++length) {
        QByteArray cut = whole.first(length);
        cut[7] = static_cast<char>(length - 8); // which says that it is all
        MessageReader<PreviewAnswer> reader(kMostBytes);
        reader.add(cut);
        EXPECT_FALSE(reader.next()) << length;
        EXPECT_TRUE(reader.isNonsense()) << length;
    }
}

TEST(PreviewMessagesTest, AMessageWithAnyByteChangedIsReadOrRefused)
{
    const QByteArray whole = bytesOf(sheetsWith(soundSheet()));
    for (qsizetype place = 0; place < whole.size(); ++place) {
        for (int change = 1; change < 256; ++change) {
            QByteArray changed = whole;
            changed[place] = static_cast<char>(changed[place] ^ change);
            MessageReader<PreviewAnswer> reader(kMostBytes);
            reader.add(changed);
            const bool isShort = place == 7 || place == 6; // less is said to follow, or more
            EXPECT_TRUE(reader.next() || reader.isNonsense() || isShort) << place << " " << change;
        }
    }
}

TEST(PreviewMessagesTest, BytesBehindAMessageAreNonsense)
{
    QByteArray bytes = bytesOf(PreviewAnswer(Note::NoToolkit)) + "x";
    bytes[7] = static_cast<char>(bytes.size() - 8);
    MessageReader<PreviewAnswer> reader(kMostBytes);
    reader.add(bytes);
    EXPECT_FALSE(reader.next());
    EXPECT_TRUE(reader.isNonsense());
}

TEST(PreviewMessagesTest, APictureHasExactlyThePixelsThatItsSizeAsksFor)
{
    EXPECT_TRUE(isRefused(PreviewAnswers::Picture{{2, 1}, "1234567"}));
    EXPECT_TRUE(isRefused(PreviewAnswers::Picture{{2, 1}, "123456789"}));
    EXPECT_TRUE(isRefused(PreviewAnswers::Picture{{2, 2}, "12345678"}));
    EXPECT_TRUE(isRefused(PreviewAnswers::Picture{{0, 0}, ""}));
    EXPECT_TRUE(isRefused(PreviewAnswers::Picture{{-2, -1}, "12345678"}));
    EXPECT_TRUE(isRefused(PreviewAnswers::Picture{{65536, 65536}, ""})); // 2^34 bytes
    EXPECT_TRUE(isRefused(PreviewAnswers::Picture{
        {std::numeric_limits<int>::max(), std::numeric_limits<int>::max()}, "1234"}));
}

TEST(PreviewMessagesTest, SheetsHaveExtentsThatCanBeDrawn)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const QSizeF size : {QSizeF(0, 842), QSizeF(595, -1), QSizeF(kInfinity, 842),
                              QSizeF(std::nan(""), 842), QSizeF(595, 1e8)}) {
        Sheet front = soundSheet();
        front.front = size;
        EXPECT_TRUE(isRefused(sheetsWith(front))) << size.width() << " " << size.height();
        Sheet back = soundSheet();
        back.back = size;
        EXPECT_TRUE(isRefused(sheetsWith(back))) << size.width() << " " << size.height();
    }
}

TEST(PreviewMessagesTest, SheetsHavePagesAndKindsThatThereAre)
{
    Sheet noFront = soundSheet();
    noFront.frontPage = -1;
    EXPECT_TRUE(isRefused(sheetsWith(noFront)));
    Sheet wrongBack = soundSheet();
    wrongBack.backPage = -2;
    EXPECT_TRUE(isRefused(sheetsWith(wrongBack)));
    Sheet wrongKind = soundSheet();
    wrongKind.kind = static_cast<Sheet::Kind>(3);
    EXPECT_TRUE(isRefused(sheetsWith(wrongKind)));
    EXPECT_TRUE(isRefused(PreviewAnswers::Sheets{}));
    EXPECT_TRUE(isRefused(PreviewAnswers::Failed{static_cast<Failure>(15), {}}));
    EXPECT_TRUE(isRefused(PreviewAnswer(static_cast<Note>(2))));
}

TEST(PreviewMessagesTest, ARequestToDrawHasAPageAndABox)
{
    for (const PreviewRequests::Draw draw :
         {PreviewRequests::Draw{-1, {10, 10}}, PreviewRequests::Draw{0, {0, 10}}}) {
        MessageReader<PreviewRequest> reader(kMostBytes);
        reader.add(bytesOf(PreviewRequest(draw)));
        EXPECT_FALSE(reader.next());
        EXPECT_TRUE(reader.isNonsense());
    }
}

} // namespace
