#pragma once

#include "TextSetter.h"

#include <map>
#include <memory>
#include <string>

namespace Platform {

/// Sets one text as TextShaper does.
ShapedText shapeText(const std::string &text, const std::string &fontName, double size);

class Fonts;

/// Sets texts with the font libraries, in this process. A font is looked for once.
class TextShaper : public TextSetter {
public:
    TextShaper();
    ~TextShaper() override;

    // None throws anything of its own.

    void prepare() override;
    ShapedText shape(const std::string &text, const std::string &fontName, double size) override;
    void forgetFonts() override;

private:
    std::map<std::string, std::unique_ptr<Fonts>> _fonts; ///< by name; grow with the texts
};

/// The size of the text as shapeText() sets it.
TextSize measureText(const std::string &text, const std::string &fontName, double size);

/// The same through the module that carries the font libraries, which is loaded by the first
/// call: for a program that seldom measures. (In the library KLPlatformTextSetting; the others are
/// in KLTextMeasuring.)
/// @throws ModuleError when the module is not installed or fails, or when there is no font at all:
///         a height of 0 for any size but 0
TextSize measureTextWithModule(const std::string &text, const std::string &fontName, double size);

} // namespace Platform
