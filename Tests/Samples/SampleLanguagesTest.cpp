#include "Program.h"
#include "TemporaryFolder.h"
#include "ppdLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace fs = std::filesystem;

using Support::readFile;
using Support::runProgram;
using Support::TemporaryFolder;

namespace {

constexpr const char *kPPDs[] = {KL_SAMPLE_PPD, KL_SAMPLE_PDF_PPD};
constexpr const char *kLanguages[] = {"de", "es", "fr", "ja", "zh_CN"};

using Catalogue = std::map<std::string, std::string>;

/// The English texts of a language's catalogue, and what they are in that language.
Catalogue catalogueOf(const std::string &language)
{
    const std::string text = readFile(std::string(KL_CATALOGUES "/") + language + ".po");
    const std::regex entry("\nmsgid \"(.+)\"\nmsgstr \"(.*)\"\n");
    Catalogue catalogue;
    for (std::sregex_iterator match(text.begin(), text.end(), entry), end; match != end; ++match)
        EXPECT_TRUE(catalogue.emplace((*match)[1], (*match)[2]).second) << (*match)[1];
    return catalogue;
}

/// The texts of a PPD by what they belong to, as dialogs show them.
using Texts = std::map<std::string, std::string>;

void addOption(Texts &texts, ppd_file_t *ppd, const ppd_option_t &option)
{
    const std::string keyword = option.keyword;
    texts[keyword] = option.text;
    for (int c = 0; c < option.num_choices; c++)
        texts[keyword + "=" + option.choices[c].choice] = option.choices[c].text;
    if (ppd_coption_t *custom = ppdFindCustomOption(ppd, option.keyword))
        texts[keyword + " typed"] = ppdFirstCustomParam(custom)->text;
}

Texts textsOf(ppd_file_t *ppd)
{
    Texts texts;
    for (int g = 0; g < ppd->num_groups; g++) {
        const ppd_group_t &group = ppd->groups[g];
        if (std::string(group.name) != "General") // libcups' own
            texts[std::string("group ") + group.name] = group.text;
        for (int o = 0; o < group.num_options; o++)
            if (std::string(group.options[o].keyword) != "PageRegion") // shown by no dialog
                addOption(texts, ppd, group.options[o]);
    }
    return texts;
}

/// The texts of a PPD for people of a locale. In a thread of its own, for which libcups asks anew
/// what the locale is.
Texts localizedTextsOf(const char *path, const std::string &locale)
{
    for (const char *name : {"LC_ALL", "LC_MESSAGES", "LANGUAGE"})
        unsetenv(name);
    setenv("LANG", locale.c_str(), 1);
    Texts texts;
    std::thread([&] {
        const std::unique_ptr<ppd_file_t, decltype(&ppdClose)> ppd(ppdOpenFile(path), ppdClose);
        ASSERT_NE(nullptr, ppd.get());
        ppdLocalize(ppd.get());
        texts = textsOf(ppd.get());
    }).join();
    return texts;
}

Texts englishTextsOf(const char *path)
{
    return localizedTextsOf(path, "en_GB.UTF-8");
}

/// All English texts of the drivers.
std::set<std::string> englishTexts()
{
    std::set<std::string> all;
    for (const char *path : kPPDs)
        for (const auto &[name, text] : englishTextsOf(path))
            all.insert(text);
    return all;
}

TEST(SampleLanguagesTest, NoTextLacksItsTranslationAndNoTranslationItsText)
{
    const auto expected = englishTexts();
    ASSERT_LT(100U, expected.size());
    for (const char *language : kLanguages) {
        std::set<std::string> translated;
        for (const auto &[english, translation] : catalogueOf(language)) {
            translated.insert(english);
            EXPECT_NE("", translation) << language << ": " << english;
        }
        EXPECT_EQ(expected, translated) << language;
    }
}

// Whole ones too: libcups cuts the text of a group after 40 bytes and any other after 80.
TEST(SampleLanguagesTest, DialogsShowWhatTheCatalogueSays)
{
    for (const char *path : kPPDs) {
        const Texts english = englishTextsOf(path);
        for (const char *language : kLanguages) {
            const Catalogue catalogue = catalogueOf(language);
            const Texts shown = localizedTextsOf(path, std::string(language) + ".UTF-8");
            EXPECT_EQ(english.size(), shown.size());
            for (const auto &[name, text] : shown)
                EXPECT_EQ(catalogue.at(english.at(name)), text) << language << ": " << name;
        }
    }
}

// A few by hand, so that a catalogue that says nothing would show.
TEST(SampleLanguagesTest, PeopleReadTheirOwnLanguage)
{
    const std::map<std::string, std::vector<std::string>> expected = {
        {"en_US", {"Department Code", "Watermark", "Custom", "Saddle Stitch", "Paper and Sides"}},
        {"de_AT",
         {"Abteilungscode", "Wasserzeichen", "Benutzerdefiniert", "Sattelheftung",
          "Papier und Seiten"}},
        {"es_MX",
         {"Código de departamento", "Marca de agua", "Personalizado", "Grapado a caballete",
          "Papel y caras"}},
        {"fr_CA",
         {"Code de service", "Filigrane", "Personnalisé", "Piqûre à cheval", "Papier et faces"}},
        {"ja_JP", {"部門コード", "透かし", "カスタム", "中とじ", "用紙と印刷面"}},
        {"zh_CN", {"部门代码", "水印", "自定义", "骑马订", "纸张和单双面"}},
    };
    for (const auto &[locale, texts] : expected) {
        Texts shown = localizedTextsOf(KL_SAMPLE_PPD, locale + ".UTF-8");
        EXPECT_THAT(
            (std::vector<std::string>{shown["KLDepartmentCode typed"], shown["KLWatermarkText"],
                                      shown["KLWatermarkText=Custom"], shown["Staple=Saddle"],
                                      shown["group PaperHandling"]}),
            testing::ElementsAreArray(texts))
            << locale;
    }
}

TEST(SampleLanguagesTest, PPDsNameTheirLanguages)
{
    for (const char *path : kPPDs)
        EXPECT_THAT(readFile(path),
                    testing::HasSubstr("\n*cupsLanguages: \"en de es fr ja zh_CN\"\n"));
}

TEST(SampleLanguagesTest, SchedulerGivesTheInstalledDriversOut)
{
    const TemporaryFolder folder;
    fs::create_directories(folder.file("model"));
    fs::create_directory_symlink(KL_INSTALLED_DRIVERS, folder.file("model/jobfilter"));
    const auto driverd = [&folder](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), KL_CUPS_SERVERBIN "/daemon/cups-driverd");
        return runProgram({.arguments = arguments,
                           .environment = {{"CUPS_CACHEDIR", folder.path()},
                                           {"CUPS_DATADIR", folder.path()},
                                           {"CUPS_SERVERBIN", KL_CUPS_SERVERBIN},
                                           {"CUPS_SERVERROOT", folder.path()}}});
    };
    for (const fs::path path : kPPDs) {
        const std::string name = path.filename().string();
        const auto given = driverd({"cat", "jobfilter/" + name});
        EXPECT_EQ(0, given.exitStatus) << given.errors;
        EXPECT_EQ(readFile(KL_INSTALLED_DRIVERS "/" + name), given.output) << given.errors;
    }
}

} // namespace
