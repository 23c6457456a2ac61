#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>
#include <string>

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

/// The sources of everything that acts on a job. The store's own source is left out: it reads for
/// its callers, and for generators that no job comes by.
std::string jobSources()
{
    std::string sources;
    for (const auto &entry : fs::directory_iterator(KL_JOBFILTER_SOURCES))
        if (entry.path().extension() == ".cpp" && entry.path().filename() != "KLPrintOptions.cpp")
            sources += readFile(entry.path());
    return sources;
}

/// The keys that the sources spell, in each of the ways they do it.
Keys keysInCode()
{
    const std::string sources = jobSources();
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
    const std::string table = readFile(KL_OPTION_TABLE);
    collect(keys, table, R"re(\n\| `([^`]+)` \|)re");
    return keys;
}

TEST(OptionTableTest, ListsExactlyTheKeysThatTheCodeReads)
{
    EXPECT_EQ(keysInCode(), keysInTable());
}

TEST(OptionTableTest, SaysForEachKeyWhatItTakesWhatCountsWithoutItAndWhatItDoes)
{
    const std::string table = readFile(KL_OPTION_TABLE);
    Keys complete;
    collect(complete, table, R"re(\n\| `([^`]+)` \| [^|]+ \| [^|]+ \| [^|]+ \|(?=\n))re");
    EXPECT_EQ(keysInTable(), complete);
}

} // namespace
