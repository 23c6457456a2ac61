#pragma once

#include "TextSetter.h"

#include <memory>

namespace Platform {

class AnsweringChild;

/// Sets texts in a child process (AnsweringChild.h), which loads the module that carries the font
/// libraries. What they and the fonts take is the child's memory: it goes with it when the fonts
/// are forgotten. (In the library KLPlatformTextSetting.)
class TextSettingChild : public TextSetter {
public:
    TextSettingChild();
    ~TextSettingChild() override;

    /// Starts the child, which goes to work at once. That is best done while this process is small:
    /// memory that both have is copied where one of them changes it.
    /// @throws TextSettingError when there can be no child
    void prepare() override;
    /// @throws TextSettingError when the module is not installed, when there can be no child, and
    ///         when that ends before it has answered
    ShapedText shape(const std::string &text, const std::string &fontName, double size) override;
    void forgetFonts() override;

private:
    std::unique_ptr<AnsweringChild> _child;
};

} // namespace Platform
