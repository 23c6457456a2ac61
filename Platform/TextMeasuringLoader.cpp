#include "Module.h"
#include "TextMeasuring.h"

namespace Platform {

TextSize measureTextWithModule(const std::string &text, const std::string &fontName, double size)
{
    const auto measure =
        functionFromModule<void(const std::string &, const std::string &, double, TextSize *)>(
            "KLTextMeasuringModule.so", "KLMeasureText");
    TextSize measured = {};
    measure(text, fontName, size, &measured);
    return measured;
}

} // namespace Platform
