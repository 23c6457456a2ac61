#pragma once

#include "PPD.h"
#include "Words.h"
#include "queueFields.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Model {

/// The fields of a queue, what they are set to, and what follows from that: which of the settings
/// have an effect beside each other, and why the others have none.
///
/// Fields are named by their places in fields(). One thread; can be moved.
class SettledFields {
public:
    /// How a field stands.
    struct State {
        std::string standard;                ///< what counts when nobody sets it
        std::optional<std::string> set = {}; ///< what it was set to
        bool counts = false;                 ///< that has an effect
        int age = 0;                         ///< the smaller it is, the earlier it was set
    };

    SettledFields(PPD ppd, const std::string &language, JobOptions queueDefaults);

    const PPD &ppd() const { return _ppd; }
    const std::vector<QueueField> &fields() const { return _fields; }
    const State &stateOf(std::size_t field) const { return _states[field]; }
    /// Options of a job that are none of the fields'.
    const JobOptions &foreign() const { return _foreign; }

    // Looking up; nullopt when there is no such field.

    std::optional<std::size_t> withId(std::string_view id) const;
    /// The field that the job's option of that name is of.
    std::optional<std::size_t> ofOption(const std::string &option) const;
    /// The field that is, or feeds, the key.
    std::optional<std::size_t> ofKey(std::string_view key) const;

    /// The value of a field that counts now.
    const std::string &effective(std::size_t field) const;

    /// What the filter would read under a key; empty for nothing.
    std::string valueOfKey(std::string_view key) const;

    /// Sets a field; what others had said of it in other words ("sides") counts no more.
    void set(std::size_t field, std::string value);

    /// Forgets all that is set, then sets fields in this order.
    void setAll(const std::vector<std::pair<std::size_t, std::string>> &values, JobOptions foreign);

    /// Why nothing that the field is set to would have an effect.
    std::optional<Words> whyUseless(std::size_t field) const;

    /// Why the PPD does not let the field have the value now. What counts already can stay, and
    /// what the queue has by itself can be had again: what that excludes has no effect then.
    std::optional<Words> whyNotChoose(std::size_t field, const std::string &value) const;

private:
    void settle();
    bool settleOnce(const std::vector<std::size_t> &fields);
    void markBase();
    void findStandards();
    std::string standardOf(const QueueField &field) const;
    void mark(std::size_t field);
    void learnWhatIsFed();
    JobOptions keysOfJob() const;
    std::vector<std::size_t> setFields() const;
    bool canCount(std::size_t field) const;
    void forgetNamesakes(std::size_t field);
    void forgetAliases(const QueueField &field);

    std::optional<Words> whyForced(const QueueField &field) const;
    std::optional<Words> whyMarkerIsMissing(const QueueField &field) const;
    std::optional<Words> whyConditionFails(const Condition &condition) const;
    bool holds(const Condition &condition) const;
    Words labelOfKey(std::string_view key) const;
    Words labelOfOption(const std::string &option) const;
    Words labelOfValue(std::optional<std::size_t> field, const std::string &value) const;

    PPD _ppd; ///< with the choices marked that count
    JobOptions _queueDefaults;
    std::vector<QueueField> _fields;
    bool _isPDF;

    std::vector<State> _states; ///< of the fields
    JobOptions _foreign;
    int _ages = 0;

    JobOptions _fed;    ///< what sources say
    JobOptions _forced; ///< what sources choose
};

} // namespace Model
