#pragma once

#include "PreviewMessages.h"

#include <poppler-qt6.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

/// There is nothing to show; what() is the detail of the answer.
class PreviewFailure : public std::runtime_error {
public:
    explicit PreviewFailure(Failure failure, const std::string &detail = {})
        : std::runtime_error(detail), _failure(failure)
    {
    }
    Failure failure() const { return _failure; }

private:
    Failure _failure;
};

/// A document after the toolkit, open.
struct PreparedDocument {
    std::unique_ptr<Poppler::Document> document; ///< not null
    QList<Sheet> sheets;
    std::vector<Refusal> refusals;
    std::vector<Note> notes;
};

/// Does to a document what the filter would do to a job with these settings, for the queue whose
/// PPD the environment names, and opens what comes of it.
///
/// Covers are set apart also for a queue that takes PostScript, to which the filter would add them
/// there: the pages are the same. The document itself is only read. All files lie in the temporary
/// folder, and are gone when this returns but for a link to the document. One thread.
/// @param request  its bounds, that on pages aside, are for others
/// @throws PreviewFailure, and std::exception for what nobody foresees
PreparedDocument preparedDocument(const PreviewRequests::Prepare &request);
