#pragma once

#include "PPD.h"

#include <string>
#include <string_view>

// Options of the PPD and attributes of the job (RFC 8011) that say a setting which has a key of its
// own and no option. A PPD names them in lines of its own; one without such lines has none.
//
//   *KLSettingSource SOURCE: "KEY"               what the source says is stored under the key
//   *KLSettingValue OPTION.CHOICE: "VALUE"       what a choice says, where it is not its name
//   *KLChoiceSource SOURCE: "OPTION CHOICE"      a source that says anything makes that choice
//
// A source is an option of the PPD or, where the PPD has none of that name, an attribute that
// arrives with the job ("job-account-id"). Of an option it is the marked choice that speaks, the
// queue's default included: the choice "None" says nothing, a custom one what was typed for it, and
// every other its value or else its name. An attribute says its value; an empty one says nothing.

/// The settings that sources feed: keys and values, in the PPD's order.
/// @param ppd  with the job's choices marked
/// @param job  the job's own options; a key that is among them, with or without one of the endings
///             "..n." and "..b.", is fed by nobody
/// @return no key twice: the first source that says something is heard
JobOptions fedSettings(const PPD &ppd, const JobOptions &job);

/// The options that sources choose, and the choices, as the PPD spells both and in its order; of an
/// option that comes up twice the last choice counts. What the PPD does not have is left out.
/// @param ppd  with the job's choices marked
/// @param job  the job's own options; what they say about these PPD options does not count
JobOptions chosenOptions(const PPD &ppd, const JobOptions &job);

/// What a choice of an option says under the key that the option feeds: what a line gives for it,
/// else its name. ("None" and "Custom" say other things, see above.)
std::string valueOfChoice(const PPD &ppd, const std::string &option, const std::string &choice);

/// Whether a line of the PPD names it as a source, letter case included.
bool feeds(const PPD &ppd, std::string_view source);
