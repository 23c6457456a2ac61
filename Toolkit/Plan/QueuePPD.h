#pragma once

#include "PageSizes.h"

#include <memory>
#include <optional>
#include <string>

// What libcups knows. It comes with a module that the first call loads, because few commands ask,
// and starting with all the libraries behind it would take as long as all else that starts.

/// A queue's PPD (format 4.3), opened. Names are compared without regard to letter case.
class QueuePPD {
public:
    QueuePPD() = default;
    virtual ~QueuePPD() = default;
    QueuePPD(const QueuePPD &) = delete;
    QueuePPD &operator=(const QueuePPD &) = delete;

    /// The size that the PPD gives a name; nullopt when it does not know it.
    virtual std::optional<PageSize> pageSize(const std::string &name) const = 0;
    /// The size that it gives a job that asks for none; nullopt when it has no default.
    virtual std::optional<PageSize> defaultPageSize() = 0;

    /// The code of a choice; @see PPD::code()
    virtual std::optional<std::string> code(const std::string &option,
                                            const std::string &choice) const = 0;
    virtual bool hasChoice(const std::string &option, const std::string &choice) const = 0;
    /// Whether a choice of that option goes into the job's header; false without such an option.
    virtual bool isJobControl(const std::string &option) const = 0;
};

/// The queue's PPD.
/// @param path  empty when there is none
/// @return null without a path
/// @throws ToolkitError when there is a path and the PPD cannot be read, or only a part of it
std::unique_ptr<QueuePPD> queuePPD(const std::string &path);

/// The size of a standard name of PPD files and of PWG 5101.1; nullopt for any other.
/// @throws ToolkitError when the module is not installed
std::optional<PageSize> standardPageSize(const std::string &name);
