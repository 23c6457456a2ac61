#include "KLPrintJob.h"

#include "NSInternalInconsistencyException.h"

#include <array>
#include <stdexcept>

namespace {

using Platform::TextEncoding;

constexpr char kLineFeed = '\n';
constexpr char kCarriageReturn = '\r';
constexpr std::size_t kInitialLineCapacity = 256; // bytes
constexpr std::size_t kBlockSize = 4096;          // bytes

/// The text in the encoding, or an exception that says that it does not fit there.
std::string bytesInEncoding(std::string_view text, TextEncoding encoding)
{
    if (auto bytes = Platform::encodedText(text, encoding))
        return *std::move(bytes);
    throw std::invalid_argument("Cannot convert text to the requested encoding");
}

/// Reads up to and including the next line feed or to the end of the input, behind what the line
/// holds already.
void appendLine(std::string &line, FILE *input)
{
    for (int c = getc_unlocked(input); c != EOF; c = getc_unlocked(input)) {
        line.push_back(static_cast<char>(c));
        if (c == kLineFeed)
            return;
    }
}

} // namespace

KLPrintJob::KLPrintJob(FILE *inFile, FILE *outFile) : KLPrintJob(inFile, false, outFile, false) {}

KLPrintJob::KLPrintJob(FILE *inFile, bool closeInputWhenDone, FILE *outFile,
                       bool closeOutputWhenDone)
    : _inFile(inFile),
      _outFile(outFile),
      _closeInputWhenDone(closeInputWhenDone),
      _closeOutputWhenDone(closeOutputWhenDone)
{
}

KLPrintJob::~KLPrintJob()
{
    if (_closeInputWhenDone)
        static_cast<void>(std::fclose(_inFile));
    if (_closeOutputWhenDone)
        static_cast<void>(std::fclose(_outFile));
}

std::optional<std::string> KLPrintJob::readLine()
{
    if (feof(_inFile) || ferror(_inFile))
        return std::nullopt;
    std::string line;
    line.reserve(kInitialLineCapacity);
    appendLine(line, _inFile);
    if (line.empty())
        return std::nullopt;
    return line;
}

std::optional<std::string> KLPrintJob::readLineWithEncoding(TextEncoding encoding)
{
    const auto line = readLine();
    return line ? Platform::decodedText(*line, encoding) : std::nullopt;
}

std::optional<std::string> KLPrintJob::currentLineInEncoding(TextEncoding encoding) const
{
    return _currentLine ? Platform::decodedText(*_currentLine, encoding) : std::nullopt;
}

void KLPrintJob::writeData(std::string_view data)
{
    // A short write stays in the stream's error indicator, for whoever owns it.
    if (!data.empty())
        static_cast<void>(std::fwrite(data.data(), 1, data.size(), _outFile));
}

void KLPrintJob::writeStringWithEncoding(std::string_view text, TextEncoding encoding)
{
    writeData(bytesInEncoding(text, encoding));
}

void KLPrintJob::insertDataBefore(std::string_view data)
{
    if (!_isProcessing)
        throw NSInternalInconsistencyException("Cannot add data while print job is not processing");
    _beforeData.append(data);
}

void KLPrintJob::insertStringBeforeWithEncoding(std::string_view text, TextEncoding encoding)
{
    insertDataBefore(bytesInEncoding(text, encoding));
}

void KLPrintJob::addDataAfter(std::string_view data)
{
    if (!_isProcessing)
        throw NSInternalInconsistencyException("Cannot add data while print job is not processing");
    _afterData.append(data);
}

void KLPrintJob::addStringAfterWithEncoding(std::string_view text, TextEncoding encoding)
{
    addDataAfter(bytesInEncoding(text, encoding));
}

void KLPrintJob::passDataThroughUntilEndOfFile()
{
    std::array<char, kBlockSize> block;
    while (const std::size_t count = std::fread(block.data(), 1, block.size(), _inFile))
        writeData({block.data(), count});
}

bool KLPrintJob::passDataThroughUntilEndOfLine()
{
    for (int c = getc_unlocked(_inFile); c != EOF; c = getc_unlocked(_inFile)) {
        putc_unlocked(c, _outFile);
        if (c == kLineFeed)
            return true;
        if (c != kCarriageReturn)
            continue;

        const int next = getc_unlocked(_inFile);
        if (next == EOF)
            return true;
        putc_unlocked(next, _outFile);
        // On purpose: the byte behind a lone CR has just been written, and will be once more as
        // the first of the next line (ByteAfterLoneCarriageReturnIsWrittenTwice).
        if (next != kLineFeed)
            static_cast<void>(std::ungetc(next, _inFile)); // one byte always fits
        return true;
    }
    return false;
}

bool KLPrintJob::passDataThroughUntilMarker(std::string_view marker)
{
    if (marker.empty())
        throw std::invalid_argument("Cannot look for an empty marker");
    std::size_t matched = 0;
    for (int c = getc_unlocked(_inFile); c != EOF; c = getc_unlocked(_inFile)) {
        // On purpose: a byte that breaks a match is not tried again as the marker's first byte, so
        // "aab" misses the marker "ab" (MarkerOverlappingPartialMatchIsMissed).
        matched = static_cast<char>(c) == marker[matched] ? matched + 1 : 0;
        putc_unlocked(c, _outFile);
        if (matched == marker.size())
            return true;
    }
    return false;
}

bool KLPrintJob::passDataThroughUntilMarkerStringWithEncoding(std::string_view marker,
                                                              TextEncoding encoding)
{
    return passDataThroughUntilMarker(bytesInEncoding(marker, encoding));
}

void KLPrintJob::whenLineStartsWithStringDo(std::string_view prefix, Action action)
{
    if (prefix.empty())
        throw std::invalid_argument("Cannot wait for lines that start with an empty text");
    if (!action)
        throw std::invalid_argument("Cannot wait for lines without an action");
    _handlers.insert_or_assign(std::string(prefix), std::move(action));
}

/// The state that lasts as long as process() works on lines, an exception included.
class KLPrintJob::Processing {
public:
    explicit Processing(KLPrintJob &job) : _job(job)
    {
        _job._isProcessing = true;
        _job._beforeData.clear();
        _job._afterData.clear();
        _job._currentLine.emplace();
    }
    ~Processing()
    {
        _job._beforeData = {};
        _job._afterData = {};
        _job._isProcessing = false;
    }
    Processing(const Processing &) = delete;
    Processing &operator=(const Processing &) = delete;

private:
    KLPrintJob &_job;
};

void KLPrintJob::process()
{
    if (_handlers.empty()) {
        passDataThroughUntilEndOfFile();
        runJobEnd();
        return;
    }
    const Processing processing(*this);
    std::vector<Match> table = matchTable();
    while (processLine(table)) {
    }
    // On purpose: bytes that are still in the current line, the beginning of a registered
    // beginning, are dropped (LastLineThatOnlyBeginsAPrefixIsDropped), and what the end action
    // queues is never written (BytesQueuedByTheEndActionAreNotWritten).
    runJobEnd();
}

std::vector<KLPrintJob::Match> KLPrintJob::matchTable() const
{
    std::vector<Match> table;
    table.reserve(_handlers.size());
    for (const auto &[prefix, action] : _handlers)
        table.push_back({prefix, 0, false, action});
    return table;
}

/// @return false at the end of the input
bool KLPrintJob::processLine(std::vector<Match> &table)
{
    for (Match &match : table) {
        match.position = 0;
        match.failed = false;
    }
    std::size_t failures = 0;
    for (int c = getc_unlocked(_inFile); c != EOF; c = getc_unlocked(_inFile)) {
        _currentLine->push_back(static_cast<char>(c));
        for (Match &match : table) {
            if (static_cast<char>(c) == match.prefix[match.position]) {
                if (++match.position == match.prefix.size()) {
                    processMatch(match);
                    return true;
                }
                continue;
            }
            // On purpose: a prefix that has failed stays in the race and may yet be found further
            // on in the line (FailedPrefixKeepsComparing).
            match.position = 0;
            if (!match.failed) {
                match.failed = true;
                ++failures;
            }
        }
        if (failures == table.size()) {
            flush();
            // On purpose: when the line is over already, this passes the next one through as well
            // (EmptyLineCarriesTheNextLineWithItUntested).
            return passDataThroughUntilEndOfLine();
        }
    }
    return false;
}

void KLPrintJob::processMatch(const Match &match)
{
    if (!feof(_inFile) && !ferror(_inFile))
        appendLine(*_currentLine, _inFile);
    match.action();
    flush();
}

void KLPrintJob::runJobEnd()
{
    // A copy, because the action may set another.
    if (const Action action = _jobEnd)
        action();
}

void KLPrintJob::flush()
{
    if (!_isProcessing)
        throw NSInternalInconsistencyException("Unable to flush when not processing");
    writeData(_beforeData);
    writeData(*_currentLine);
    writeData(_afterData);
    _beforeData.clear();
    _currentLine->clear();
    _afterData.clear();
}
