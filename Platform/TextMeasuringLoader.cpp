#include "Module.h"
#include "TextMeasuring.h"

namespace Platform {

TextSize measureTextWithModule(const std::string &text, const std::string &fontName, double size)
{
    const auto measure =
        functionFromModule<decltype(measureText)>("KLTextMeasuringModule.so", "KLMeasureText");
    return measure(text, fontName, size);
}

} // namespace Platform
