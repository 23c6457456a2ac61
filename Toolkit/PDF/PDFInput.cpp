#include "PDFInput.h"

#include "InputFile.h"

#include <qpdf/Buffer.hh>
#include <qpdf/BufferInputSource.hh>
#include <qpdf/FileInputSource.hh>

#include <algorithm>
#include <cctype>
#include <optional>
#include <regex>
#include <span>
#include <string>
#include <string_view>

namespace {

using Position = std::uint64_t;

constexpr std::string_view kTableWord = "startxref";
/// How far from the end of a file the library looks for the word.
constexpr Position kTailOfLibrary = 1054;
constexpr Position kBlock = 64 * 1024;
/// More than what is looked for in one piece.
constexpr Position kOverlap = 64;

/// The end of a document: "startxref", where its table of objects is, "%%EOF".
struct DocumentEnd {
    Position table; ///< as the document counts
    Position end;   ///< behind it, as the file counts
};

/// Where the word stands for the last time.
std::optional<Position> findLast(const InputFile &file, std::string_view word)
{
    Position end = file.size();
    while (end > 0) {
        const Position begin = end - std::min(end, kBlock);
        const std::string block = file.text(begin, end + kOverlap);
        const auto at = block.rfind(word);
        if (at != std::string::npos)
            return begin + at;
        end = begin;
    }
    return std::nullopt;
}

/// What a document ends with, read from that word on.
std::optional<DocumentEnd> endAt(const InputFile &file, Position word)
{
    static const std::regex kPattern(R"(startxref\s+(\d{1,15})\s*(%%EOF)?)");
    const std::string text = file.text(word, word + kOverlap);
    std::smatch match;
    if (!std::regex_search(text, match, kPattern, std::regex_constants::match_continuous))
        return std::nullopt;
    return DocumentEnd{std::stoull(match.str(1)), word + static_cast<Position>(match.length())};
}

bool isTable(const InputFile &file, Position position)
{
    static const std::regex kPattern(R"(\s*(xref|\d+\s+\d+\s+obj))");
    return std::regex_search(file.text(position, position + kOverlap), kPattern,
                             std::regex_constants::match_continuous);
}

/// Whether a part of a document stands behind its end: "12 0 obj" or "trailer".
bool hasObjects(const InputFile &file, Position begin)
{
    for (; begin < file.size(); begin += kBlock) {
        const std::string block = file.text(begin, begin + kBlock + kOverlap);
        if (block.find("trailer") != std::string::npos)
            return true;
        for (auto at = block.find("obj"); at != std::string::npos; at = block.find("obj", at + 1)) {
            if (at > 1 && std::isspace(static_cast<unsigned char>(block[at - 1])) != 0 &&
                std::isdigit(static_cast<unsigned char>(block[at - 2])) != 0)
                return true;
        }
    }
    return false;
}

/// A document's part of a file.
struct Stretch {
    Position begin; ///< what the positions that it states count from
    Position end;
    Position header; ///< not before its begin
};

/// The document's part of the file where the library would not find that by itself.
std::optional<Stretch> stretchToShow(const InputFile &file)
{
    const auto found = file.text(0, kLatestPDFStart + kPDFHeader.size() - 1).find(kPDFHeader);
    const Position header = found == std::string::npos ? 0 : found;
    const auto word = findLast(file, kTableWord);
    const auto last = word ? endAt(file, *word) : std::nullopt;
    if (!last || *word < header)
        return std::nullopt;
    const bool countsFromHeader = isTable(file, header + last->table);
    if (countsFromHeader && *word + kTailOfLibrary >= file.size())
        return std::nullopt;
    if (!countsFromHeader && !isTable(file, last->table))
        return std::nullopt;
    if (hasObjects(file, last->end))
        return std::nullopt;
    return Stretch{countsFromHeader ? header : 0, last->end, header};
}

/// The document in memory, with its header at its very beginning.
std::unique_ptr<Buffer> copyOf(const InputFile &file, const Stretch &stretch)
{
    constexpr std::ptrdiff_t kVersion = 8; // "%PDF-1.7"
    auto copy = std::make_unique<Buffer>(stretch.end - stretch.begin);
    const std::span bytes(reinterpret_cast<char *>(copy->getBuffer()), copy->getSize());
    file.read(stretch.begin, bytes);
    if (const auto junk = static_cast<std::ptrdiff_t>(stretch.header - stretch.begin); junk > 0) {
        std::rotate(bytes.begin(), bytes.begin() + junk, bytes.begin() + junk + kVersion);
        std::fill_n(bytes.begin() + kVersion, junk, '\n');
    }
    return copy;
}

} // namespace

std::shared_ptr<InputSource> pdfInput(std::FILE *input)
{
    const InputFile file(input);
    if (const auto stretch = stretchToShow(file))
        return std::make_shared<BufferInputSource>("input", copyOf(file, *stretch).release(), true);
    return std::make_shared<FileInputSource>("input", input, false);
}
