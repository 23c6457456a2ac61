#pragma once

#include "PPD.h"
#include "Words.h"

#include <optional>
#include <string>
#include <vector>

namespace Model {

/// Settings that a user has kept for a queue.
struct KeptSet {
    std::string name; ///< empty for what counts without a name; else "NAME" of "queue/NAME"
    JobOptions options;
};

/// The settings that a user has kept, in the file that lp(1) and print dialogs read (lpoptions(1)).
/// Each call looks at the file anew: others write it, too.
///
/// What is not changed stays as it was: other queues, those of other servers as well, other sets
/// and other options. Where the file cannot be written, it is as it was before. Not copied; any
/// number of them may be used, in any thread.
class KeptSettings {
public:
    /// The file of the user who runs the program.
    KeptSettings();
    /// @param path  need not be there, nor its folder
    explicit KeptSettings(std::string path) : _path(std::move(path)) {}

    const std::string &path() const { return _path; }

    /// Who can read what is kept, in words.
    Words whoCanRead() const;

    /// The sets of a queue, the one without a name first; only those that there are.
    /// @param whyNot  says why they cannot be read, else is left alone; not null
    std::vector<KeptSet> setsOf(const std::string &queue, std::optional<Words> *whyNot) const;

    /// Keeps options as a set, in the place of one of that name; none removes it.
    /// @param set  empty for what counts without a name
    /// @return why they are not kept; nullopt when they are
    std::optional<Words> keep(const std::string &queue, const KeptSet &set) const;

    std::optional<Words> remove(const std::string &queue, const std::string &set) const;

    /// @return an objection, too, when there is no such set or one of the new name
    std::optional<Words> rename(const std::string &queue, const std::string &set,
                                const std::string &newName) const;

    /// Why a set cannot have this name; nullopt when it can.
    static std::optional<Words> objectionToName(const std::string &set);

private:
    std::string _path;
};

} // namespace Model
