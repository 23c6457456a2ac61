#pragma once

#include "QueuePPD.h"

#include <memory>
#include <string>
#include <string_view>

/// Printer features as a queue's PPD (format 4.3) says them in PostScript. Owns the opened PPD.
/// Names are libcups' (letter case does not count there).
class PrinterFeatures {
public:
    /// @param ppdPath  empty when there is no PPD
    /// @throws ToolkitError when there is one and it cannot be read
    explicit PrinterFeatures(const std::string &ppdPath);

    /// The code of a choice, protected so that an error in it does not end the job. A job-control
    /// choice's code is turned into PostScript first (see postscriptFromPJLCode()).
    /// @param option  keyword, "MediaType"
    /// @return whole lines; empty when there is no such option or choice, when it has no code, and
    ///         for a job-control choice's that cannot be turned
    std::string code(const std::string &option, const std::string &choice) const;

    /// Whether the PPD has that choice; false without a PPD.
    bool has(const std::string &option, const std::string &choice) const;

    /// Whether a choice of that option would go into the job's header; false without such an
    /// option.
    bool isJobControl(const std::string &option) const;

private:
    std::unique_ptr<QueuePPD> _ppd;
};

/// Lines of PostScript as a feature of a document, protected so that an error in them does not end
/// the job. Names and code stand in it as they are.
/// @return whole lines
std::string protectedFeature(const std::string &option, const std::string &choice,
                             std::string_view code);
