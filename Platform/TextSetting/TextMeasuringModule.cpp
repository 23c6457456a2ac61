#include "Module.h"
#include "TextMeasuring.h"

// What the module exports.

/// measureTextWithModule() looks for it.
KL_MODULE_EXPORT void KLMeasureText(const std::string &text, const std::string &fontName,
                                    double size, Platform::TextSize &measured, std::string &failure)
{
    Platform::withinModule(failure,
                           [&] { measured = Platform::measureText(text, fontName, size); });
}

/// TextSettingChild looks for it.
KL_MODULE_EXPORT void KLMakeTextSetter(std::unique_ptr<Platform::TextSetter> &setter,
                                       std::string &failure)
{
    Platform::withinModule(failure, [&] { setter = std::make_unique<Platform::TextShaper>(); });
}
