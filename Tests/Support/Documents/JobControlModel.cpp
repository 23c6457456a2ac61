#include "JobControlModel.h"

#include <algorithm>
#include <cctype>

namespace {

constexpr std::string_view kMarker = "\033%-12345X";

/// A job-control line without the control-Ds in front, in upper case, each run of blanks as one.
std::string normalForm(std::string_view line)
{
    line.remove_prefix(std::min(line.find_first_not_of('\x04'), line.size()));
    std::string text;
    for (const char c : line) {
        const char plain = c == '\t' ? ' ' : c;
        if (plain != ' ' || !text.ends_with(' '))
            text += static_cast<char>(std::toupper(static_cast<unsigned char>(plain)));
    }
    return text;
}

bool entersLanguage(std::string_view line)
{
    static constexpr std::string_view kCommand = "@PJL ENTER LANGUAGE";
    const std::string text = normalForm(line);
    return text.starts_with(kCommand) &&
           (text.size() == kCommand.size() ||
            std::isalpha(static_cast<unsigned char>(text[kCommand.size()])) == 0);
}

/// What follows the job control, of what stands between the end of one marker and the next.
std::string_view behindJobControl(std::string_view block)
{
    while (!block.empty()) {
        const auto behindEnds =
            block.substr(std::min(block.find_first_not_of('\x04'), block.size()));
        if (behindEnds.starts_with("%!"))
            return behindEnds;
        const auto lineEnd = block.find_first_of("\r\n");
        if (lineEnd == std::string_view::npos)
            return {};
        const auto line = block.substr(0, lineEnd);
        block.remove_prefix(lineEnd);
        const bool isLast = entersLanguage(line);
        block.remove_prefix(isLast && block.starts_with("\r\n") ? 2 : 1);
        if (isLast)
            return block;
    }
    return {};
}

/// How many bytes of the stream go up to the end of its first marker, which may begin in what
/// stands in front of the stream and holds none itself; npos when there is none.
std::size_t endOfMarker(const std::string &front, std::string_view stream)
{
    const auto marker = (front + std::string(stream)).find(kMarker);
    return marker == std::string::npos ? marker : marker + kMarker.size() - front.size();
}

std::string keptOf(std::string_view stream, bool seesJoinedMarkers)
{
    std::string kept;
    while (true) {
        const auto end = endOfMarker(seesJoinedMarkers ? kept : "", stream);
        if (end == std::string_view::npos)
            return kept.append(Support::withoutEnds(stream));
        kept += Support::withoutEnds(stream.substr(0, end - std::min(end, kMarker.size())));
        stream.remove_prefix(end);
        const auto next = std::min(stream.find(kMarker), stream.size());
        stream.remove_prefix(next - behindJobControl(stream.substr(0, next)).size());
    }
}

} // namespace

std::string Support::pageDataOf(std::string_view stream)
{
    return keptOf(stream, true);
}

std::string Support::pageDataBetweenWholeMarkers(std::string_view stream)
{
    return keptOf(stream, false);
}

std::string_view Support::withoutEnds(std::string_view bytes)
{
    return bytes.substr(0, bytes.find_last_not_of('\x04') + 1);
}

bool Support::hasMarker(std::string_view bytes)
{
    return bytes.find(kMarker) != std::string_view::npos;
}
