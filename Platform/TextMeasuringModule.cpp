#include "TextMeasuring.h"

/// What the module exports; measureTextWithModule() looks for it. The size comes back through a
/// pointer because a function with C linkage cannot return a C++ type everywhere.
extern "C" __attribute__((visibility("default"))) void KLMeasureText(const std::string &text,
                                                                     const std::string &fontName,
                                                                     double size,
                                                                     Platform::TextSize *measured)
{
    *measured = Platform::measureText(text, fontName, size);
}
