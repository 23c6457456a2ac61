#include "KeptSettings.h"

#include "Environment.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

using Model::inEnglish;
using Model::KeptSet;
using Model::KeptSettings;
using Model::Words;
using Support::readFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace Model {

bool operator==(const KeptSet &left, const KeptSet &right)
{
    return left.name == right.name && left.options == right.options;
}

void PrintTo(const KeptSet &set, std::ostream *out)
{
    *out << '"' << set.name << "\" " << testing::PrintToString(set.options);
}

void PrintTo(const Words &words, std::ostream *out)
{
    *out << inEnglish(words);
}

} // namespace Model

namespace {

constexpr std::string_view kForeign = "# mine, by hand\n"
                                      "Dest elsewhere/two media=A3 \n"
                                      "\tdest   HOME  empty=\"\" note=\"a\\#b\" # why\r\n"
                                      "Default home media=A4\n"
                                      "Something else\n";

class KeptSettingsTest : public testing::Test {
protected:
    std::vector<KeptSet> sets(const std::string &queue = "office") const
    {
        std::optional<Words> whyNot;
        auto found = kept.setsOf(queue, &whyNot);
        EXPECT_EQ(std::nullopt, whyNot);
        return found;
    }

    void write(std::string_view bytes) const
    {
        fs::create_directories(folder.file(".cups"));
        Support::writeFile(kept.path(), bytes);
    }

    std::string bytes() const { return readFile(kept.path()); }

    /// Does something as a user who is not root, whom permissions bind, in a process of its own.
    static void asAnother(const fs::path &home, const std::function<bool()> &action)
    {
        if (geteuid() == 0) {
            EXPECT_EQ(0, chown(home.c_str(), 65534, 65534));
        }
        const pid_t child = fork();
        if (child == 0) {
            const bool isUser = geteuid() != 0 || (setgid(65534) == 0 && setuid(65534) == 0);
            _exit(isUser && action() ? 0 : 1);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(0, status);
    }

    Support::TemporaryFolder folder;
    KeptSettings kept{folder.file(".cups/lpoptions")};
};

TEST_F(KeptSettingsTest, WithoutAFileNothingIsKept)
{
    EXPECT_THAT(sets(), IsEmpty());
}

TEST_F(KeptSettingsTest, DefaultsAndNamedSetsAreKept)
{
    const KeptSet defaults = {"", {{"Duplex", "DuplexNoTumble"}}};
    const KeptSet confidential = {
        "confidential", {{"a", "it's #5 \"x\" \\"}, {"b", "\\#"}, {"c", "{x}"}, {"d", " "}}};
    EXPECT_EQ(std::nullopt, kept.keep("office", confidential));
    EXPECT_EQ(std::nullopt, kept.keep("office", defaults));
    EXPECT_THAT(sets(), ElementsAre(defaults, confidential));
    EXPECT_THAT(sets("OFFICE"), ElementsAre(defaults, confidential));
    EXPECT_THAT(sets("home"), IsEmpty());
}

TEST_F(KeptSettingsTest, NewFileAndFolderAreTheUsersAlone)
{
    kept.keep("office", {"", {{"a", "b"}}});
    const auto modeOf = [](const fs::path &path) { return fs::status(path).permissions(); };
    EXPECT_EQ(fs::perms(0600), modeOf(kept.path()));
    EXPECT_EQ(fs::perms(0700), modeOf(folder.file(".cups")));
    EXPECT_THAT(inEnglish(kept.whoCanRead()),
                HasSubstr(kept.path() + " as they are; you and the administrator can read it"));
}

TEST_F(KeptSettingsTest, WhatOthersHaveWrittenKeepsEveryByte)
{
    write(kForeign);
    kept.keep("office", {"", {{"a", "b"}}});
    EXPECT_EQ(std::string(kForeign) + "Dest office a=b\n", bytes());
    kept.keep("office", {"x", {{"c", "d"}}});
    kept.rename("office", "x", "y");
    EXPECT_EQ(std::string(kForeign) + "Dest office a=b\nDest office/y c=d\n", bytes());
    kept.remove("office", "");
    kept.remove("office", "y");
    EXPECT_EQ(kForeign, bytes());
}

TEST_F(KeptSettingsTest, LinesAreReadAsLibcupsReadsThem)
{
    write(kForeign);
    EXPECT_THAT(sets("elsewhere"), ElementsAre(KeptSet{"two", {{"media", "A3"}}}));
    write("\tdest   HOME  empty=\"\" note=\"a\\#b\"\r\n\nDefault home media=A4");
    EXPECT_THAT(sets("home"),
                ElementsAre(KeptSet{"", {{"empty", ""}, {"media", "A4"}, {"note", "a#b"}}}));
    write("Dest office a=1 # b=2\nDest office/x noc d\n");
    EXPECT_THAT(sets(), ElementsAre(KeptSet{"", {{"a", "1"}}},
                                    KeptSet{"x", {{"c", "false"}, {"d", "true"}}}));
}

TEST_F(KeptSettingsTest, OfSeveralLinesOneIsLeft)
{
    write("Dest office a=1\nDest home x=1\nDest office b=2\n");
    EXPECT_THAT(sets(), ElementsAre(KeptSet{"", {{"a", "1"}, {"b", "2"}}}));
    kept.keep("office", {"", {{"c", "3"}}});
    EXPECT_EQ("Dest office c=3\nDest home x=1\n", bytes());
}

TEST_F(KeptSettingsTest, DefaultQueueStaysTheDefault)
{
    write("Default office a=1\n");
    kept.keep("office", {"", {{"b", "2"}}});
    EXPECT_EQ("Default office b=2\n", bytes());
    kept.remove("office", "");
    EXPECT_EQ("Default office\n", bytes());
    write("Dest office a=1\nDefault office/x b=2\n");
    kept.remove("office", "x");
    EXPECT_EQ("Default office a=1\n", bytes());
}

TEST_F(KeptSettingsTest, EmptyValueIsNotKept)
{
    kept.keep("office", {"", {{"a", ""}, {"b", "2"}}});
    EXPECT_EQ("Dest office b=2\n", bytes());
}

TEST_F(KeptSettingsTest, WithoutOptionsThereAreNoDefaultsButASetThatHasAName)
{
    kept.keep("office", {"", {{"a", "b"}}});
    kept.keep("office", {"", {}});
    kept.keep("office", {"plain", {}});
    EXPECT_THAT(sets(), ElementsAre(KeptSet{"plain", {}}));
}

TEST_F(KeptSettingsTest, RenamingNeedsASetAndANameThatIsFree)
{
    kept.keep("office", {"a", {{"x", "1"}}});
    kept.keep("office", {"b", {{"x", "2"}}});
    EXPECT_EQ("There are no settings of the name c",
              inEnglish(kept.rename("office", "c", "d").value()));
    EXPECT_EQ("There are settings of the name b already",
              inEnglish(kept.rename("office", "a", "b").value()));
    EXPECT_EQ(std::nullopt, kept.rename("office", "a", "c"));
    EXPECT_THAT(sets(), ElementsAre(KeptSet{"c", {{"x", "1"}}}, KeptSet{"b", {{"x", "2"}}}));
}

TEST_F(KeptSettingsTest, NamesThatTheFileCannotHoldAreRefused)
{
    for (const std::string name : {"", "a b", "a/b", "a#b", "a\\b", "a\"b", "a'b", "a\nb", "a=b"}) {
        EXPECT_NE(std::nullopt, KeptSettings::objectionToName(name)) << name;
        EXPECT_NE(std::nullopt, kept.rename("office", "x", name)) << name;
    }
    EXPECT_NE(std::nullopt, kept.keep("office", {"a b", {{"x", "1"}}}));
    EXPECT_NE(std::nullopt, KeptSettings::objectionToName(std::string(128, 'x')));
    EXPECT_EQ(std::nullopt, KeptSettings::objectionToName("vertraulich-für-alle"));
    EXPECT_FALSE(fs::exists(kept.path()));
}

TEST_F(KeptSettingsTest, WhatIsTooLongForTheFileIsNotKept)
{
    write(kForeign);
    const auto whyNot = kept.keep("office", {"", {{"a", std::string(8190, 'x')}}});
    EXPECT_THAT(inEnglish(whyNot.value()), HasSubstr("too long to be kept"));
    EXPECT_EQ(kForeign, bytes());
    EXPECT_EQ(std::nullopt, kept.keep("office", {"", {{"a", std::string(8100, 'x')}}}));
}

TEST_F(KeptSettingsTest, ReadOnlyHomeIsSaidAndNothingIsLost)
{
    write(kForeign);
    for (const char *name : {"", ".cups"})
        fs::permissions(folder.file(name), fs::perms(0555));
    fs::permissions(kept.path(), fs::perms(0444));
    asAnother(folder.path(), [this] {
        fs::permissions(folder.path(), fs::perms(0555));
        const auto whyNot = kept.keep("office", {"", {{"a", "b"}}});
        return whyNot && whyNot->arguments.at(0).asTheyAre == kept.path() &&
               inEnglish(*whyNot).find("Permission denied. It is as it was") != std::string::npos;
    });
    fs::permissions(folder.path(), fs::perms(0755));
    fs::permissions(folder.file(".cups"), fs::perms(0755));
    EXPECT_EQ(kForeign, bytes());
    EXPECT_EQ(1, std::distance(fs::directory_iterator(folder.file(".cups")), {}));
}

TEST_F(KeptSettingsTest, HomeWithoutTheFolderThatCannotHaveOneIsSaid)
{
    asAnother(folder.path(), [this] {
        fs::permissions(folder.path(), fs::perms(0555));
        return kept.keep("office", {"", {{"a", "b"}}}).has_value();
    });
    fs::permissions(folder.path(), fs::perms(0755));
    EXPECT_FALSE(fs::exists(folder.file(".cups")));
}

TEST_F(KeptSettingsTest, FullDiskIsSaidAndNothingIsLost)
{
    write(kForeign);
    const pid_t child = fork();
    if (child == 0) {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {64, 64}; // bytes that a file may have: as if there were no more room
        setrlimit(RLIMIT_FSIZE, &limit);
        _exit(kept.keep("office", {"", {{"a", "b"}}}) ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(0, status);
    EXPECT_EQ(kForeign, bytes());
    EXPECT_EQ(1, std::distance(fs::directory_iterator(folder.file(".cups")), {}));
}

TEST_F(KeptSettingsTest, FileThatCannotBeReadIsSaid)
{
    fs::create_directories(kept.path()); // a folder of that name
    std::optional<Words> whyNot;
    EXPECT_THAT(kept.setsOf("office", &whyNot), IsEmpty());
    EXPECT_THAT(inEnglish(whyNot.value()), HasSubstr(kept.path() + " cannot be read: "));
    EXPECT_NE(std::nullopt, kept.keep("office", {"", {{"a", "b"}}}));
}

TEST_F(KeptSettingsTest, WithoutAHomeNothingCanBeKept)
{
    EXPECT_EQ("There is no home folder to keep settings in",
              inEnglish(KeptSettings("").keep("office", {"", {{"a", "b"}}}).value()));
}

TEST_F(KeptSettingsTest, LinkStaysALinkAndTheFileKeepsItsMode)
{
    fs::create_directories(folder.file(".cups"));
    folder.write("dotfile", "Dest home a=1\n");
    fs::permissions(folder.file("dotfile"), fs::perms(0640));
    fs::create_symlink(folder.file("dotfile"), kept.path());
    EXPECT_EQ(std::nullopt, kept.keep("office", {"", {{"a", "b"}}}));
    EXPECT_TRUE(fs::is_symlink(kept.path()));
    EXPECT_EQ("Dest home a=1\nDest office a=b\n", readFile(folder.file("dotfile")));
    EXPECT_EQ(fs::perms(0640), fs::status(folder.file("dotfile")).permissions());
}

TEST_F(KeptSettingsTest, ClientsAddTheUsersDefaultsOnTopOfEverybodys)
{
    const Support::ScopedEnvironment home("HOME", folder.path());
    const Support::ScopedEnvironment system("CUPS_SERVERROOT", folder.file("etc"));
    EXPECT_EQ(kept.path(), KeptSettings().path());
    KeptSettings::ofEverybody().keep("office", {"", {{"a", "1"}, {"b", "1"}}});
    kept.keep("office", {"", {{"b", "2"}}});
    kept.keep("office", {"named", {{"c", "3"}}});
    EXPECT_THAT(Model::optionsAddedByClients("office"),
                ElementsAre(std::pair("a", "1"), std::pair("b", "2")));
}

TEST_F(KeptSettingsTest, SaysWhoCanReadIt)
{
    write(kForeign);
    fs::permissions(kept.path(), fs::perms(0644));
    fs::permissions(folder.path(), fs::perms(0755));
    fs::permissions(folder.file(".cups"), fs::perms(0755));
    EXPECT_THAT(inEnglish(kept.whoCanRead()), HasSubstr("everybody on this computer"));
    fs::permissions(folder.file(".cups"), fs::perms(0700));
    EXPECT_THAT(inEnglish(kept.whoCanRead()), HasSubstr("you and the administrator can read it"));
    fs::permissions(folder.file(".cups"), fs::perms(0755));
    fs::permissions(kept.path(), fs::perms(0640));
    EXPECT_THAT(inEnglish(kept.whoCanRead()), HasSubstr("and the group "));
}

} // namespace
