#pragma once

#include <string_view>

namespace Model {

// What the model says, in one place, so that none is forgotten when they are translated.

// Why something cannot be chosen. %1 is what a field is called, %2 what one of its choices is.
inline constexpr std::string_view kOnlyWith = "Only with “%1”: %2";
inline constexpr std::string_view kNotWith = "Not together with “%1”: %2";
inline constexpr std::string_view kOnlyWithAny = "Only with “%1”";
inline constexpr std::string_view kNotWithAny = "Not together with “%1”";
inline constexpr std::string_view kSaidBy = "Follows from “%1”";
inline constexpr std::string_view kSaidElsewhere =
    "Was set with another program, under a name that this printer's driver has no choice for";
inline constexpr std::string_view kNoSuchChoice = "There is no such choice";
inline constexpr std::string_view kYes = "Yes";
inline constexpr std::string_view kNo = "No";
inline constexpr std::string_view kAnother = "Another value";
inline constexpr std::string_view kGeneral = "General"; ///< heading of options without a group

// What is wrong with something typed.
inline constexpr std::string_view kDigitsBetween = "Must be %1 to %2 digits, and nothing else";
inline constexpr std::string_view kDigits = "Must be %1 digits, and nothing else";
inline constexpr std::string_view kDigitsAlone = "Must be digits, and nothing else";
inline constexpr std::string_view kCharactersBetween = "Must have %1 to %2 characters";
inline constexpr std::string_view kCharacters = "Must have %1 characters";
inline constexpr std::string_view kNumberBetween = "Must be a number from %1 to %2";
inline constexpr std::string_view kNumber = "Must be a number";
inline constexpr std::string_view kNumberAbove0 = "Must be a number above 0";
inline constexpr std::string_view kCount = "Must be a whole number";
inline constexpr std::string_view kLength =
    "Must be a length, as 10mm or 0.5in, or a number of points (1/72 inch)";
inline constexpr std::string_view kColor =
    "Must be 1, 3 or 4 numbers from 0 to 1 with commas between them";
inline constexpr std::string_view kPageList = "Must be a list of pages, as 2-5,8,10-";
inline constexpr std::string_view kFullPath = "Must be the full path of a file";
inline constexpr std::string_view kPaperSize = "Must be a size, as 100x200mm";
inline constexpr std::string_view kNoControls = "Must not have tabs, line breaks or the like";
inline constexpr std::string_view kTooLong = "Is too long";
inline constexpr std::string_view kUnknownPlaceholder =
    "Words in brackets must be [user], [title], [job-id], [date], [time], [page] or [pages]";

// Servers and queues. %1 is a server, a queue or a file; %2 says why.
inline constexpr std::string_view kNoAnswer = "The server %1 does not answer";
inline constexpr std::string_view kServerRefuses = "The server %1 refuses: %2";
inline constexpr std::string_view kQueueIsGone = "The printer %1 is not there any more";
inline constexpr std::string_view kNoDriver = "The driver of the printer %1 cannot be read: %2";
inline constexpr std::string_view kOtherDriver =
    "The printer %1 has another driver now, one without this filter";
inline constexpr std::string_view kTooLarge = "it is too large";
inline constexpr std::string_view kNoTemporaryFile = "No temporary file can be made: %1";

// Kept settings.
inline constexpr std::string_view kCannotRead = "The file %1 cannot be read: %2";
inline constexpr std::string_view kCannotWrite =
    "The settings cannot be kept in the file %1: %2. It is as it was";
inline constexpr std::string_view kNoHome = "There is no home folder to keep settings in";
inline constexpr std::string_view kTooMuchToKeep =
    "These settings are too long to be kept; a shorter text would do";
inline constexpr std::string_view kNoSuchSet = "There are no settings of the name %1";
inline constexpr std::string_view kSetIsThere = "There are settings of the name %1 already";
inline constexpr std::string_view kNoName = "A name is needed";
inline constexpr std::string_view kNameHas = "A name must not have blanks, quotes or any of / # \\";
inline constexpr std::string_view kNameTooLong = "A name must not have more than 127 letters";
inline constexpr std::string_view kReadByOwner =
    "They lie in the file %1 as they are; you and the administrator can read it";
inline constexpr std::string_view kReadByGroup =
    "They lie in the file %1 as they are; you, the administrator and the group %2 can read it";
inline constexpr std::string_view kReadByAll =
    "They lie in the file %1 as they are; everybody on this computer can read it";

// Jobs.
inline constexpr std::string_view kNotSent = "The document was not sent: %1";
inline constexpr std::string_view kNoDocument = "The file %1 cannot be read: %2";
inline constexpr std::string_view kJobIsGone = "The server does not know the job any more";
inline constexpr std::string_view kWaiting = "Waiting";
inline constexpr std::string_view kHeld = "Held";
inline constexpr std::string_view kPrinting = "Printing";
inline constexpr std::string_view kStopped = "Stopped";
inline constexpr std::string_view kPrinted = "The printer has it";
inline constexpr std::string_view kCancelled = "Cancelled";
inline constexpr std::string_view kFailed = "Was not printed";

inline constexpr std::string_view kSentences[] = {kOnlyWith,
                                                  kNotWith,
                                                  kOnlyWithAny,
                                                  kNotWithAny,
                                                  kSaidBy,
                                                  kSaidElsewhere,
                                                  kNoSuchChoice,
                                                  kYes,
                                                  kNo,
                                                  kAnother,
                                                  kGeneral,
                                                  kDigitsBetween,
                                                  kDigits,
                                                  kDigitsAlone,
                                                  kCharactersBetween,
                                                  kCharacters,
                                                  kNumberBetween,
                                                  kNumber,
                                                  kNumberAbove0,
                                                  kCount,
                                                  kLength,
                                                  kColor,
                                                  kPageList,
                                                  kFullPath,
                                                  kPaperSize,
                                                  kNoControls,
                                                  kTooLong,
                                                  kUnknownPlaceholder,
                                                  kNoAnswer,
                                                  kServerRefuses,
                                                  kQueueIsGone,
                                                  kNoDriver,
                                                  kOtherDriver,
                                                  kTooLarge,
                                                  kNoTemporaryFile,
                                                  kCannotRead,
                                                  kCannotWrite,
                                                  kNoHome,
                                                  kTooMuchToKeep,
                                                  kNoSuchSet,
                                                  kSetIsThere,
                                                  kNoName,
                                                  kNameHas,
                                                  kNameTooLong,
                                                  kReadByOwner,
                                                  kReadByGroup,
                                                  kReadByAll,
                                                  kNotSent,
                                                  kNoDocument,
                                                  kJobIsGone,
                                                  kWaiting,
                                                  kHeld,
                                                  kPrinting,
                                                  kStopped,
                                                  kPrinted,
                                                  kCancelled,
                                                  kFailed};

} // namespace Model
