#pragma once

#include "TextEncoding.h"

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class KLPrintOptions;

/// Byte pipe from one input stream to one output stream, line by line.
///
/// Bytes pass through uninterpreted; line ends and line beginnings are all it knows. It is used in
/// one of two ways. Pulling, the caller reads a line, decides, writes what it wants and passes
/// stretches through. Pushing, the caller registers actions for lines with certain beginnings and
/// calls process(), which walks the whole input.
///
/// Errors of the streams are not reported here: a failed read counts as the end of the input, a
/// short write is ignored. Whoever owns the streams looks at their error indicators in the end.
///
/// Text is UTF-8 and written as it stands, byte for byte. The operations that name an encoding
/// convert; text that does not fit into the encoding raises std::invalid_argument and nothing is
/// written or queued. Where the system lacks the converter of an encoding other than UTF-8, they
/// raise std::runtime_error, the reading ones too (see Platform::decodedText): of what
/// readLineWithEncoding() does, only the line's being consumed has happened then.
///
/// One thread. Not copied: it may own its streams.
class KLPrintJob {
public:
    /// Run synchronously by process(); the job keeps a copy of its own.
    using Action = std::function<void()>;

    /// A new job (`printJobWithInputFile:outputFile:`) that closes neither stream.
    /// A class derived from this one is named as `Job` and made by its constructor of the same
    /// arguments.
    template <class Job = KLPrintJob>
    static std::shared_ptr<Job> printJobWithInputFileOutputFile(FILE *inFile, FILE *outFile)
    {
        return std::make_shared<Job>(inFile, outFile);
    }

    /// The same, with the two close flags.
    template <class Job = KLPrintJob>
    static std::shared_ptr<Job> printJobWithInputFileCloseWhenDoneOutputFileCloseWhenDone(
        FILE *inFile, bool closeInputWhenDone, FILE *outFile, bool closeOutputWhenDone)
    {
        return std::make_shared<Job>(inFile, closeInputWhenDone, outFile, closeOutputWhenDone);
    }

    /// A job (`initWithInputFile:outputFile:`) that closes neither stream. Both are not null.
    KLPrintJob(FILE *inFile, FILE *outFile);

    /// A job (`initWithInputFile:closeWhenDone:outputFile:closeWhenDone:`). Nothing is read or
    /// written yet.
    /// @param inFile   open for reading, not null; read on from where it stands.
    /// @param outFile  open for writing, not null.
    /// A stream whose close flag is true is closed by the destructor. The other stays the
    /// caller's, who keeps it open at least as long as this object lives.
    KLPrintJob(FILE *inFile, bool closeInputWhenDone, FILE *outFile, bool closeOutputWhenDone);

    /// Closes the streams that it owns, the input first. Whether closing the output failed is not
    /// reported: flush it first where that matters.
    virtual ~KLPrintJob();

    KLPrintJob(const KLPrintJob &) = delete;
    KLPrintJob &operator=(const KLPrintJob &) = delete;

    /// The job's settings, carried for the actions and never read here; null until they are set.
    const std::shared_ptr<KLPrintOptions> &printOptions() const { return _printOptions; }
    void setPrintOptions(std::shared_ptr<KLPrintOptions> printOptions)
    {
        _printOptions = std::move(printOptions);
    }

    // Reading.

    /// The next line with its line feed (byte 10), of any length; a CR is an ordinary byte. Only
    /// the last line can lack the line feed.
    /// @return nullopt at the end of the input and after a read error.
    std::optional<std::string> readLine();

    /// The next line, decoded.
    /// @return nullopt when there is no line, and when it does not decode; it is consumed from the
    ///         input all the same.
    std::optional<std::string> readLineWithEncoding(Platform::TextEncoding encoding);

    /// The line that process() is working on, itself and not a copy: an action may change it, and
    /// what it then holds is what is written. Stays this object's; never moves.
    /// Line end included, once an action runs. After process() it holds what it last held.
    /// @return null before the first process().
    std::string *currentLine() { return _currentLine ? &*_currentLine : nullptr; }

    /// The current line, decoded; nullopt when it does not decode or there is none.
    std::optional<std::string> currentLineInEncoding(Platform::TextEncoding encoding) const;

    // Writing at once, at any time.

    /// Writes the bytes to the output; nothing for none.
    void writeData(std::string_view data);
    void writeString(std::string_view text) { writeData(text); }
    void writeStringWithEncoding(std::string_view text, Platform::TextEncoding encoding);

    // Queuing around the current line, from the actions of process().

    /// Queues bytes in front of the current line, behind those queued before.
    /// @throws NSInternalInconsistencyException outside process(); nothing is queued then.
    void insertDataBefore(std::string_view data);
    void insertStringBefore(std::string_view text) { insertDataBefore(text); }
    void insertStringBeforeWithEncoding(std::string_view text, Platform::TextEncoding encoding);

    /// Queues bytes behind the current line, behind those queued before.
    /// @throws NSInternalInconsistencyException outside process(); nothing is queued then.
    void addDataAfter(std::string_view data);
    void addStringAfter(std::string_view text) { addDataAfter(text); }
    void addStringAfterWithEncoding(std::string_view text, Platform::TextEncoding encoding);

    // Passing through.

    /// Copies the rest of the input.
    void passDataThroughUntilEndOfFile();

    /// Copies the rest of the line, its end included. LF, CR LF and a lone CR end a line; the byte
    /// behind a lone CR is copied too, and yet begins the next line.
    /// @return false if the input ended before a line end.
    bool passDataThroughUntilEndOfLine();

    /// Copies everything up to and including the marker. A marker that begins within a beginning
    /// of itself is missed: "aab" does not hold "ab" here.
    /// @return false if the input ended first; all of it has been copied then.
    /// @throws std::invalid_argument for an empty marker; nothing is copied.
    bool passDataThroughUntilMarker(std::string_view marker);
    bool passDataThroughUntilMarkerString(std::string_view marker)
    {
        return passDataThroughUntilMarker(marker);
    }
    bool passDataThroughUntilMarkerStringWithEncoding(std::string_view marker,
                                                      Platform::TextEncoding encoding);

    // Pushing.

    /// Registers the action for lines that begin with the text, in place of an earlier one for the
    /// same text. Registered by a running action, it takes effect at the next process().
    /// @throws std::invalid_argument for an empty text or no action; nothing is registered.
    void whenLineStartsWithStringDo(std::string_view prefix, Action action);

    /// Sets the action for the end of the input, in place of an earlier one; an empty function
    /// takes it away.
    void whenJobEndsDo(Action action) { _jobEnd = std::move(action); }

    /// Walks the rest of the input line by line, then runs the action for its end.
    ///
    /// A line whose beginning is registered is read up to its line feed, becomes the current line,
    /// and its action runs: it may queue bytes around the line, change it, or write at once. Then
    /// the queued bytes and the line are written. Lines of other beginnings are passed through as
    /// passDataThroughUntilEndOfLine() does it. Of beginnings that are complete at the same byte,
    /// the one that sorts first wins.
    ///
    /// To be known:
    /// - A line of no registered beginning that is over when that turns out (an empty line, say)
    ///   takes the next line with it, untested.
    /// - A beginning that the line has disagreed with is looked for again further on in the line,
    ///   as long as another one can still match.
    /// - A last line that is a mere part of a registered beginning is not written.
    /// - What the action for the end queues is not written; it has to write at once. Without any
    ///   registered line action it must not queue.
    ///
    /// An exception from an action ends the walk and comes through; neither its line nor what it
    /// queued is written.
    ///
    /// Called by a line's action, it walks the rest of the input, the end's action included. The
    /// line of the calling action is lost then, with all that is queued around it: from there on
    /// the outer call is over, queuing raises NSInternalInconsistencyException, and so does the
    /// outer process() when the action returns. The action for the end must not call it: it would
    /// be run again and again.
    void process();

private:
    /// How far the current line has got in one registered beginning.
    struct Match {
        std::string_view prefix; // in _handlers
        std::size_t position;    // how many bytes of it the line matches at this point
        bool failed;             // the line has disagreed with it once
        Action action;
    };
    class Processing;

    std::vector<Match> matchTable() const;
    bool processLine(std::vector<Match> &table);
    void processMatch(const Match &match);
    void runJobEnd();
    void flush();

    FILE *_inFile;
    FILE *_outFile;
    bool _closeInputWhenDone;
    bool _closeOutputWhenDone;
    std::shared_ptr<KLPrintOptions> _printOptions;
    bool _isProcessing = false;
    std::map<std::string, Action, std::less<>> _handlers;
    std::optional<std::string> _currentLine; // none before the first process()
    std::string _beforeData;
    std::string _afterData;
    Action _jobEnd;
};
