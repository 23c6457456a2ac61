#include "typedValues.h"

#include "PageSelection.h"
#include "Text.h"
#include "ToolkitError.h"
#include "Values.h"
#include "sentences.h"
#include "textOnPage.h"
#include "watermarkPlaceholders.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace Model {
namespace {

/// What the scheduler takes as a value of a job's option, with room to spare.
constexpr std::size_t kMostBytes = 30000;

std::optional<Words> objectionUnless(bool isRight, std::string_view sentence)
{
    return isRight ? std::nullopt : std::optional(Words{sentence});
}

std::string inDigits(double number)
{
    std::ostringstream digits;
    digits.imbue(std::locale::classic());
    digits << number;
    return digits.str();
}

/// "%1 to %2" of something, or so many exactly.
Words between(const PPD::TypedLimits &limits, std::string_view sentence, std::string_view exactly)
{
    if (limits.from == limits.to)
        return {exactly, {asTheyAre(inDigits(limits.from))}};
    return {sentence, {asTheyAre(inDigits(limits.from)), asTheyAre(inDigits(limits.to))}};
}

Words wordsFor(const PPD::TypedLimits &limits)
{
    using LimitsKind = PPD::TypedLimits::Kind;
    switch (limits.kind) {
    case LimitsKind::Digits:
        return between(limits, kDigitsBetween, kDigits);
    case LimitsKind::Characters:
        return between(limits, kCharactersBetween, kCharacters);
    case LimitsKind::Number:
        break;
    }
    return {kNumberBetween, {asTheyAre(inDigits(limits.from)), asTheyAre(inDigits(limits.to))}};
}

std::optional<Words> objectionToNumber(const QueueField &field, std::string_view text)
{
    const auto number = numberFromText(text);
    if (field.setting != nullptr && field.setting->isAbove0)
        return objectionUnless(number.value_or(0) > 0, kNumberAbove0);
    return objectionUnless(number.has_value(), kNumber);
}

/// Lengths of the PPD's own options may have more units, and its rules say more of them.
std::optional<Words> objectionToLength(const QueueField &field, std::string_view text)
{
    return objectionUnless(field.setting == nullptr || lengthFromText(text).value_or(-1) >= 0,
                           kLength);
}

std::optional<Words> objectionToPlaceholders(std::string_view text)
{
    Watermark watermark = {};
    watermark.hasPlaceholders = true;
    try {
        watermark.text = withJobValues(text, {});
        textOnPage(watermark, 1, 1);
    } catch (const ToolkitError &) {
        return Words{kUnknownPlaceholder};
    } catch (const std::length_error &) {
        return Words{kTooLong};
    }
    return std::nullopt;
}

std::optional<Words> objectionByKind(const QueueField &field, std::string_view text)
{
    switch (field.field.typed.value_or(field.field.kind)) {
    case Kind::Digits:
        return objectionUnless(text.find_first_not_of("0123456789") == std::string_view::npos,
                               kDigitsAlone);
    case Kind::Number:
        return objectionToNumber(field, text);
    case Kind::Count:
        return objectionUnless(countFromText(text).has_value(), kCount);
    case Kind::Length:
        return objectionToLength(field, text);
    case Kind::Color:
        return objectionUnless(colourFromText(text).has_value(), kColor);
    case Kind::Pages:
        return objectionUnless(pageSelectionFromText(text).has_value(), kPageList);
    case Kind::File:
        return objectionUnless(text.starts_with('/'), kFullPath);
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<Words> objectionToText(const QueueField &field, std::string_view text,
                                     bool hasPlaceholders)
{
    if (std::ranges::any_of(text, Platform::isControl))
        return Words{kNoControls};
    for (const SettingRule &rule : field.rules) {
        if (!keepsTo(rule, text))
            return wordsFor(rule.limits);
    }
    if (text.size() > kMostBytes)
        return Words{kTooLong};
    if (text.empty())
        return std::nullopt;
    if (auto objection = objectionByKind(field, text))
        return objection;
    return hasPlaceholders ? objectionToPlaceholders(text) : std::nullopt;
}

std::optional<Words> objectionToPageSize(const PPD &ppd, std::string_view text)
{
    const auto size = ppd.pageSize(std::string(kTyped).append(text));
    return objectionUnless(size && size->width > 0 && size->height > 0, kPaperSize);
}

} // namespace Model
