#pragma once

#include "TemporaryFolder.h"

#include <string>

namespace Support {

/// A font of a package, for the tests that need the real one.
struct PackagedFont {
    std::string name; ///< its PostScript name
    std::string file;
};

// Each throws std::runtime_error, which names the package, when the font is not there.

/// Latin letters only; "Helvetica" is drawn with it.
inline PackagedFont latinFont()
{
    return {"NimbusSans-Regular",
            packagedFile("/usr/share/fonts/opentype/urw-base35/NimbusSans-Regular.otf",
                         "fonts-urw-base35")};
}

inline PackagedFont manyScriptsFont()
{
    return {"DejaVuSans",
            packagedFile("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", "fonts-dejavu-core")};
}

inline PackagedFont colourEmojiFont()
{
    return {"NotoColorEmoji", packagedFile("/usr/share/fonts/truetype/noto/NotoColorEmoji.ttf",
                                           "fonts-noto-color-emoji")};
}

} // namespace Support
