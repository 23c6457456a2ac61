#pragma once

#include "Descriptor.h"
#include "Streams.h"

#include <string>

/// The list of the files that this run has made, which a cancellation removes (Cancellation.h): one
/// for the process, of at most eight files. It is filled whether the handlers are installed or not.
/// A path counts as it is spelt, a relative one from the working directory of the moment.
///
/// Whoever owns a folder can give a file's name in it to another file. So a name alone does not say
/// what is ours:
/// - A file that is held is the one behind its descriptor.
/// - One that is not held is for others to work on, who may also put a new file in its place. Ours
///   is then a regular file of the user as whom the process runs.
///
/// Only such a file is read or removed. Two moments stay open, for there are no calls that look at
/// a name and use it in one. Between the look and the removal the folder's owner can put a file
/// there, which is removed then: any that he can put there he can remove himself. And what another
/// process opens by the name that it is given is what lies there at that time.
namespace Platform::MadeFiles {

/// Puts a file on the list, not held. Call it inside a CancellationDelay that also spans the file's
/// creation.
/// @return false when the list is full or the path longer than 1023 bytes: the file would survive a
///         cancellation.
bool add(const std::string &path);

/// Holds a file of the list: from now on it is the one that is open there.
/// @return false when there is no descriptor, with errno as it was; when its file cannot be looked
///         at, with errno set; when the path is not on the list
bool hold(const std::string &path, Descriptor file);

/// Holds what others have left under the name of a file of the list, if it is ours: links are
/// not followed, and nothing is waited for. Else all stays as it was.
void takeBack(const std::string &path);

/// Says whether a file of the list is one that is of no use to anybody yet; at first it is not.
/// Nothing happens when it is not on the list.
void setUnfinished(const std::string &path, bool unfinished);

bool isListed(const std::string &path);

/// Whether a file of the list has lost its name to one that is not ours. A name that is gone, and a
/// file that is not on the list, are not replaced.
bool isReplaced(const std::string &path);

/// The held file, for reading from its start, whatever has its name.
/// @return null when it is not held or not on the list, or on failure
Stream openForReading(const std::string &path);

/// Takes a file off the list, and removes it where its name still leads to it. One that cannot be
/// removed stays, and nobody is told.
void remove(const std::string &path);

/// Takes a file off the list; nothing happens when it is not on it.
void forget(const std::string &path);

/// Removes all files of the list in the same way, or the unfinished ones; the list stays as it is.
/// Async-signal-safe.
void removeAll();
void removeUnfinished();

} // namespace Platform::MadeFiles
