#pragma once

#include "PPD.h"
#include "SettingKeys.h"
#include "Words.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Model {

/// A choice of a field.
struct Choice {
    std::string name; ///< what set() takes
    Words label;
    bool possible = true;
    Words whyNot = {}; ///< when it is not possible
};

/// What may be typed.
struct Limits {
    double from; ///< how many digits or characters, or the number itself; both limits belong
    double to;
};

/// A setting as a window shows it.
struct Field {
    std::string id; ///< the keyword of an option of the PPD, else the key
    Words label = {};
    Words group = {}; ///< the PPD's group that an option of it is in; no text for a key of ours
    Kind kind = Kind::Text;
    std::vector<Choice> choices = {}; ///< of the kind Choice
    /// Of the kind Choice: what may be typed beside the choices, if anything; its value is then
    /// "Custom." and what is typed.
    std::optional<Kind> typed = {};
    Words typedLabel = {};             ///< what a typed value is, when it is beside choices
    std::optional<Limits> limits = {}; ///< of what is typed
    bool isSecret = false;
    /// Whether it has an effect now. One without keeps its value, and does not use it.
    bool possible = true;
    Words whyNot = {}; ///< when it is not possible
};

/// What becomes of PIN and passwords.
enum class Secrets {
    AsTheyAre,
    LeftOut,
    Hidden, ///< "SECRET" stands in their place
};

/// A field with a value that is refused, and why.
struct Problem {
    std::string field;
    Words words;
};

/// What can be set for a queue, and what is set: the fields of its PPD and those keys of ours that
/// the PPD has no field for, with the rules of the PPD and of the filter.
///
/// One thread; can be moved, not copied.
class QueueSettings {
public:
    /// @param ppd            the queue's
    /// @param language       of the PPD's words: "de", "de_DE", "zh_CN"; English when it has none
    /// @param queueDefaults  what the queue says by itself beside its PPD ("KEY-default")
    explicit QueueSettings(PPD ppd, const std::string &language = {},
                           const JobOptions &queueDefaults = {});
    QueueSettings(QueueSettings &&) noexcept;
    QueueSettings &operator=(QueueSettings &&) noexcept;
    ~QueueSettings();

    /// The fields of a page as they are now, in the order in which they are shown. A field that
    /// this queue has no use for is not among them.
    std::vector<Field> fields(Page page) const;

    /// A field's value: a choice's name, "Custom." and what is typed beside choices, "True" or
    /// "False", what is typed; empty for nothing. Empty, too, when there is no such field.
    std::string value(std::string_view id) const;

    /// Gives a field a value. A choice that is not possible is refused and changes nothing; what is
    /// typed is taken as it is, and stays a problem as long as a rule objects to it.
    /// @return the objection, in words; nullopt when all is well
    std::optional<Words> set(std::string_view id, std::string_view value);

    /// The values that rules object to, of fields that are possible. With any of them the settings
    /// are neither to be printed nor kept.
    std::vector<Problem> problems() const;

    /// Puts every field back to what the queue has by itself.
    void reset();

    /// Resets, then takes what was kept or typed elsewhere. Options that are none of the fields'
    /// are kept apart, untouched, and come out of options() again.
    void load(const JobOptions &options);

    /// The settings as options of a job: what differs from what the queue has by itself, without
    /// what has no effect now or is a problem; and behind it the options of others that load() got.
    /// A value is empty where that is to count instead of what the queue has.
    JobOptions options(Secrets secrets = Secrets::AsTheyAre) const;

    /// The same over options that are added to the job by others unless it says something else, as
    /// lp(1) adds a user's kept settings: those that must not count are named, with what the
    /// queue has by itself.
    JobOptions optionsOver(const JobOptions &added, Secrets secrets = Secrets::AsTheyAre) const;

    /// Whether any PIN or password is set.
    bool hasSecrets() const;

    /// Whether this name of an option holds a PIN or a password.
    bool isSecret(std::string_view option) const;

private:
    class Parts;
    std::unique_ptr<Parts> _parts;
};

} // namespace Model
