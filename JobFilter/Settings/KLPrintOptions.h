#pragma once

#include "KLValue.h"
#include "PPD.h"

#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

/// No PPD could be opened; what() names the file and the reason on one line.
class KLNoPPDError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A page's width and height in points, as the PPD states them: before any rotation.
struct KLPageSize {
    double width;
    double height;
};

/// The job's settings: the choices marked in the queue's PPD, overlaid by the job's option string,
/// as one map from keys to values.
///
/// Keys are text and compare exactly. Texts are UTF-8; bytes that are not pass through as they
/// are. Made once per job; owns the opened PPD. One thread. Not copied.
class KLPrintOptions {
public:
    /// Builds the store (`initWithString:`) from the option string, in the syntax of
    /// cupsParseOptions(), and from the PPD (format 4.3) that the environment variable "PPD" names.
    ///
    /// A PPD option's last marked choice counts; options inside subgroups are not looked at.
    /// Every option of the string then replaces the PPD's entry of that name:
    /// - the value "true" becomes "True", "false" becomes "False";
    /// - "KEY..n." stores an integer under KEY, "KEY..b." a boolean (see Numbers.h);
    /// - all else is stored as text.
    /// @throws KLNoPPDError when "PPD" is not set or names nothing that opens as a PPD.
    explicit KLPrintOptions(const std::string &optionString);

    /// The PPD with the job's choices marked; the store's own. Marks that a caller changes are not
    /// followed by the map.
    PPD &ppd() { return _ppd; }
    const PPD &ppd() const { return _ppd; }

    /// The value stored under the key; nullopt when there is none.
    std::optional<KLValue> valueForKey(std::string_view key) const;

    /// The same, or the default (which may be absent, and is not stored) when there is none.
    std::optional<KLValue> valueForKeyWithDefault(std::string_view key,
                                                  std::optional<KLValue> defaultValue) const;

    /// True only when the stored value is text and the same text as the given one, letter case
    /// included; canonically equivalent Unicode forms are the same.
    bool valueForKeyIsEqualToString(std::string_view key, std::string_view text) const;

    /// True only when the stored value is text and compares as the same under the options.
    /// @param options  a bit set of Platform::TextComparison
    bool valueForKeyIsEqualToStringOptions(std::string_view key, std::string_view text,
                                           unsigned options) const;

    /// True only when the stored value is a number, a boolean counting as 0 or 1, and equal to the
    /// given one.
    bool valueForKeyIsEqualToNumber(std::string_view key, std::int64_t number) const;

    /// Stores the value, replacing any other; nullopt removes the entry.
    void setValueForKey(std::optional<KLValue> value, std::string_view key);

    /// Stores the value only when the key has no entry at all; an empty text is an entry.
    void setDefaultValueForKey(KLValue value, std::string_view key);

    // What the PPD says about the job's choices, and the same said in PostScript.
    //
    // Names are libcups' (letter case does not count there); an option or choice that the PPD does
    // not have is answered with nullopt. Nothing changes a mark.

    /// The code text of the choice that the PPD has marked for the option, untouched.
    /// @return nullopt when no such option, no marked choice or no code is there
    std::optional<std::string> codeForMarkedChoiceForPPDOption(const std::string &keyword) const;

    /// The code text of the named choice, untouched.
    /// @return nullopt when no such option, no such choice or no code is there
    std::optional<std::string> codeForPPDOptionWithChoice(const std::string &keyword,
                                                          const std::string &choice) const;

    /// The PostScript that says the same as the choice's PJL code (see postscriptFromPJLCode()),
    /// without a line end.
    /// @return nullopt also for an option outside the PPD's job-control section (JCLSetup),
    ///         whatever its code
    std::optional<std::string>
    convertPJLCodeToPostscriptForPPDOptionWithChoice(const std::string &keyword,
                                                     const std::string &choice) const;

    /// The same for the choice that this store holds under the keyword. The PPD's mark is not
    /// asked: the two differ once setValueForKey() has changed the option.
    /// @return nullopt also when the store holds nothing there
    std::optional<std::string>
    convertPJLCodeToPostscriptForMarkedChoiceForPPDOption(const std::string &keyword) const;

    /// The PostScript line, line feed included, for a value of the Duplex option.
    /// @return nullopt for anything but "None", "DuplexNoTumble" and "DuplexTumble", or for none
    static std::optional<std::string>
    postscriptCodeForDuplexSetting(const std::optional<std::string> &setting);

    /// The same for the value that this store holds under "Duplex".
    std::optional<std::string> postscriptCodeForDefaultDuplexSetting() const;

    /// The size of the page that this store holds under "PageSize".
    /// @return 842.0 by 596.0 points (on purpose neither upright nor quite A4) when the store holds
    ///         none or the PPD does not know its name
    KLPageSize pageSize() const;

    // Cover pages and watermark as PostScript. A job gets its own from the toolkit: nothing that
    // prints a job calls these.

    /// The PostScript that feeds a cover sheet from its own source and media, made from the
    /// settings under "com.kalmira.pde.cover-pages." (see coverPageRules.h).
    ///
    /// @param position         "front" or "back", in any letter case
    /// @param restorationPage  for a front cover in a known style, set to the job's page, counted
    ///                         from 1, at which its own settings must be in force again; else left
    /// @return nullopt when the cover is not wanted, which the system log is told, and when its
    ///         source, media type or print style is missing, which nobody is told
    std::optional<std::string>
    generateCoverPageCodeForPositionRestorationPage(std::string_view position,
                                                    std::int64_t &restorationPage) const;

    /// The job's page, counted from 1, at which the back cover begins (see backCoverPage()).
    /// @return -1 when there is none or it is not wanted
    std::int64_t calculateBackCoverPageFromTotalPages(std::int64_t totalPages) const;

    /// The PostScript that draws the watermark of the settings under "com.kalmira.pde.watermark."
    /// on every page (see watermarkPostScript()). The name is spelt so on purpose.
    ///
    /// Does NOT return when the watermark's text holds a backslash or a parenthesis: it takes all
    /// the memory there is and then throws std::bad_alloc. Kept on purpose; look for the three
    /// characters before calling.
    std::string generageWatermarkCode() const;

private:
    void storeMarkedChoices();
    void storeOption(std::string key, std::string text);

    /// The text form of the value under the key.
    std::optional<std::string> textForKey(std::string_view key) const;
    /// The same, or the default when there is none.
    std::string textForKeyWithDefault(std::string_view key, const char *defaultText) const;
    /// The value under the key as a number: a text is read as one, none is 0.
    std::int64_t integerForKey(std::string_view key) const;
    /// Whether the text under the key is "true" in any letter case.
    bool isTrue(std::string_view key) const;
    /// Whether the job prints on one side only.
    bool isOneSided() const;

    std::map<std::string, KLValue, std::less<>> _options;
    PPD _ppd;
};
