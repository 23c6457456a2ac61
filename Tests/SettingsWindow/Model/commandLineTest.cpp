#include "commandLine.h"

#include "Program.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>

using Model::commandLine;
using Model::optionString;
using Model::Queue;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

/// Values that mean something to a shell or to an option string.
const JobOptions kOptions = {
    {"a", ""},
    {"b", "'"},
    {"c", "{braces}"},
    {"com.kalmira.pde.watermark.text", "a=b, 'c' \"d\"\\"},
    {"d", "\\"},
    {"e", " leading and trailing "},
    {"f", "tab\tand\nline"},
    {"g", "100%,5-7"},
    {"h", "用紙"},
    {"i", "*?[a]~&;|<>"},
    {"KLBoxName", "Custom.Sales \"team\" (Köln)"},
    {"KLWatermarkText", "Custom.it's $HOME `id` \\ #1 {a=b} !x"},
    {"media", "A4"},
};

class CommandLineTest : public testing::Test {
protected:
    Queue office() const
    {
        Queue queue;
        queue.name = "office";
        return queue;
    }

    /// The words that lp gets when a shell runs the line.
    std::vector<std::string> wordsFor(const std::string &line) const
    {
        const std::string result = folder.file("words");
        folder.writeScript("lp", "for word; do printf '%s\\0' \"$word\"; done >" + result + "\n");
        Support::runProgram({.arguments = {"/bin/sh", "-c", line},
                             .environment = {{"PATH", folder.path() + ":/usr/bin:/bin"}}});
        const std::string bytes = Support::readFile(result);
        std::vector<std::string> words;
        for (std::size_t at = 0; at < bytes.size();) {
            words.emplace_back(bytes.c_str() + at);
            at += words.back().size() + 1;
        }
        return words;
    }

    /// What lp makes of its words behind "-o".
    JobOptions optionsIn(const std::vector<std::string> &words) const
    {
        JobOptions options;
        for (std::size_t at = 0; at + 1 < words.size(); ++at)
            if (words[at] == "-o")
                std::ranges::move(parsedOptions(words[at + 1]), std::back_inserter(options));
        return options;
    }

    Support::TemporaryFolder folder;
};

TEST_F(CommandLineTest, EveryOptionArrivesAtLpAsItIs)
{
    EXPECT_EQ(kOptions, optionsIn(wordsFor(commandLine(office(), kOptions, "/tmp/a.pdf"))));
}

TEST_F(CommandLineTest, EveryByteArrivesAsItIs)
{
    for (int byte = 1; byte < 256; ++byte) {
        const JobOptions options = {{"x", std::string(1, static_cast<char>(byte))}};
        EXPECT_EQ(options, parsedOptions(optionString(options))) << byte;
    }
    std::string all;
    for (int byte = 1; byte < 256; ++byte)
        all += static_cast<char>(byte);
    const JobOptions options = {{"x", all}};
    EXPECT_EQ(options, optionsIn(wordsFor(commandLine(office(), options, {}))));
}

TEST_F(CommandLineTest, SaysQueueAndDocument)
{
    EXPECT_THAT(wordsFor(commandLine(office(), {}, "/home/anna/my file's.pdf")),
                ElementsAre("-d", "office", "/home/anna/my file's.pdf"));
}

TEST_F(CommandLineTest, WithoutADocumentItEndsBeforeIt)
{
    EXPECT_EQ("lp -d office -o Duplex=None", commandLine(office(), {{"Duplex", "None"}}, {}));
}

TEST_F(CommandLineTest, DocumentThatLooksLikeAnOptionIsADocument)
{
    EXPECT_EQ("lp -d office -- -rf.pdf", commandLine(office(), {}, "-rf.pdf"));
}

TEST_F(CommandLineTest, AnotherServerIsNamedFirst)
{
    Queue queue = office();
    queue.server = {"print.example.com", 631, false};
    EXPECT_EQ("lp -h print.example.com:631 -d office", commandLine(queue, {}, {}));
}

TEST_F(CommandLineTest, OptionStringHasAllOptions)
{
    EXPECT_EQ(kOptions, parsedOptions(optionString(kOptions)));
    EXPECT_EQ("", optionString({}));
}

} // namespace
