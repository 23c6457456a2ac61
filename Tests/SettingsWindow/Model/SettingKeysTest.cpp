#include "SettingKeys.h"

#include "TemporaryFolder.h"

#include <gmock/gmock.h>

#include <map>
#include <regex>
#include <set>
#include <string>

using Model::findSettingKey;
using Model::SettingKey;
using Model::settingKeys;
using Support::readFile;

namespace {

/// The keys of the documentation's table, and what it says of their defaults.
std::map<std::string, std::string> documentedKeys()
{
    const std::string table = readFile(KL_DOCUMENTATION "/options.md");
    const std::regex row(R"re(\n\| `([^`]+)` \| [^|]+ \| ([^|]+) \| [^|]+ \|(?=\n))re");
    std::map<std::string, std::string> keys;
    for (std::sregex_iterator match(table.begin(), table.end(), row), end; match != end; ++match)
        keys.emplace(match->str(1), match->str(2));
    return keys;
}

std::set<std::string> keysOfTheTable()
{
    std::set<std::string> keys;
    for (const SettingKey &key : settingKeys())
        EXPECT_TRUE(keys.emplace(key.key).second) << key.key << " comes up twice";
    return keys;
}

TEST(SettingKeysTest, TheyAreThoseOfTheDocumentation)
{
    std::set<std::string> documented;
    for (const auto &[key, standard] : documentedKeys())
        documented.insert(key);
    EXPECT_EQ(documented, keysOfTheTable());
}

TEST(SettingKeysTest, DefaultsAreThoseOfTheDocumentation)
{
    const std::regex value("`([^`]+)`");
    for (const auto &[key, standard] : documentedKeys()) {
        std::smatch match;
        const bool isSaid = std::regex_match(standard, match, value);
        const std::string expected = isSaid ? match.str(1) : "";
        if (isSaid || standard == "empty" || standard == "none") {
            EXPECT_EQ(expected, findSettingKey(key)->standard) << key;
        }
    }
}

TEST(SettingKeysTest, EveryKeyThatTheSampleDriverFeedsIsAmongThem)
{
    const std::string ppd = readFile(KL_SAMPLE_PPD);
    const std::regex line("\n\\*KLSettingSource \\S+: \"(.+)\"");
    int count = 0;
    for (std::sregex_iterator match(ppd.begin(), ppd.end(), line), end; match != end; ++match) {
        EXPECT_NE(nullptr, findSettingKey(match->str(1))) << match->str(1);
        ++count;
    }
    EXPECT_GT(count, 20);
}

TEST(SettingKeysTest, ThoseOfAPageStandTogetherInTheOrderOfThePages)
{
    EXPECT_TRUE(std::ranges::is_sorted(settingKeys(), {}, &SettingKey::page));
}

TEST(SettingKeysTest, ThreeAreSecret)
{
    std::set<std::string> secrets;
    for (const SettingKey &key : settingKeys())
        if (key.isSecret)
            secrets.emplace(key.key);
    EXPECT_EQ((std::set<std::string>{"com.kalmira.pde.print-mode-ovm.privatePassword",
                                     "com.kalmira.pde.docstore.boxPassword",
                                     "com.kalmira.pde.docstore.boxPasswordEx"}),
              secrets);
}

TEST(SettingKeysTest, ConditionsAreAboutKeysThatThereAre)
{
    for (const SettingKey &key : settingKeys())
        for (const Model::Condition &condition : key.conditions)
            EXPECT_NE(nullptr, findSettingKey(condition.key)) << key.key;
}

} // namespace
