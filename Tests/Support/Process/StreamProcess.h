#pragma once

#include "KLPrintJob.h"
#include "MemoryStreams.h"
#include "StreamModel.h"

#include <string>
#include <vector>

namespace Support {

// The real stream, asked the same as the model (StreamModel.h). For targets that link KLJobFilter.

/// Does with the current line what the edit says.
inline void apply(KLPrintJob &job, const LineEdit &edit)
{
    job.insertDataBefore(edit.before);
    job.addDataAfter(edit.after);
    job.writeData(edit.atOnce);
    if (edit.replacement)
        *job.currentLine() = *edit.replacement;
}

/// Pushes the input through the rules.
/// @param rules  not empty
/// @param end    what the action for the end of the input does
inline ProcessedStream process(const std::string &input, const std::vector<LineRule> &rules,
                               const LineEdit &end = {})
{
    ProcessedStream result;
    const MemoryOutput output;
    KLPrintJob job(openInput(input), true, output.stream(), false);
    for (const LineRule &rule : rules)
        job.whenLineStartsWithStringDo(rule.prefix, [&job, &result, &rule] {
            result.seen.push_back({rule.prefix, *job.currentLine()});
            apply(job, rule.edit);
        });
    job.whenJobEndsDo([&] { apply(job, end); });
    job.process();
    result.output = output.bytes();
    result.currentLine = *job.currentLine();
    return result;
}

} // namespace Support
