#include "PPD.h"

#include "Descriptor.h"
#include "PPDTranslation.h"
#include "Text.h"
#include "listOf.h"
#include "markedChoices.h"
#include "ppdLibrary.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <span>
#include <string_view>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Far above any real PPD, and small enough for libcups to hold in memory.
constexpr off_t kLargestPPD = off_t{16} << 20;

/// Why the file cannot be a PPD; empty when it may be one. libcups would read a device or a FIFO
/// for ever, and calls a folder an empty file.
std::string whyNotReadable(const struct stat &status)
{
    if (!S_ISREG(status.st_mode))
        return "not a regular file";
    if (status.st_size > kLargestPPD)
        return "larger than 16 MiB";
    return {};
}

std::string whyNotOpened(int error)
{
    int line = 0;
    const ppd_status_t status = ppdLastError(&line);
    if (status == PPD_FILE_OPEN_ERROR)
        return std::strerror(error);
    return std::string(ppdErrorString(status)) + " on line " + std::to_string(line);
}

ppd_choice_t *findChoice(ppd_file_t *ppd, const std::string &option, const std::string &choice)
{
    ppd_option_t *found = ppdFindOption(ppd, option.c_str());
    return found != nullptr ? ppdFindChoice(found, choice.c_str()) : nullptr;
}

std::optional<std::string> textOf(const char *text)
{
    return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
}

std::optional<std::string> codeOf(const ppd_choice_t *choice)
{
    return choice != nullptr ? textOf(choice->code) : std::nullopt;
}

/// The first choice of the option that is marked; null when there is none.
const ppd_choice_t *findMarkedChoice(ppd_file_t *ppd, const std::string &option)
{
    const ppd_option_t *found = ppdFindOption(ppd, option.c_str());
    if (found == nullptr)
        return nullptr;
    const auto choices = listOf(found->choices, found->num_choices);
    const auto marked = std::ranges::find_if(
        choices, [](const ppd_choice_t &choice) { return choice.marked != 0; });
    return marked != choices.end() ? &*marked : nullptr;
}

/// The choice that stands for typed values.
constexpr std::string_view kCustomChoice = "Custom";

/// The first parameter of the option's custom choice; null when it has none.
const ppd_cparam_t *findParameter(ppd_file_t *ppd, const std::string &option)
{
    ppd_coption_t *custom = ppdFindCustomOption(ppd, option.c_str());
    return custom != nullptr ? ppdFirstCustomParam(custom) : nullptr;
}

/// In its shortest form, whatever the locale.
std::string textOfNumber(float number)
{
    char digits[64];
    const auto end = std::to_chars(digits, std::end(digits), number, std::chars_format::fixed);
    return end.ec == std::errc() ? std::string(digits, end.ptr) : std::string();
}

/// Null for a number, and when nothing was typed.
char *typedText(const ppd_cparam_t &parameter)
{
    switch (parameter.type) {
    case PPD_CUSTOM_PASSCODE:
    case PPD_CUSTOM_PASSWORD:
    case PPD_CUSTOM_STRING:
        return parameter.current.custom_string;
    default:
        return nullptr;
    }
}

std::optional<std::string> valueOf(const ppd_cparam_t &parameter)
{
    switch (parameter.type) {
    case PPD_CUSTOM_INT:
        return std::to_string(parameter.current.custom_int);
    case PPD_CUSTOM_CURVE:
    case PPD_CUSTOM_INVCURVE:
    case PPD_CUSTOM_POINTS:
    case PPD_CUSTOM_REAL:
        return textOfNumber(parameter.current.custom_real);
    default:
        return textOf(typedText(parameter));
    }
}

std::optional<PPD::TypedLimits> limitsOf(const ppd_cparam_t &parameter)
{
    using Kind = PPD::TypedLimits::Kind;
    const auto &[least, most] = std::pair(parameter.minimum, parameter.maximum);
    switch (parameter.type) {
    case PPD_CUSTOM_PASSCODE:
        return PPD::TypedLimits{Kind::Digits, double(least.custom_passcode),
                                double(most.custom_passcode)};
    case PPD_CUSTOM_PASSWORD:
    case PPD_CUSTOM_STRING:
        return PPD::TypedLimits{Kind::Characters, double(least.custom_string),
                                double(most.custom_string)};
    case PPD_CUSTOM_INT:
        return PPD::TypedLimits{Kind::Number, double(least.custom_int), double(most.custom_int)};
    case PPD_CUSTOM_CURVE:
    case PPD_CUSTOM_INVCURVE:
    case PPD_CUSTOM_POINTS:
    case PPD_CUSTOM_REAL:
        return PPD::TypedLimits{Kind::Number, double(least.custom_real), double(most.custom_real)};
    case PPD_CUSTOM_UNKNOWN:
        break;
    }
    return std::nullopt;
}

PPD::Option describe(ppd_file_t *ppd, const ppd_option_t &option)
{
    PPD::Option described = {option.keyword,
                             option.defchoice,
                             option.section == PPD_ORDER_JCL,
                             ppdFindCustomOption(ppd, option.keyword) != nullptr,
                             {}};
    for (const ppd_choice_t &choice : listOf(option.choices, option.num_choices))
        described.choices.push_back({choice.choice, textOf(choice.code).value_or("")});
    return described;
}

/// In the texts that a job has given to the option's parameters.
void blankControls(ppd_coption_t &option)
{
    for (const auto *parameter = ppdFirstCustomParam(&option); parameter != nullptr;
         parameter = ppdNextCustomParam(&option)) {
        if (char *const text = typedText(*parameter))
            std::ranges::replace_if(text, text + std::strlen(text), Platform::isControl, ' ');
    }
}

/// @param name  null for the one that is marked
std::optional<PPD::PageSize> findPageSize(ppd_file_t *ppd, const char *name)
{
    const ppd_size_t *size = ppdPageSize(ppd, name);
    if (size == nullptr)
        return std::nullopt;
    return PPD::PageSize{size->width, size->length};
}

//
// What dialogs show
//

/// The words as they stand, UTF-8; the name where there are none.
std::string wordsOr(const char *words, const char *name)
{
    return Platform::repairedUTF8(words[0] != '\0' ? words : name, '?');
}

std::optional<PPD::ShownTyping> shownTyping(ppd_file_t *ppd, const ppd_option_t &option,
                                            const PPDTranslation &words)
{
    ppd_coption_t *const custom = ppdFindCustomOption(ppd, option.keyword);
    const ppd_cparam_t *const first = custom != nullptr ? ppdFirstCustomParam(custom) : nullptr;
    if (first == nullptr)
        return std::nullopt;
    const bool isHidden = first->type == PPD_CUSTOM_PASSCODE || first->type == PPD_CUSTOM_PASSWORD;
    return PPD::ShownTyping{words.of("ParamCustom" + std::string(option.keyword), first->name,
                                     wordsOr(first->text, first->name)),
                            isHidden, first->type == PPD_CUSTOM_POINTS,
                            ppdNextCustomParam(custom) == nullptr};
}

PPD::ShownOption shownOption(ppd_file_t *ppd, const ppd_group_t &group, const ppd_option_t &option,
                             const PPDTranslation &words)
{
    PPD::ShownOption shown = {
        option.keyword,
        words.of("Translation", option.keyword, wordsOr(option.text, option.keyword)),
        group.name,
        words.of("Translation", group.name, wordsOr(group.text, group.name)),
        option.ui == PPD_UI_BOOLEAN,
        {},
        shownTyping(ppd, option, words)};
    for (const ppd_choice_t &choice : listOf(option.choices, option.num_choices)) {
        if (!shown.typing || choice.choice != kCustomChoice)
            shown.choices.push_back({choice.choice, words.of(option.keyword, choice.choice,
                                                             wordsOr(choice.text, choice.choice))});
    }
    return shown;
}

using Choices = std::vector<std::pair<std::string, std::string>>;

/// Everything that is in conflict when the option has that choice, whatever with.
Choices allConflicts(ppd_file_t *ppd, const std::string &option, const std::string &choice)
{
    cups_option_t *found = nullptr;
    const int count = ppdGetConflicts(ppd, option.c_str(), choice.c_str(), &found);
    Choices conflicts;
    for (const cups_option_t &one : listOf(found, count))
        conflicts.emplace_back(one.name, one.value);
    cupsFreeOptions(count, found);
    return conflicts;
}

} // namespace

JobOptions parsedOptions(const std::string &optionString)
{
    cups_option_t *parsed = nullptr;
    const int count = cupsParseOptions(optionString.c_str(), 0, &parsed);
    JobOptions options;
    for (const cups_option_t &option : std::span(parsed, static_cast<std::size_t>(count)))
        options.emplace_back(option.name, option.value);
    cupsFreeOptions(count, parsed);
    return options;
}

std::optional<PPD> PPD::open(const std::string &path, std::string *whyNot)
{
    // Without O_NONBLOCK the open itself would wait for a FIFO's writer.
    const Platform::Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (file.number() < 0 || fstat(file.number(), &status) != 0) {
        *whyNot = std::strerror(errno);
        return std::nullopt;
    }
    *whyNot = whyNotReadable(status);
    auto ppd = whyNot->empty() ? read(file.number(), status.st_size, whyNot) : std::nullopt;
    if (ppd)
        ppd->_path = path;
    return ppd;
}

std::optional<PPD> PPD::read(int descriptor, long long size, std::string *whyNot)
{
    // libcups closes what it has read; the copy stands where the file does.
    const int copy = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    PPD ppd(copy < 0 ? nullptr : ppdOpenFd(copy));
    if (!ppd._file)
        *whyNot = copy < 0 ? std::strerror(errno) : whyNotOpened(errno);
    else if (lseek(descriptor, 0, SEEK_CUR) != size) {
        *whyNot = "not all of it could be read";
        return std::nullopt;
    }
    return ppd._file ? std::optional(std::move(ppd)) : std::nullopt;
}

void PPD::markDefaults()
{
    ppdMarkDefaults(_file.get());
}

void PPD::mark(const std::string &option, const std::string &choice)
{
    ppdMarkOption(_file.get(), option.c_str(), choice.c_str());
}

void PPD::mark(const JobOptions &options)
{
    std::vector<cups_option_t> list;
    list.reserve(options.size());
    // The library takes what it does not change as if it did.
    for (const auto &[name, value] : options)
        list.push_back({const_cast<char *>(name.c_str()), const_cast<char *>(value.c_str())});
    // It looks some of them up by halves.
    std::ranges::stable_sort(list, [](const cups_option_t &left, const cups_option_t &right) {
        return strcasecmp(left.name, right.name) < 0;
    });
    ppdMarkOptions(_file.get(), static_cast<int>(list.size()), list.data());
    blankControlsOfCustomTexts();
}

/// Of all options, whatever their section: a PPD may give the custom choice one of its own.
void PPD::blankControlsOfCustomTexts()
{
    ppd_file_t *const file = _file.get();
    for (const auto *option = ppdFirstOption(file); option != nullptr;
         option = ppdNextOption(file)) {
        if (ppd_coption_t *custom = ppdFindCustomOption(file, option->keyword); custom != nullptr)
            blankControls(*custom);
    }
}

std::vector<std::pair<std::string, std::string>> PPD::markedChoices() const
{
    return ::markedChoices(*_file);
}

std::optional<std::string> PPD::attribute(const std::string &name) const
{
    const ppd_attr_t *found = ppdFindAttr(_file.get(), name.c_str(), nullptr);
    return found != nullptr ? textOf(found->value) : std::nullopt;
}

std::vector<PPD::Attribute> PPD::attributes(const std::string &name) const
{
    std::vector<Attribute> attributes;
    const ppd_attr_t *found = ppdFindAttr(_file.get(), name.c_str(), nullptr);
    for (; found != nullptr; found = ppdFindNextAttr(_file.get(), name.c_str(), nullptr))
        attributes.push_back({found->spec, textOf(found->value).value_or("")});
    return attributes;
}

bool PPD::hasAttributeThatBegins(std::string_view prefix) const
{
    return std::ranges::any_of(listOf(_file->attrs, _file->num_attrs),
                               [prefix](const ppd_attr_t *attribute) {
                                   return std::string_view(attribute->name).starts_with(prefix);
                               });
}

std::vector<std::string> PPD::filters() const
{
    const auto filters = listOf(_file->filters, _file->num_filters);
    return {filters.begin(), filters.end()};
}

std::optional<std::string> PPD::headerBegin() const
{
    return textOf(_file->jcl_begin);
}

std::optional<std::string> PPD::headerEnd() const
{
    return textOf(_file->jcl_ps);
}

bool PPD::repeatsPagesForCopies() const
{
    return _file->manual_copies != 0;
}

std::vector<PPD::Option> PPD::options() const
{
    std::vector<Option> options;
    for (const ppd_group_t &group : listOf(_file->groups, _file->num_groups)) {
        for (const ppd_option_t &option : listOf(group.options, group.num_options))
            options.push_back(describe(_file.get(), option));
    }
    return options;
}

bool PPD::hasOption(const std::string &option) const
{
    return ppdFindOption(_file.get(), option.c_str()) != nullptr;
}

bool PPD::hasChoice(const std::string &option, const std::string &choice) const
{
    return findChoice(_file.get(), option, choice) != nullptr;
}

std::optional<std::string> PPD::optionAsSpelt(const std::string &option) const
{
    const ppd_option_t *found = ppdFindOption(_file.get(), option.c_str());
    return found != nullptr ? textOf(found->keyword) : std::nullopt;
}

std::optional<std::string> PPD::choiceAsSpelt(const std::string &option,
                                              const std::string &choice) const
{
    const ppd_option_t *found = ppdFindOption(_file.get(), option.c_str());
    if (found == nullptr)
        return std::nullopt;
    std::optional<std::string> spelt;
    for (const ppd_choice_t &one : listOf(found->choices, found->num_choices)) {
        if (one.choice == choice)
            return choice;
        if (!spelt && strcasecmp(one.choice, choice.c_str()) == 0)
            spelt = one.choice;
    }
    return spelt;
}

bool PPD::isJobControl(const std::string &option) const
{
    const ppd_option_t *found = ppdFindOption(_file.get(), option.c_str());
    return found != nullptr && found->section == PPD_ORDER_JCL;
}

std::optional<std::string> PPD::code(const std::string &option, const std::string &choice) const
{
    return codeOf(findChoice(_file.get(), option, choice));
}

std::optional<std::string> PPD::markedChoice(const std::string &option) const
{
    const ppd_choice_t *choice = findMarkedChoice(_file.get(), option);
    return choice != nullptr ? std::optional<std::string>(choice->choice) : std::nullopt;
}

std::optional<std::string> PPD::typedValue(const std::string &option) const
{
    const ppd_cparam_t *parameter = findParameter(_file.get(), option);
    if (parameter == nullptr || markedChoice(option) != kCustomChoice)
        return std::nullopt;
    return valueOf(*parameter);
}

std::optional<PPD::TypedLimits> PPD::typedLimits(const std::string &option) const
{
    const ppd_cparam_t *parameter = findParameter(_file.get(), option);
    return parameter != nullptr ? limitsOf(*parameter) : std::nullopt;
}

std::optional<std::string> PPD::codeOfMarkedChoice(const std::string &option) const
{
    return codeOf(findMarkedChoice(_file.get(), option));
}

std::vector<PPD::ShownOption> PPD::shownOptions(const std::string &language) const
{
    const PPDTranslation words(_path, language);
    std::vector<ShownOption> shown;
    for (const ppd_group_t &group : listOf(_file->groups, _file->num_groups)) {
        for (const ppd_option_t &option : listOf(group.options, group.num_options)) {
            if (strcasecmp(option.keyword, "PageRegion") != 0)
                shown.push_back(shownOption(_file.get(), group, option, words));
        }
    }
    return shown;
}

std::vector<std::pair<std::string, std::string>> PPD::conflictsOf(const std::string &option,
                                                                  const std::string &choice) const
{
    const auto marked = markedChoice(option);
    if (!marked)
        return {};
    Choices conflicts = allConflicts(_file.get(), option, choice);
    const Choices before =
        conflicts.empty() ? Choices() : allConflicts(_file.get(), option, *marked);
    std::erase_if(conflicts, [&before](const auto &conflict) {
        return std::ranges::find(before, conflict) != before.end();
    });
    return conflicts;
}

std::optional<PPD::PageSize> PPD::pageSize(const std::string &name) const
{
    return findPageSize(_file.get(), name.c_str());
}

std::optional<PPD::PageSize> PPD::markedPageSize() const
{
    return findPageSize(_file.get(), nullptr);
}

void PPD::emitJobControl(FILE *file, int jobId, const std::string &user,
                         const std::string &title) const
{
    ppdEmitJCL(_file.get(), file, jobId, user.c_str(), title.c_str());
}

void PPD::Closer::operator()(ppd_file_s *file) const
{
    ppdClose(file);
}
