#include "ICCProfile.h"
#include "PJLChecker.h"
#include "Program.h"
#include "TemporaryFolder.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

using testing::IsEmpty;

namespace {

const std::string kBody = "%!PS\nshowpage\n";

/// One job of the page: what it is printed with, and lines that it must have.
struct Example {
    std::string title;
    std::vector<std::string> options;
    std::set<std::string> leftOut;
    std::vector<std::string> lines; ///< with their ends; the page data as its bytes
};

std::string replaceAll(std::string text, const std::string &from, const std::string &to)
{
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

/// The page's names for control characters become the characters.
std::string withControlCharacters(std::string text)
{
    text = replaceAll(std::move(text), "<ESC>", "\x1B");
    text = replaceAll(std::move(text), "<CR>", "\r");
    return replaceAll(std::move(text), "<LF>", "\n");
}

/// The texts between backquotes.
std::vector<std::string> codesIn(const std::string &line)
{
    std::vector<std::string> codes;
    std::size_t end = 0;
    for (std::size_t begin = line.find('`'); begin != std::string::npos;
         begin = line.find('`', end + 1)) {
        end = line.find('`', begin + 1);
        codes.push_back(line.substr(begin + 1, end - begin - 1));
    }
    return codes;
}

/// The job's line that a table row stands for; empty for the table's head.
std::string lineOfRow(const std::string &row)
{
    if (row.starts_with("| *the page data* |"))
        return kBody;
    if (!row.starts_with("| `"))
        return {};
    const std::string text = codesIn(row).front();
    const std::string rest = row.substr(2 + text.size() + 2);
    const std::string lineEnd = rest.starts_with(" | CR LF |") ? "\r\n"
                                : rest.starts_with(" | LF |")  ? "\n"
                                                               : " has no end: " + row;
    return withControlCharacters(text) + lineEnd;
}

std::vector<Example> examplesOfThePage()
{
    std::vector<Example> examples;
    bool inOptions = false;
    for (std::string line : Support::linesOf(
             Support::readFile(KL_SOURCE_FOLDER "/Documentation/anatomy-of-a-job.md"))) {
        line.pop_back();
        if (line.starts_with("## ") || line.starts_with("### "))
            examples.push_back({line, {}, {}, {}});
        if (examples.empty())
            continue;
        Example &example = examples.back();
        if (line.starts_with("Left out: ")) {
            for (const std::string &key : codesIn(line))
                example.leftOut.insert(key);
        } else if (line.starts_with("```")) {
            inOptions = line == "```options";
        } else if (inOptions) {
            example.options.push_back(line);
        } else if (const std::string jobLine = lineOfRow(line); !jobLine.empty()) {
            example.lines.push_back(jobLine);
        }
    }
    std::erase_if(examples, [](const Example &example) { return example.lines.empty(); });
    return examples;
}

/// Whether the job has these lines, one right behind the other.
bool holds(const std::vector<std::string> &job, const std::vector<std::string> &lines)
{
    return std::search(job.begin(), job.end(), lines.begin(), lines.end()) != job.end();
}

class AnatomyOfAJobTest : public testing::Test {
protected:
    /// Prints the job of an example on the sample queue.
    std::string print(const Example &example) const
    {
        const std::string option = optionString(example);
        const auto result = Support::runProgram(
            {.arguments = {JOBFILTER_PROGRAM, "7", "anna", "Quarterly Report", "3", option, _body},
             .environment = {{"PPD", KL_SAMPLE_PPD}}});
        EXPECT_EQ(0, result.exitStatus) << result.errors;
        EXPECT_THAT(Support::problemsOfPJLJob(result.output), IsEmpty()) << example.title;
        return result.output;
    }

    const std::vector<Example> _examples = examplesOfThePage();

private:
    /// The first example's options but those left out, then the example's own.
    std::string optionString(const Example &example) const
    {
        std::string text;
        for (const std::string &option : _examples.front().options) {
            if (!example.leftOut.contains(option.substr(0, option.find('='))))
                text += option + " ";
        }
        for (const std::string &option : example.options)
            text += option + " ";
        return withControlCharacters(replaceAll(text, "/srv/profiles", _folder.path()));
    }

    Support::TemporaryFolder _folder;
    const std::string _profile = _folder.write("Standard sRGB.icc", Support::standardSRGBProfile());
    const std::string _body = _folder.write("body.ps", kBody);
};

} // namespace

TEST_F(AnatomyOfAJobTest, FirstExampleIsTheWholeJob)
{
    ASSERT_FALSE(_examples.empty());
    std::string expected;
    for (const std::string &line : _examples.front().lines)
        expected += line;
    EXPECT_EQ(expected, print(_examples.front()));
}

TEST_F(AnatomyOfAJobTest, OtherExamplesHaveTheirLinesTogether)
{
    ASSERT_GE(_examples.size(), 14u);
    for (std::size_t index = 1; index < _examples.size(); ++index) {
        const Example &example = _examples[index];
        ASSERT_GE(example.lines.size(), 2u) << example.title;
        const auto job = Support::linesOf(print(example));
        EXPECT_TRUE(holds(job, example.lines)) << example.title << testing::PrintToString(job);
    }
}

TEST_F(AnatomyOfAJobTest, ExamplesDifferFromTheFirst)
{
    // Or the page would show a change that is none.
    const auto first = Support::linesOf(print(_examples.front()));
    for (std::size_t index = 1; index < _examples.size(); ++index)
        EXPECT_FALSE(holds(first, _examples[index].lines)) << _examples[index].title;
}
