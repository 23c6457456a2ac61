#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <functional>
#include <regex>
#include <set>
#include <string>
#include <vector>

using Support::readFile;

namespace fs = std::filesystem;

namespace {

using Keys = std::set<std::string>;

/// All matches of the pattern's group, with something put before and behind.
void collect(Keys &keys, const std::string &text, const std::string &pattern,
             const std::string &before = {}, const std::string &behind = {})
{
    const std::regex expression(pattern);
    for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end;
         ++match)
        keys.insert(before + match->str(1) + behind);
}

/// The sources of the filter whose names are wanted.
std::string jobSources(const std::function<bool(const std::string &)> &isWanted)
{
    std::string sources;
    for (const auto &entry : fs::recursive_directory_iterator(KL_JOBFILTER_SOURCES))
        if (entry.path().extension() == ".cpp" && isWanted(entry.path().filename()))
            sources += readFile(entry.path());
    return sources;
}

/// The sources with every literal in one piece.
std::string withLiteralsJoined(const std::string &sources)
{
    return std::regex_replace(sources, std::regex(R"re("\s*\n\s*")re"), "");
}

/// The log lines that the sources write; those of the companion stand in its manual page.
Keys logLinesInCode()
{
    const std::string sources =
        withLiteralsJoined(jobSources([](const auto &name) { return name != "runCompanion.cpp"; }));
    Keys lines;
    collect(lines, sources, R"re(WriteLog\(\s*"([^"]+)")re");
    collect(lines, sources, R"re((?:kUnable\w+\[\] = |FatalError\(|fail\()"([^"]+)")re", "CRIT: ");
    return lines;
}

/// The keys that the sources spell, in each of the ways they do it. The store's own source is left
/// out: it reads for its callers, and for generators that no job comes by.
Keys keysInCode()
{
    const std::string sources =
        jobSources([](const auto &name) { return name != "KLPrintOptions.cpp"; });
    Keys keys;
    collect(keys, sources, R"re("(com\.(?:kalmira|apple)\.[\w.-]*\w)")re");
    collect(keys, sources, R"re(watermark(?:Option|Number)\(options, "(\w+)")re",
            "com.kalmira.pde.watermark.");
    collect(
        keys, sources,
        R"re((?:valueForKey|textOption|margin|paperSource)\w*\((?:options, )?"([A-Z]\w+)"[,)])re");
    for (const std::string side : {"Front", "Back"}) {
        collect(keys, sources, R"re(, side \+ "(\w+)")re", side);
        collect(keys, sources, R"re("(\w+)" \+ side \+ "Cover")re", {}, side + "Cover");
    }
    return keys;
}

/// The keys in the first columns of the documentation's tables.
Keys keysInTable()
{
    Keys keys;
    const std::string table = readFile(KL_DOCUMENTATION "/options.md");
    collect(keys, table, R"re(\n\| `([^`]+)` \|)re");
    return keys;
}

/// The names by which links lead to the page's headings: their letters in lower case, blanks as
/// hyphens, no other signs.
Keys headingsOf(const fs::path &page)
{
    Keys lines;
    collect(lines, "\n" + readFile(page), R"re(\n#+ (.+))re");
    Keys names;
    for (std::string line : lines) {
        std::ranges::replace(line, ' ', '-');
        std::erase_if(line, [](unsigned char c) { return std::isalnum(c) == 0 && c != '-'; });
        std::ranges::transform(line, line.begin(), [](unsigned char c) { return std::tolower(c); });
        names.insert(line);
    }
    return names;
}

void expectLinksToLeadSomewhere(const fs::path &page)
{
    Keys links;
    collect(links, readFile(page), R"re(\]\(([^)\s]+)\))re");
    std::erase_if(links, [](const std::string &link) { return link.starts_with("https:"); });
    for (const std::string &link : links) {
        const auto hash = link.find('#');
        const fs::path target = hash == 0 ? page : page.parent_path() / link.substr(0, hash);
        ASSERT_TRUE(fs::exists(target)) << page << " has a link to " << link;
        if (hash != std::string::npos) {
            EXPECT_THAT(headingsOf(target), testing::Contains(link.substr(hash + 1))) << page;
        }
    }
}

TEST(DocumentationTest, OptionTableListsExactlyTheKeysThatTheCodeReads)
{
    EXPECT_EQ(keysInCode(), keysInTable());
}

TEST(DocumentationTest, OptionTableSaysForEachKeyWhatItTakesWhatCountsWithoutItAndWhatItDoes)
{
    const std::string table = readFile(KL_DOCUMENTATION "/options.md");
    Keys complete;
    collect(complete, table, R"re(\n\| `([^`]+)` \| [^|]+ \| [^|]+ \| [^|]+ \|(?=\n))re");
    EXPECT_EQ(keysInTable(), complete);
}

/// Which source feeds which key, with the words that dialogs have for it.
Keys fieldsOfTheSample()
{
    const std::string ppd = readFile(KL_SAMPLE_PPD);
    const std::regex line("\n\\*KLSettingSource (\\S+): \"(.+)\"");
    Keys fields;
    for (std::sregex_iterator match(ppd.begin(), ppd.end(), line), end; match != end; ++match) {
        std::smatch text;
        const bool isOption = std::regex_search(
            ppd, text, std::regex("OpenUI \\*" + match->str(1) + "/(.+): PickOne\n"));
        fields.insert((isOption ? text.str(1) : "(attribute)") + " | `" + match->str(1) + "` | `" +
                      match->str(2) + "`");
    }
    return fields;
}

TEST(DocumentationTest, FieldTableListsExactlyWhatFeedsAKeyInTheSample)
{
    Keys documented;
    collect(documented, readFile(KL_DOCUMENTATION "/options.md"),
            R"re(\n\| ([^|`]+ \| `[^`]+` \| `com[^`]+`) \|)re");
    EXPECT_EQ(fieldsOfTheSample(), documented);
}

/// What stands between the text and the next of some signs, each time that it does. Regular
/// expressions cost seconds here, one for each option of a PPD.
std::vector<std::string> between(const std::string &ppd, const std::string &before,
                                 const char *signs)
{
    std::vector<std::string> found;
    for (auto at = ppd.find(before); at != std::string::npos; at = ppd.find(before, at + 1)) {
        const auto begin = at + before.size();
        found.push_back(ppd.substr(begin, ppd.find_first_of(signs, begin) - begin));
    }
    return found;
}

/// The choices of an option, its default first: "`True`, `False`".
std::string choicesOf(const std::string &ppd, const std::string &option)
{
    const std::string first = between(ppd, "\n*Default" + option + ": ", " \r\n").at(0);
    std::string choices = "`" + first + "`";
    for (const std::string &choice : between(ppd, "\n*" + option + " ", "/:"))
        if (choice != first)
            choices += ", `" + choice + "`";
    return choices;
}

/// The options that feed no key, with the words that dialogs have for them and their choices.
void collectPlainOptions(Keys &options, const std::string &ppd)
{
    const std::regex line("\n\\*OpenUI \\*(\\S+)/(.+): (?:PickOne|Boolean)\n");
    for (std::sregex_iterator match(ppd.begin(), ppd.end(), line), end; match != end; ++match)
        if (ppd.find("\n*KLSettingSource " + match->str(1) + ":") == std::string::npos)
            options.insert(match->str(2) + " | `" + match->str(1) + "` | " +
                           choicesOf(ppd, match->str(1)));
}

TEST(DocumentationTest, NoOptionOfTheSampleIsLeftOut)
{
    Keys options;
    for (const char *ppd : {KL_SAMPLE_PPD, KL_SAMPLE_PDF_PPD})
        collectPlainOptions(options, readFile(ppd));
    Keys documented;
    collect(documented, readFile(KL_DOCUMENTATION "/options.md"),
            R"re(\n\| ([^|`]+ \| `\w+` \| `(?!com)[^|]+`) \| [^|]+ \|(?=\n))re");
    EXPECT_EQ(options, documented);
}

TEST(DocumentationTest, PromisesListExactlyTheLogLinesOfTheCode)
{
    Keys documented;
    collect(documented, readFile(KL_DOCUMENTATION "/promises.md"),
            R"re(\n\| `((?:CRIT|ERROR|INFO|DEBUG): [^`]+)` \|)re");
    EXPECT_EQ(logLinesInCode(), documented);
}

TEST(DocumentationTest, GuidesThatPagesReferToAreThere)
{
    Keys guides;
    Keys named;
    for (const auto &page : fs::directory_iterator(KL_DOCUMENTATION)) {
        const std::string extension = page.path().extension();
        if (extension == ".md")
            guides.insert(page.path().filename());
        if (extension != ".png" && extension != ".txt")
            collect(named, readFile(page.path()), R"re(([\w-]+\.md)\b)re");
    }
    EXPECT_THAT(named, testing::IsSupersetOf({"directory.md", "driver-writers.md", "options.md"}));
    EXPECT_THAT(guides, testing::IsSupersetOf(named));
}

TEST(DocumentationTest, LinksLeadToPagesAndHeadingsThatAreThere)
{
    for (const char *folder : {KL_DOCUMENTATION, KL_DOCUMENTATION "/.."})
        for (const auto &page : fs::directory_iterator(folder))
            if (page.path().extension() == ".md")
                expectLinksToLeadSomewhere(page.path());
}

/// The names of the pages in the documentation that end so.
Keys pagesThatEndIn(const std::string &pattern)
{
    Keys names;
    for (const auto &page : fs::directory_iterator(KL_DOCUMENTATION))
        if (std::regex_search(page.path().filename().string(), std::regex(pattern + "$")))
            names.insert(page.path().filename());
    return names;
}

/// "jobfilter(8)" of "jobfilter.8"
std::string reference(const std::string &page)
{
    return page.substr(0, page.size() - 2) + "(" + page.back() + ")";
}

TEST(DocumentationTest, ReadmeLeadsToEveryGuideAndManualPage)
{
    const std::string readme = readFile(KL_DOCUMENTATION "/../README.md");
    for (const std::string &guide : pagesThatEndIn("\\.md"))
        EXPECT_THAT(readme, testing::HasSubstr("(Documentation/" + guide + ")"));
    for (const std::string &page : pagesThatEndIn("\\.[1-8]"))
        EXPECT_THAT(readme, testing::HasSubstr("`" + reference(page) + "`"));
}

/// What a manual page says under SEE ALSO, as it is read.
std::string seeAlso(const std::string &page)
{
    const std::string text = readFile(KL_DOCUMENTATION "/" + page);
    std::string references = text.substr(text.rfind("SEE ALSO"));
    references = std::regex_replace(references, std::regex(R"re(\\-)re"), "-");
    return std::regex_replace(references, std::regex(R"re( (?:\(([1-8])\)|([1-8])\b))re"),
                              "($1$2)");
}

TEST(DocumentationTest, EveryManualPageLeadsToTheGuides)
{
    const std::string first = seeAlso("jobfilter.8");
    for (const std::string &guide : pagesThatEndIn("\\.md"))
        EXPECT_THAT(first, testing::HasSubstr(" " + guide));
    for (const std::string &page : pagesThatEndIn("\\.[1-8]"))
        if (page != "jobfilter.8") {
            EXPECT_THAT(first, testing::HasSubstr(" " + reference(page)));
            EXPECT_THAT(seeAlso(page),
                        testing::ContainsRegex("jobfilter\\(8\\) ?,\nwhich lists the guides"));
        }
}

} // namespace
