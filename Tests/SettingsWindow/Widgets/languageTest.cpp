#include "language.h"

#include "OffscreenApplication.h"
#include "Words.h"
#include "words.h"

#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QTranslator>
#include <QXmlStreamReader>

#include <gmock/gmock.h>

#include <set>
#include <string>

namespace {

[[maybe_unused]] const auto *const application =
    testing::AddGlobalTestEnvironment(new OffscreenApplication);

/// Translations by their English texts; an empty one for what is not finished.
using Catalogue = QMap<QString, QString>;

Catalogue readCatalogue(const QString &name)
{
    QFile file(KL_TRANSLATIONS "/" + name + ".ts");
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    QXmlStreamReader reader(&file);
    Catalogue catalogue;
    QString source;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == u"source")
            source = reader.readElementText();
        else if (reader.name() == u"translation") {
            const bool isFinished = !reader.attributes().hasAttribute("type");
            const QString words =
                reader.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
            catalogue.insert(source, isFinished ? words : QString());
        }
    }
    EXPECT_FALSE(reader.hasError()) << name.toStdString() << reader.errorString().toStdString();
    return catalogue;
}

/// The places for other words, sorted: "%1", "%2", "%n".
QStringList placesIn(const QString &text)
{
    static const QRegularExpression place("%L?([0-9]+|n)");
    QStringList places;
    for (const QRegularExpressionMatch &match : place.globalMatch(text))
        places.append(match.captured());
    places.removeDuplicates();
    places.sort();
    return places;
}

class LanguageTest : public testing::TestWithParam<const char *> {
protected:
    static Catalogue catalogue(const char *part)
    {
        return readCatalogue(QString("%1_%2").arg(part, GetParam()));
    }
};

TEST_P(LanguageTest, HasExactlyTheWordsOfTheModel)
{
    std::set<std::string> texts;
    for (const QString &text : catalogue("model").keys())
        texts.insert(text.toStdString());
    const auto words = Model::allWords();
    const std::set<std::string> wanted(words.begin(), words.end());
    EXPECT_EQ(wanted, texts);
}

TEST_P(LanguageTest, EveryTextIsTranslatedAndKeepsItsPlacesForWords)
{
    for (const char *part : {"model", "window"}) {
        const Catalogue texts = catalogue(part);
        EXPECT_GT(texts.size(), 50);
        for (auto text = texts.begin(); text != texts.end(); ++text) {
            EXPECT_FALSE(text.value().isEmpty()) << text.key().toStdString();
            EXPECT_EQ(placesIn(text.key()), placesIn(text.value())) << text.key().toStdString();
        }
    }
}

/// What is in the catalogues is in the program, under the name of the language.
TEST_P(LanguageTest, ProgramSpeaksIt)
{
    speakLanguage(*QCoreApplication::instance(), QLocale(GetParam()));
    EXPECT_EQ(catalogue("model").value("Booklet"), inWords({"Booklet"}));
    const auto translators = QCoreApplication::instance()->findChildren<QTranslator *>();
    for (QTranslator *translator : translators)
        QCoreApplication::removeTranslator(translator);
    qDeleteAll(translators);
}

INSTANTIATE_TEST_SUITE_P(OfTheDriver, LanguageTest,
                         testing::Values("de", "es", "fr", "ja", "zh_CN"),
                         [](const auto &language) { return std::string(language.param); });

} // namespace
