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

/// The settings that a user has kept, in the file that libcups reads for lp(1) and print dialogs
/// (lpoptions(1)). Each call looks at the file anew: others write it, too. It names queues and
/// knows no servers: what is kept counts for every queue of that name.
///
/// What is not changed stays as it was, byte for byte: other queues, those of other servers as
/// well, other sets, comments. Where the file cannot be written it is as it was before. (libcups'
/// own cupsSetDests2() drops the queues that the server of the moment does not have and what stands
/// behind a "#", makes "true" of an empty value, and leaves an empty file on a full disk.) Any
/// number of these objects may be used, in any thread.
class KeptSettings {
public:
    /// The file of the user who runs the program: "$HOME/.cups/lpoptions".
    KeptSettings();
    /// @param path  need not be there, nor its folder; empty when there can be none
    explicit KeptSettings(std::string path) : _path(std::move(path)) {}

    /// What the administrator has set for everybody.
    static KeptSettings ofEverybody();

    const std::string &path() const { return _path; }

    /// Who can read what is kept, in words.
    Words whoCanRead() const;

    /// The sets of a queue, the one without a name first, the others as they stand in the file;
    /// only those that there are.
    /// @param whyNot  says why they cannot be read, else is empty; not null
    std::vector<KeptSet> setsOf(const std::string &queue, std::optional<Words> *whyNot) const;

    /// The options that are kept without a name; none when they cannot be read.
    JobOptions defaultsOf(const std::string &queue) const;

    /// Keeps options as a set, in the place of one of that name. Without options a set with a name
    /// is there all the same; the one without a name is not. An option with an empty value is not
    /// kept: lpoptions(1) would make "true" of it.
    ///
    /// A set with a name is to have what QueueSettings::optionsOver() makes of the one without:
    /// print dialogs put it on top of that.
    /// @return why they are not kept; nullopt when they are
    std::optional<Words> keep(const std::string &queue, const KeptSet &set) const;

    /// Nothing happens when there is no such set.
    /// @return why it is still there; nullopt when it is not
    std::optional<Words> remove(const std::string &queue, const std::string &set) const;

    /// @return an objection, too, when there is no such set or one of the new name
    std::optional<Words> rename(const std::string &queue, const std::string &set,
                                const std::string &newName) const;

    /// Why a set cannot have this name; nullopt when it can.
    static std::optional<Words> objectionToName(const std::string &set);

private:
    std::string _path;
};

/// Options on top of others: what both say is as the upper ones have it.
JobOptions laidOver(JobOptions below, const JobOptions &above);

/// The options that lp(1) and print dialogs add to a job on the queue: what is kept without a name,
/// of the user's on top of everybody's. What cannot be read adds nothing.
JobOptions optionsAddedByClients(const std::string &queue,
                                 const KeptSettings &users = KeptSettings());

} // namespace Model
