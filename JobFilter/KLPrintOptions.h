#pragma once

#include "KLValue.h"

#include <cups/ppd.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

/// No PPD could be opened; what() names the file and the reason on one line.
class KLNoPPDError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
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

    /// The PPD with the job's choices marked. Never null; the store keeps ownership and closes it
    /// on destruction. Marks that a caller changes are not followed by the map.
    ppd_file_t *ppd() const { return _ppd.get(); }

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

private:
    struct PPDCloser {
        void operator()(ppd_file_t *ppd) const { ppdClose(ppd); }
    };

    void loadPPD();
    void storeMarkedChoices();
    void storeOption(std::string key, std::string text);

    std::map<std::string, KLValue, std::less<>> _options;
    std::unique_ptr<ppd_file_t, PPDCloser> _ppd;
};
