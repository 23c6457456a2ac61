#pragma once

#include "PPD.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Model {

/// The text of an lpoptions file: lines as "Dest QUEUE/SET OPTIONS" and "Default QUEUE OPTIONS",
/// read as libcups reads them: letter case of words and names does not count, "\#" is a "#" and
/// what stands behind another one does not count. Lines that say nothing of a set that is changed
/// keep all their bytes. A value; one thread.
class KeptLines {
public:
    /// @param error  becomes the system's error, 0 when all is well; not null
    /// @return no lines when there is no such file; nullopt when it cannot be read
    static std::optional<KeptLines> read(const std::string &path, int *error);

    /// Writes the file anew, or not at all: never a part of it. Links are followed. A file that is
    /// new is its owner's alone, as is its folder.
    /// @return the system's error; 0 when all is well
    int write(const std::string &path) const;

    /// The names of a queue's sets, each once, empty for the one without a name, which comes first.
    std::vector<std::string> setsOf(const std::string &queue) const;

    bool has(const std::string &queue, const std::string &set) const;

    /// What all lines of a set say; empty when there is none.
    JobOptions optionsOf(const std::string &queue, const std::string &set) const;

    /// Puts options in the place of the set's, behind the last line when there is no such set.
    void keep(const std::string &queue, const std::string &set, const JobOptions &options);

    /// Takes a set out. Which queue is the default stays said.
    void remove(const std::string &queue, const std::string &set);

    /// Gives each line of a set another name.
    void rename(const std::string &queue, const std::string &set, const std::string &newName);

    /// Whether a line that was made here is longer than libcups reads.
    bool hasTooLong() const;

private:
    struct Line {
        std::string bytes;   ///< without the line's end
        bool isMade = false; ///< here, and not read
    };

    bool isDefault(const std::string &queue, const std::string &set) const;

    std::vector<Line> _lines;
};

} // namespace Model
