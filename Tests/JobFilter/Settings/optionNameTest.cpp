#include "optionName.h"

#include <gtest/gtest.h>

namespace {

void expectName(const std::string &name, const std::string &key, OptionName::Kind kind)
{
    const OptionName seen = optionName(name);
    EXPECT_EQ(key, seen.key) << name;
    EXPECT_EQ(kind, seen.kind) << name;
}

} // namespace

TEST(OptionNameTest, TellsTheKindByTheLastFourCharacters)
{
    using Kind = OptionName::Kind;
    expectName("key", "key", Kind::Text);
    expectName("key..n.", "key", Kind::Integer);
    expectName("key..b.", "key", Kind::Boolean);
    expectName("key..N.", "key..N.", Kind::Text);
    expectName("key..n", "key..n", Kind::Text);
    expectName("..n.", "", Kind::Integer);
    expectName("", "", Kind::Text);
    expectName("key..n...b.", "key..n.", Kind::Boolean);
}
