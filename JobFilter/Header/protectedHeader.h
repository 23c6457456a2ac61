#pragma once

#include <memory>
#include <optional>
#include <string>

class KLPrintOptions;
struct JobName;

/// Whether the job asks for its pages to be kept from the eyes of others: to be printed with a code
/// only, or to be stored and not printed.
bool asksForProtection(const KLPrintOptions &options);

/// The header of a job that asks for protection, as the printer is to get it. Held in memory until
/// it is whole: who sends nothing unless there is one sends no page in the open.
///
/// It is judged by what came out. The walk has ended with the line that enters the language of the
/// pages, the one of the PPD's JCLToPSInterpreter and none before it (where that enters none: at
/// the header's end); and a line behind the marker that begins PJL says the protection:
/// - PRIVPRINT with the job's code, for a private job that has one;
/// - a PRINTMODE line, the PPD's for "Private" where it has one, for a private job without a code;
/// - PRINTMODE=BOX, for a job to be stored only.
/// @param options  of a job that asks for protection; not null
/// @return nullopt when there is no such header, for lack of memory or in the PPD
std::optional<std::string> protectedHeader(const std::shared_ptr<KLPrintOptions> &options,
                                           const JobName &job);
