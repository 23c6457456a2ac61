#include "KLPJLHandler.h"

#include "DSSC.h"
#include "NSInternalInconsistencyException.h"
#include "PJL.h"

#include <stdexcept>
#include <utility>

namespace {

/// UTF-8 text without its first characters.
/// @throws std::out_of_range when it has fewer than that.
std::string textFromCharacter(std::string_view text, std::size_t character)
{
    std::size_t at = 0;
    for (; character > 0; --character) {
        if (at == text.size())
            throw std::out_of_range("The line ends before its DSSC command begins");
        ++at;
        while (at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U)
            ++at; // a further byte of the same character
    }
    return std::string(text.substr(at));
}

} // namespace

KLPJLHandler::KLPJLHandler(std::shared_ptr<KLPrintJob> printJob) : _printJob(std::move(printJob)) {}

void KLPJLHandler::moveToFirstPJLLine()
{
    _printJob->passDataThroughUntilMarker(kUniversalExitLanguageMarker);
}

void KLPJLHandler::enumeratePJLUsingBlock(const Action &action)
{
    std::string lineAsRead;
    while (readCurrentLine(lineAsRead)) {
        action(*this, lineAsRead);
        writeCurrentLine();

        // The line as the action left it decides, also when it was not written.
        if (_currentLine->starts_with(kEnterLanguage))
            return;
    }
}

/// @param lineAsRead  a copy that replacing the current line does not touch
/// @return false when there is no line, or one that is not text
bool KLPJLHandler::readCurrentLine(std::string &lineAsRead)
{
    _currentLine = _printJob->readLineWithEncoding(Platform::TextEncoding::UTF8);
    if (!_currentLine)
        return false;
    lineAsRead = *_currentLine;
    _removeCurrentLine = false;
    _currentLineIsDSSC = lineAsRead.starts_with(kDSSCPrefix);
    _beforeLines.texts.clear();
    _afterLines.texts.clear();
    return true;
}

void KLPJLHandler::writeCurrentLine()
{
    write(_beforeLines);
    if (!_removeCurrentLine)
        _printJob->writeString(*_currentLine);
    write(_afterLines);
}

void KLPJLHandler::write(Lines &lines)
{
    lines.areBeingWritten = true;
    for (const std::string &text : lines.texts)
        _printJob->writeString(text);
    lines.areBeingWritten = false;
}

std::optional<std::string> KLPJLHandler::DSSCCommand() const
{
    if (!_currentLineIsDSSC || !_currentLine)
        return std::nullopt;
    return textFromCharacter(*_currentLine, kDSSCPrefix.size());
}

std::string KLPJLHandler::formatDSSCLineArguments(std::string_view format, Arguments arguments)
{
    return Platform::objectFormat(kDSSCLineFormat,
                                  Platform::objectFormatWithArguments(format, arguments));
}

std::string KLPJLHandler::DSSCLine(std::string_view format, Arguments arguments) const
{
    return formatDSSCLineArguments(format, arguments);
}

void KLPJLHandler::insertLineBeforeCurrentLine(std::string line)
{
    append(std::move(line), _beforeLines);
}

void KLPJLHandler::addLineAfterCurrentLine(std::string line)
{
    append(std::move(line), _afterLines);
}

void KLPJLHandler::append(std::string line, Lines &lines)
{
    if (lines.areBeingWritten)
        throw NSInternalInconsistencyException("Cannot change lines while they are being written");
    lines.texts.push_back(std::move(line));
}

void KLPJLHandler::replaceCurrentLine(std::string line)
{
    _currentLine = std::move(line);
}
