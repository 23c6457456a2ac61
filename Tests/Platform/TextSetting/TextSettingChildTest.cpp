#include "TextSettingChild.h"

#include "TextMeasuring.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstddef>
#include <fstream>
#include <string>
#include <unistd.h>

using Platform::ShapedText;
using Platform::TextSettingChild;

namespace {

/// The child of this process; 0 when there is none.
pid_t childOfThisProcess()
{
    const std::string self = std::to_string(getpid());
    std::ifstream children("/proc/self/task/" + self + "/children");
    pid_t child = 0;
    children >> child;
    return child;
}

void expectSame(const ShapedText &expected, const ShapedText &text)
{
    EXPECT_EQ(expected.advance, text.advance);
    EXPECT_EQ(expected.ascent, text.ascent);
    EXPECT_EQ(expected.descent, text.descent);
    EXPECT_EQ(expected.lineGap, text.lineGap);
    EXPECT_EQ(expected.missing, text.missing);
    ASSERT_EQ(expected.glyphs.size(), text.glyphs.size());
    for (std::size_t i = 0; i < text.glyphs.size(); ++i) {
        EXPECT_EQ(expected.glyphs[i].shape, text.glyphs[i].shape);
        EXPECT_EQ(expected.glyphs[i].origin.x, text.glyphs[i].origin.x);
        EXPECT_EQ(expected.glyphs[i].origin.y, text.glyphs[i].origin.y);
        EXPECT_EQ(expected.glyphs[i].begin, text.glyphs[i].begin);
        EXPECT_EQ(expected.glyphs[i].end, text.glyphs[i].end);
    }
    ASSERT_EQ(expected.outline.size(), text.outline.size());
    for (std::size_t i = 0; i < text.outline.size(); ++i) {
        EXPECT_EQ(expected.outline[i].kind, text.outline[i].kind);
        for (std::size_t point = 0; point < 3; ++point) {
            EXPECT_EQ(expected.outline[i].points[point].x, text.outline[i].points[point].x);
            EXPECT_EQ(expected.outline[i].points[point].y, text.outline[i].points[point].y);
        }
    }
}

class TextSettingChildTest : public testing::Test {
protected:
    TextSettingChildTest() { std::signal(SIGPIPE, SIG_IGN); }

    TextSettingChild child;
};

} // namespace

TEST_F(TextSettingChildTest, SetsTextsAsTheFontLibrariesDoInThisProcess)
{
    Platform::TextShaper here;
    for (const char *text : {"Draft", "", "\xD7\xA9\xD7\x9C 12", "a\xF4\x8F\xBF\xBD", "\xFF\n"}) {
        for (const char *font : {"Helvetica", "Times-Italic", "", "NoSuchFont"})
            expectSame(here.shape(text, font, 36), child.shape(text, font, 36));
        expectSame(here.shape(text, "Courier", -0.5), child.shape(text, "Courier", -0.5));
    }
}

TEST_F(TextSettingChildTest, TextAndOutlineMayBeLargerThanWhatAPipeHolds)
{
    constexpr std::size_t kGlyphs = 1000; // 200 kB of outlines
    const std::string text = std::string(100'000, '\n') + std::string(kGlyphs, 'i');
    EXPECT_EQ(kGlyphs, child.shape(text, "Helvetica", 10).glyphs.size());
}

TEST_F(TextSettingChildTest, AllTextsComeFromOneChildThatIsGoneOnceItsFontsAreForgotten)
{
    EXPECT_EQ(0, childOfThisProcess());
    child.prepare();
    const pid_t process = childOfThisProcess();
    EXPECT_NE(0, process);
    child.shape("a", "Helvetica", 10);
    child.shape("b", "Times-Roman", 10);
    EXPECT_EQ(process, childOfThisProcess());
    child.forgetFonts();
    EXPECT_EQ(0, childOfThisProcess());
    EXPECT_FALSE(child.shape("a", "Helvetica", 10).outline.empty());
}

TEST_F(TextSettingChildTest, AChildThatHasEndedIsAnErrorUntilItsFontsAreForgotten)
{
    child.shape("a", "Helvetica", 10);
    kill(childOfThisProcess(), SIGKILL);
    EXPECT_THROW(child.shape("a", "Helvetica", 10), Platform::TextSettingError);
    child.forgetFonts();
    EXPECT_FALSE(child.shape("a", "Helvetica", 10).outline.empty());
}
