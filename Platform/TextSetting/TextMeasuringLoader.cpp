#include "Module.h"
#include "TextMeasuring.h"

namespace Platform {

TextSize measureTextWithModule(const std::string &text, const std::string &fontName, double size)
{
    TextSize measured = {};
    callModule<const std::string &, const std::string &, double, TextSize &>(
        "KLTextMeasuringModule.so", "KLMeasureText", text, fontName, size, measured);
    if (measured.height == 0 && size != 0)
        throw ModuleError("There is no font to measure the text with");
    return measured;
}

} // namespace Platform
