#include "PDFFreeText.h"

#include "ToolkitError.h"
#include "Values.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <sstream>
#include <utility>

namespace {

constexpr char kFont[] = "Helvetica";
constexpr char kNoFont[] = "There is no font to draw a note of the document with";
constexpr double kLeastSize = 2;
constexpr double kGreatestSize = 1000;
constexpr double kStep = 0.95; ///< from one size that is too large to the next

using Words = std::vector<std::string>;

/// The words of each line of the text.
std::vector<Words> paragraphsOf(std::string text)
{
    for (auto at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at))
        text.erase(at, 1);
    std::ranges::replace(text, '\r', '\n');
    std::vector<Words> paragraphs;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        Words words;
        std::istringstream rest(line);
        for (std::string word; rest >> word;)
            words.push_back(word);
        paragraphs.push_back(std::move(words));
    }
    return paragraphs;
}

/// Widths in ems.
class Widths {
public:
    explicit Widths(Platform::TextSetter &texts) : _texts(texts) {}

    double of(const std::string &word)
    {
        const auto [known, isNew] = _widths.try_emplace(word, 0);
        if (isNew)
            known->second = _texts.shape(word, kFont, kMeasured).advance / kMeasured;
        return known->second;
    }

private:
    static constexpr double kMeasured = 100;
    Platform::TextSetter &_texts;
    std::map<std::string, double> _widths;
};

/// Lines of words, and whether none is wider than it may be.
struct Lines {
    std::vector<std::string> texts = {};
    bool fit = true;
};

/// Adds the lines that a paragraph makes, each as long as it can be; a word that is too wide has
/// one of its own.
/// @param width  in ems
void wrap(const Words &words, double width, Widths &widths, Lines &lines)
{
    const double blank = widths.of(" ");
    std::string line;
    double used = 0;
    for (const std::string &word : words) {
        const double wanted = widths.of(word);
        lines.fit = lines.fit && wanted <= width;
        if (!line.empty() && used + blank + wanted > width)
            lines.texts.push_back(std::exchange(line, {}));
        used = line.empty() ? wanted : used + blank + wanted;
        if (!line.empty())
            line += ' ';
        line += word;
    }
    lines.texts.push_back(line);
}

/// Operands that are numbers, the last ones before an operator.
std::vector<double> lastNumbers(const Words &operands, std::size_t count)
{
    std::vector<double> numbers;
    for (std::size_t i = operands.size() - std::min(count, operands.size()); i < operands.size();
         ++i) {
        if (const auto number = numberFromText(operands[i]))
            numbers.push_back(*number);
    }
    if (numbers.size() < count)
        numbers.clear();
    return numbers;
}

} // namespace

TextAppearance textAppearance(const std::string &defaultAppearance)
{
    static const std::map<std::string, std::size_t> kOperators = {
        {"Tf", 1}, {"g", 1}, {"rg", 3}, {"k", 4}};
    TextAppearance appearance;
    std::string text = defaultAppearance;
    for (auto at = text.find('/'); at != std::string::npos; at = text.find('/', at + 2))
        text.insert(at, 1, ' '); // a name needs no blank in front of it
    std::istringstream words(text);
    Words operands;
    for (std::string word; words >> word; operands.push_back(word)) {
        const auto known = kOperators.find(word);
        if (known == kOperators.end())
            continue;
        const auto numbers = lastNumbers(operands, known->second);
        if (word == "Tf" && !numbers.empty() && numbers[0] > 0)
            appearance.size = std::min(numbers[0], kGreatestSize);
        else if (word != "Tf" && !numbers.empty())
            appearance.colour = numbers;
    }
    return appearance;
}

std::vector<TextLine> linesInBox(Platform::TextSetter &texts, const std::string &text, double size,
                                 double width, double height, double shares)
{
    const Platform::ShapedText metrics = texts.shape("", kFont, 1);
    if (!(metrics.size().height > 0))
        throw ToolkitError(fmt::format("{}.", kNoFont));
    const auto paragraphs = paragraphsOf(text);
    const double lineHeight = metrics.size().height;
    Widths widths(texts);
    const auto wrapped = [&] {
        Lines lines;
        for (const Words &words : paragraphs)
            wrap(words, width / size, widths, lines);
        const double used = static_cast<double>(lines.texts.size()) * lineHeight * size;
        lines.fit = lines.fit && used <= height;
        return lines;
    };
    Lines lines = wrapped();
    while (!lines.fit && size > kLeastSize) {
        size *= kStep;
        lines = wrapped();
    }

    std::vector<TextLine> set;
    double baseline = height - metrics.ascent * size;
    for (const std::string &line : lines.texts) {
        auto shaped = texts.shape(line, kFont, size);
        if (shaped.missing)
            throw ToolkitError(
                fmt::format("{}: U+{:04X}.", kNoFont, static_cast<std::uint32_t>(*shaped.missing)));
        const double start = shares * (width - shaped.advance);
        set.push_back({std::move(shaped), {start, baseline}});
        baseline -= lineHeight * size;
    }
    return set;
}
