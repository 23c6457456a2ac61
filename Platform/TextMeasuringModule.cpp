#include "TextMeasuring.h"

/// What the module exports; measureTextWithModule() looks for it.
extern "C" __attribute__((visibility("default"))) Platform::TextSize
KLMeasureText(const std::string &text, const std::string &fontName, double size)
{
    return Platform::measureText(text, fontName, size);
}
