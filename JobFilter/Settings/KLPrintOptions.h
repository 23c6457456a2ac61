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
/// Keys are text and compare exactly, bytes that is. Texts are UTF-8; bytes that are not pass
/// through as they are. Made once per job; owns the opened PPD. What is returned is the caller's.
/// One thread. Not copied.
class KLPrintOptions {
public:
    /// Builds the store (`initWithString:`) from the option string, in the syntax of
    /// cupsParseOptions(), and from the PPD (format 4.3) that the environment variable "PPD" names.
    ///
    /// A PPD option's last marked choice counts; options inside subgroups are not looked at.
    /// Every option of the string then replaces the PPD's entry of that name, but for those that
    /// say who prints where the PPD pins that (see pinnedUser.h):
    /// - a choice of the PPD option of that name is stored as the PPD spells it, in whatever letter
    ///   case it was sent;
    /// - the value "true" becomes "True", "false" becomes "False";
    /// - "KEY..n." stores an integer under KEY, "KEY..b." a boolean (see Numbers.h);
    /// - all else is stored as text, also a value that the PPD has no choice for.
    /// The empty string leaves the PPD's defaults.
    /// Where the PPD has lines that name sources of settings, what these say comes last (see
    /// settingSources.h).
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
    // not have is answered with nullopt. Nothing changes a mark. Codes are as PPD::code() has them.

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
    /// @return points; 842.0 by 596.0 (on purpose neither upright nor quite A4) when the store
    ///         holds none or the PPD does not know its name
    KLPageSize pageSize() const;

    // Cover pages and watermark as PostScript. A job gets its own from the toolkit: nothing that
    // prints a job calls these.

    /// The PostScript that feeds a cover sheet from its own source and media (see
    /// coverPagePostScript()). Keys begin with "com.kalmira.pde.cover-pages."; for a back cover,
    /// "back" takes the place of "front":
    /// - "useFrontCover": the cover is wanted when this is text, "true" in any letter case; a
    ///   boolean is no text. Default: not wanted.
    /// - "frontCoverSource": a choice of the PPD's "InputSlot". "(null)" stands in the place of the
    ///   code of one that it does not have.
    /// - "frontCoverMediaType": a choice of the PPD's "MediaType", which must be a job-control
    ///   option; any other gives a media type of "(null)".
    /// - "frontCoverPrintStyle": "NoPrint", "Print1" or "Print", letter case counts. With any other
    ///   the sheet is fed, and nothing said of its sides.
    /// A front cover also asks for "Duplex": the text "None" is one-sided, all else and nothing is
    /// two-sided (see frontCover()).
    ///
    /// @param position         "front" or "back", in any letter case
    /// @param restorationPage  for a front cover in a known style, set to the job's page, counted
    ///                         from 1, at which its own settings must be in force again; else left
    /// @return nullopt when the cover is not wanted, which the system log is told, and when its
    ///         source, media type or print style is missing, which nobody is told
    std::optional<std::string>
    generateCoverPageCodeForPositionRestorationPage(std::string_view position,
                                                    std::int64_t &restorationPage) const;

    /// The job's page, counted from 1, at which the back cover begins (see backCoverPage()). Keys
    /// begin with "com.kalmira.pde.cover-pages.", and flags must be text, as above:
    /// - "useBackCover": the others are asked for only when it is wanted
    /// - "backCoverPrintStyle": "NoPrint", "Print1" or "Print"; any other, and none, is no cover
    /// - "useFrontCover", "frontCoverPrintStyle": a front cover in the style "Print1" makes page 1
    ///   a sheet of its own
    /// Besides, "Duplex": the text "None" is one-sided, all else and nothing is two-sided.
    /// @param totalPages  of the job, of any value
    /// @return -1 when there is none or it is not wanted
    std::int64_t calculateBackCoverPageFromTotalPages(std::int64_t totalPages) const;

    /// The PostScript that draws a watermark on every page (see watermarkPostScript()). The name is
    /// spelt so on purpose. Keys begin with "com.kalmira.pde.watermark."; each value is written in
    /// its text form, as it is. The toolkit's watermark has the same keys with other defaults.
    /// - "text", default empty: the PostScript is made all the same
    /// - "font", a PostScript name, default "Helvetica"; "size", points, default "50.0"
    /// - "x" and "y", percent of the page's width from the left and of its height from below,
    ///   default "50.0": the middle of the text's base line
    /// - "angle", degrees, clockwise, default "0.0". It is written behind a minus sign: a negative
    ///   one gives PostScript that is installed and then fails at each page. Say 330 for -30.
    /// - "color", default "0 0 0 1": cyan, magenta, yellow, black, from 0 to 1, with blanks between
    /// - "ordering": the text "0" is beneath the page's marks, all else and nothing above
    /// Besides, "orientation-requested", IPP's (RFC 8011), read as an integer, default 0: 4, 5 and
    /// 6 turn the page, any other is portrait.
    ///
    /// Does NOT return when the watermark's text holds a backslash or a parenthesis: it takes all
    /// the memory there is and then throws std::bad_alloc. Kept on purpose; look for the three
    /// characters before calling.
    std::string generageWatermarkCode() const;

private:
    void storeMarkedChoices();
    void storeOption(const std::string &name, std::string text);

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
