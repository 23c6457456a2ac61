#include "Module.h"
#include "TextMeasuring.h"

namespace Platform {

TextSize measureTextWithModule(const std::string &text, const std::string &fontName, double size)
{
    TextSize measured = {};
    callModule<const std::string &, const std::string &, double, TextSize &>(
        "KLTextMeasuringModule.so", "KLMeasureText", text, fontName, size, measured);
    return measured;
}

} // namespace Platform
