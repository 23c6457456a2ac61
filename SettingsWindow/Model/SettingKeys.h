#pragma once

#include <span>
#include <string_view>

namespace Model {

/// The pages of settings, in the order in which people look for them.
enum class Page { Identity, PrivateAndBox, Watermark, Booklet, Covers, Color, Printer };

inline constexpr Page kPages[] = {Page::Identity, Page::PrivateAndBox, Page::Watermark,
                                  Page::Booklet,  Page::Covers,        Page::Color,
                                  Page::Printer};

/// What a page is called, in English.
std::string_view titleOf(Page page);

/// How a setting is given.
enum class Kind {
    Choice, ///< one of a list, perhaps with a value of one's own beside it
    Flag,   ///< "True" or "False"
    Text,
    Digits, ///< a text of digits: a code
    Number, ///< with a decimal point or without
    Count,  ///< a whole number, not below 0
    Length, ///< a number with "mm", "in", "pt" or nothing, for points, behind it
    Color,  ///< 1, 3 or 4 numbers from 0 to 1, with commas
    Pages,  ///< a list of pages: "2-5,8,10-"
    File,   ///< a file's full path
};

/// What a queue must have for a key to have an effect.
enum class Needs {
    Nothing,
    OwnOption,         ///< an option of the PPD by the name of the key
    FreeUser,          ///< a header line PRINTMODE=, and a PPD that does not pin who prints
    AccessCodeLine,    ///< a header line ACCESSCODE=
    PrintModeLine,     ///< a header line PRINTMODE=
    CollateLine,       ///< a header line COLLATE=
    AdvancedColorLine, ///< a header line DOCUMENTTYPE=ADVANCED
    Toolkit,           ///< a toolkit, which makes watermarks, booklets and covers
    ToolkitForPDF,     ///< one, on a queue that takes PDF
    ToolkitForTrays,   ///< one, on a queue that takes PostScript
};

/// A choice of a key that no option of the PPD has.
struct KeyChoice {
    std::string_view value;
    std::string_view label; ///< in English
};

/// When a key has an effect: as long as another one has, or has not, a value.
struct Condition {
    std::string_view key;
    std::string_view value; ///< empty for any value at all
    bool isNot = false;     ///< as long as it does not have that value
    bool inPDF = false;     ///< it holds on a queue that takes PDF only
};

/// A setting that the filter reads.
struct SettingKey {
    std::string_view key; ///< as it stands in the documentation's table of options
    Page page;
    Kind kind;
    std::string_view label;    ///< in English; empty for a key that nobody has to set
    std::string_view standard; ///< what counts without it; empty for nothing
    std::span<const KeyChoice> choices = {};
    std::span<const Condition> conditions = {}; ///< all of them must hold
    /// The option of the PPD whose choices can be chosen, too, behind those above.
    std::string_view choicesOf = {};
    Needs needs = Needs::Nothing;
    bool isAbove0 = false;  ///< of a number
    bool isOpen = false;    ///< beside its choices, any text may be typed
    bool isSecret = false;  ///< a PIN or a password: not shown, not kept unless that is asked for
    bool isInteger = false; ///< is sent with "..n." behind the key
};

/// All of them, in the order in which they are shown: those of a page stand together.
std::span<const SettingKey> settingKeys();

/// @return null for a key that is none
const SettingKey *findSettingKey(std::string_view key);

} // namespace Model
