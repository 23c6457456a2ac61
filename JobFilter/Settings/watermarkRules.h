#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// How a watermark is said in PostScript, without the store that the settings come from.

/// A line of text across every page. All values stand in the PostScript as they are here.
struct WatermarkSettings {
    std::string text;
    std::string font;         ///< a PostScript font's name
    std::string size;         ///< points
    std::string x;            ///< the text's middle, in percent of the page's width from the left
    std::string y;            ///< its base line, in percent of the page's height from below
    std::string angle;        ///< degrees, clockwise; without a sign, see watermarkPostScript()
    std::string color;        ///< four components from 0 to 1: cyan, magenta, yellow, black
    bool beneath;             ///< drawn before the page's own marks, else after them
    std::int64_t orientation; ///< how the pages are turned, as IPP numbers it
};

/// The PostScript that makes the page device draw the watermark on every page.
///
/// It is in the protected form of a printer feature: an error inside does not end the job. Sent
/// more than once it installs the watermark once. A page procedure that was installed before goes
/// on being called.
///
/// The angle is written behind a minus sign. A negative one so gets two, which is no number: it is
/// installed without an error, and then each page fails ("undefined"), outside that protection.
/// @throws std::bad_alloc after a long time, for a text with a backslash or parenthesis: see
///         escapedWatermarkText()
std::string watermarkPostScript(const WatermarkSettings &watermark);

/// The PostScript that turns the coordinate system for IPP's orientation-requested values 4
/// (landscape), 5 (reverse landscape) and 6 (reverse portrait); any other is portrait.
///
/// It finds width and height of the page on the operand stack, the height on top, and leaves those
/// of the page as it is read, the width on top. The text has no line end and is good for ever.
std::string_view watermarkOrientationFragment(std::int64_t orientation);

/// The text for a PostScript string.
///
/// A text without backslash and parenthesis comes back as it stands. Any other does NOT come back:
/// the call takes all the memory there is, one backslash after the other, and then throws
/// std::bad_alloc. This is kept on purpose. Nothing that prints a job calls it; whoever does must
/// look for the three characters first.
std::string escapedWatermarkText(std::string_view text);
