#pragma once

#include "DeviceLog.h"
#include "PostScriptCommands.h"
#include "Rendering.h"
#include "Streams.h"
#include "TemporaryFolder.h"
#include "TextMeasuring.h"

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// A PostScript document that keeps the structuring conventions, made of its parts.
struct PostScriptSample {
    std::string defaults = {}; ///< with its frame, when there is one
    std::string prolog = {};
    std::string setup = "<< /PageSize [200 300] >> setpagedevice\n";
    std::vector<std::string> pages = {};
    std::string trailer = {};

    std::string text() const
    {
        std::string text = "%!PS-Adobe-3.0\n%%Pages: " + std::to_string(pages.size()) +
                           "\n%%EndComments\n" + defaults;
        text += "%%BeginProlog\n" + prolog + "%%EndProlog\n";
        text += "%%BeginSetup\n" + setup + "%%EndSetup\n";
        for (std::size_t page = 1; page <= pages.size(); ++page) {
            const std::string number = std::to_string(page);
            text += "%%Page: " + number + " " + number + "\n" + pages[page - 1];
        }
        return text + "%%Trailer\n" + trailer + "%%EOF\n";
    }
};

/// All that a stream holds.
inline std::string contentsOf(std::FILE *stream)
{
    std::fseek(stream, 0, SEEK_END);
    std::string text(static_cast<std::size_t>(std::ftell(stream)), '\0');
    std::rewind(stream);
    text.resize(std::fread(text.data(), 1, text.size(), stream));
    return text;
}

/// What a command makes of a document.
/// @param ppd  text of the queue's PPD; empty for none
/// @throws ToolkitError as the command does
inline std::string processed(std::string_view document, const Command &command,
                             const std::string &ppd = {})
{
    std::optional<Support::TemporaryFolder> folder;
    const std::string ppdPath = ppd.empty() ? "" : folder.emplace().write("queue.ppd", ppd);
    // In memory: with thousands of documents, files take longer than what is done to them.
    const Platform::Stream input = Platform::openTemporary();
    const Platform::Stream output = Platform::openTemporary();
    std::fwrite(document.data(), 1, document.size(), input.get());
    std::rewind(input.get());
    Platform::TextShaper texts;
    const Job job = {input.get(), output.get(), texts, ppdPath};
    std::visit([&](const auto &request) { applyToPostScript(request, job); }, command);
    return contentsOf(output.get());
}

/// How often the text occurs.
inline std::size_t countOf(std::string_view part, std::string_view text)
{
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

/// Runs a document with operators that tell what they are called for, each in a line.
inline std::string deviceLog(const std::string &document)
{
    return Support::renderText(document,
                               {.resolution = 10, .arguments = Support::deviceLogArguments()})
        .log;
}
