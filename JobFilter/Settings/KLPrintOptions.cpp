#include "KLPrintOptions.h"

#include "Numbers.h"
#include "ObjectFormat.h"
#include "SystemLog.h"
#include "Text.h"
#include "WriteLog.h"
#include "backCoverPage.h"
#include "coverPageRules.h"
#include "optionName.h"
#include "pinnedUser.h"
#include "postscriptRules.h"
#include "settingSources.h"
#include "watermarkRules.h"

#include <cstdlib>
#include <utility>

namespace {

/// On purpose: A4 turned on its side, and 596 points high where A4 has 595.
constexpr KLPageSize kDefaultPageSize = {842.0, 596.0};

/// The PPD that the environment names.
PPD queuePPD()
{
    const char *path = std::getenv("PPD");
    if (path == nullptr)
        throw KLNoPPDError("No PPD file: the environment variable PPD is not set");
    std::string whyNot;
    auto ppd = PPD::open(path, &whyNot);
    if (!ppd)
        throw KLNoPPDError("Unable to open PPD file " + std::string(path) + ": " + whyNot);
    return std::move(*ppd);
}

} // namespace

//
// The store
//

KLPrintOptions::KLPrintOptions(const std::string &optionString) : _ppd(queuePPD())
{
    const JobOptions job = withoutPinnedUser(parsedOptions(optionString), _ppd);
    _ppd.markDefaults();
    _ppd.mark(job);
    const JobOptions chosen = withoutPinnedUser(chosenOptions(_ppd, job), _ppd);
    for (const auto &[option, choice] : chosen)
        _ppd.mark(option, choice);
    storeMarkedChoices();
    for (const auto &[name, value] : job)
        storeOption(name, value);
    for (const auto &[option, choice] : chosen)
        setValueForKey(choice, option);
    for (auto &[key, value] : withoutPinnedUser(fedSettings(_ppd, job), _ppd))
        setValueForKey(std::move(value), key);
}

std::optional<KLValue> KLPrintOptions::valueForKey(std::string_view key) const
{
    const auto entry = _options.find(key);
    return entry != _options.end() ? std::optional(entry->second) : std::nullopt;
}

std::optional<KLValue>
KLPrintOptions::valueForKeyWithDefault(std::string_view key,
                                       std::optional<KLValue> defaultValue) const
{
    auto value = valueForKey(key);
    return value ? value : std::move(defaultValue);
}

bool KLPrintOptions::valueForKeyIsEqualToString(std::string_view key, std::string_view text) const
{
    return valueForKeyIsEqualToStringOptions(key, text, Platform::ExactComparison);
}

bool KLPrintOptions::valueForKeyIsEqualToStringOptions(std::string_view key, std::string_view text,
                                                       unsigned options) const
{
    const auto value = valueForKey(key);
    const auto *stored = value ? std::get_if<std::string>(&*value) : nullptr;
    return stored != nullptr && Platform::isEqualText(*stored, text, options);
}

bool KLPrintOptions::valueForKeyIsEqualToNumber(std::string_view key, std::int64_t number) const
{
    const auto value = valueForKey(key);
    if (!value)
        return false;
    if (const auto *integer = std::get_if<std::int64_t>(&*value))
        return *integer == number;
    const auto *boolean = std::get_if<bool>(&*value);
    return boolean != nullptr && static_cast<std::int64_t>(*boolean) == number;
}

void KLPrintOptions::setValueForKey(std::optional<KLValue> value, std::string_view key)
{
    if (value)
        _options.insert_or_assign(std::string(key), std::move(*value));
    else if (const auto entry = _options.find(key); entry != _options.end())
        _options.erase(entry);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): it is moved from, through try_emplace()
void KLPrintOptions::setDefaultValueForKey(KLValue value, std::string_view key)
{
    _options.try_emplace(std::string(key), std::move(value));
}

void KLPrintOptions::storeMarkedChoices()
{
    // Where several choices of an option are marked, the last one is what stays.
    for (auto &[keyword, choice] : _ppd.markedChoices())
        setValueForKey(std::move(choice), keyword);
}

void KLPrintOptions::storeOption(const std::string &name, std::string text)
{
    // libcups marks choices in any letter case: the store must not hold another than the header.
    if (auto choice = _ppd.choiceAsSpelt(name, text))
        text = std::move(*choice);
    if (text == "true")
        text = "True";
    else if (text == "false")
        text = "False";

    const auto [key, kind] = optionName(name);
    switch (kind) {
    case OptionName::Kind::Integer:
        return setValueForKey(Platform::integerFromText(text), key);
    case OptionName::Kind::Boolean:
        return setValueForKey(Platform::booleanFromText(text), key);
    case OptionName::Kind::Text:
        return setValueForKey(std::move(text), key);
    }
}

std::optional<std::string> KLPrintOptions::textForKey(std::string_view key) const
{
    const auto value = valueForKey(key);
    return value ? std::optional(Platform::description(*value)) : std::nullopt;
}

std::string KLPrintOptions::textForKeyWithDefault(std::string_view key,
                                                  const char *defaultText) const
{
    return Platform::description(valueForKeyWithDefault(key, defaultText).value());
}

std::int64_t KLPrintOptions::integerForKey(std::string_view key) const
{
    const auto value = valueForKey(key);
    if (!value)
        return 0;
    if (const auto *text = std::get_if<std::string>(&*value))
        return Platform::integerFromText(*text);
    const auto *integer = std::get_if<std::int64_t>(&*value);
    return integer != nullptr ? *integer : std::get<bool>(*value);
}

bool KLPrintOptions::isTrue(std::string_view key) const
{
    return valueForKeyIsEqualToStringOptions(key, "true", Platform::CaseInsensitiveComparison);
}

bool KLPrintOptions::isOneSided() const
{
    return valueForKeyIsEqualToString("Duplex", "None");
}

//
// What the PPD says
//

std::optional<std::string>
KLPrintOptions::codeForMarkedChoiceForPPDOption(const std::string &keyword) const
{
    return _ppd.codeOfMarkedChoice(keyword);
}

std::optional<std::string>
KLPrintOptions::codeForPPDOptionWithChoice(const std::string &keyword,
                                           const std::string &choice) const
{
    return _ppd.code(keyword, choice);
}

std::optional<std::string>
KLPrintOptions::convertPJLCodeToPostscriptForPPDOptionWithChoice(const std::string &keyword,
                                                                 const std::string &choice) const
{
    if (!_ppd.isJobControl(keyword))
        return std::nullopt;
    const auto code = codeForPPDOptionWithChoice(keyword, choice);
    return code ? postscriptFromPJLCode(*code) : std::nullopt;
}

std::optional<std::string> KLPrintOptions::convertPJLCodeToPostscriptForMarkedChoiceForPPDOption(
    const std::string &keyword) const
{
    const auto choice = textForKey(keyword);
    return choice ? convertPJLCodeToPostscriptForPPDOptionWithChoice(keyword, *choice)
                  : std::nullopt;
}

std::optional<std::string>
KLPrintOptions::postscriptCodeForDuplexSetting(const std::optional<std::string> &setting)
{
    return setting ? postscriptForDuplexSetting(*setting) : std::nullopt;
}

std::optional<std::string> KLPrintOptions::postscriptCodeForDefaultDuplexSetting() const
{
    return postscriptCodeForDuplexSetting(textForKey("Duplex"));
}

KLPageSize KLPrintOptions::pageSize() const
{
    const auto name = textForKey("PageSize");
    const auto size = name ? _ppd.pageSize(*name) : std::nullopt;
    return size ? KLPageSize{size->width, size->height} : kDefaultPageSize;
}

//
// Cover pages
//

std::optional<std::string>
KLPrintOptions::generateCoverPageCodeForPositionRestorationPage(std::string_view position,
                                                                std::int64_t &restorationPage) const
{
    using Platform::objectFormat;

    const std::string title = Platform::titlecaseText(position);
    const std::string useKey = objectFormat("com.kalmira.pde.cover-pages.use%@Cover", title);
    if (!isTrue(useKey)) {
        Platform::writeSystemLog(onOneLine(
            objectFormat("%@ cover is not enabled (%@ = %@)", title, useKey, valueForKey(useKey))));
        return std::nullopt;
    }

    const std::string name = Platform::lowercaseText(position);
    const auto setting = [&](std::string_view keyFormat) {
        return textForKey(objectFormat(keyFormat, name));
    };
    const auto source = setting("com.kalmira.pde.cover-pages.%@CoverSource");
    const auto mediaType = setting("com.kalmira.pde.cover-pages.%@CoverMediaType");
    const auto printStyle = setting("com.kalmira.pde.cover-pages.%@CoverPrintStyle");
    if (!source || !mediaType || !printStyle)
        return std::nullopt;

    const FrontCover front = name == "front" ? frontCover(*printStyle, isOneSided()) : FrontCover{};
    restorationPage = front.restorationPage.value_or(restorationPage);
    return coverPagePostScript(
        {title, *source, *mediaType, *printStyle,
         convertPJLCodeToPostscriptForPPDOptionWithChoice("MediaType", *mediaType),
         codeForPPDOptionWithChoice("InputSlot", *source), front.addition});
}

std::int64_t KLPrintOptions::calculateBackCoverPageFromTotalPages(std::int64_t totalPages) const
{
    if (!isTrue("com.kalmira.pde.cover-pages.useBackCover"))
        return -1;
    const bool frontPrintedOnce =
        isTrue("com.kalmira.pde.cover-pages.useFrontCover") &&
        valueForKeyIsEqualToString("com.kalmira.pde.cover-pages.frontCoverPrintStyle", "Print1");
    return backCoverPage(totalPages, textForKey("com.kalmira.pde.cover-pages.backCoverPrintStyle"),
                         isOneSided(), frontPrintedOnce);
}

//
// The watermark
//

std::string KLPrintOptions::generageWatermarkCode() const
{
    return watermarkPostScript({
        .text = textForKeyWithDefault("com.kalmira.pde.watermark.text", ""),
        .font = textForKeyWithDefault("com.kalmira.pde.watermark.font", "Helvetica"),
        .size = textForKeyWithDefault("com.kalmira.pde.watermark.size", "50.0"),
        .x = textForKeyWithDefault("com.kalmira.pde.watermark.x", "50.0"),
        .y = textForKeyWithDefault("com.kalmira.pde.watermark.y", "50.0"),
        .angle = textForKeyWithDefault("com.kalmira.pde.watermark.angle", "0.0"),
        .color = textForKeyWithDefault("com.kalmira.pde.watermark.color", "0 0 0 1"),
        .beneath = valueForKeyIsEqualToString("com.kalmira.pde.watermark.ordering", "0"),
        .orientation = integerForKey("orientation-requested"),
    });
}
