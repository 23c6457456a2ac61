#pragma once

#include "PPD.h"

#include <optional>
#include <string>
#include <string_view>

/// Printer features as a queue's PPD says them in PostScript.
class PrinterFeatures {
public:
    /// @param ppdPath  empty when there is no PPD
    /// @throws ToolkitError when there is one and it cannot be read
    explicit PrinterFeatures(const std::string &ppdPath);

    /// The code of a choice, protected so that an error in it does not end the job. A job-control
    /// choice's code is turned into PostScript first.
    /// @param option  keyword, "MediaType"
    /// @return whole lines; empty when there is no such option or choice, or when it has no code
    std::string code(const std::string &option, const std::string &choice) const;

    /// Whether the PPD has that choice.
    bool has(const std::string &option, const std::string &choice) const;

    /// Whether a choice of that option would go into the job's header.
    bool isJobControl(const std::string &option) const;

private:
    std::optional<PPD> _ppd;
};

/// Lines of PostScript as a feature of a document, protected so that an error in them does not end
/// the job.
std::string protectedFeature(const std::string &option, const std::string &choice,
                             std::string_view code);
