#pragma once

#include "KLPrintJob.h"
#include "ObjectFormat.h"

#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Walks the PJL header of a print job and lets an action keep, remove, replace or surround each
/// line. Home of the one definition of the DSSC line.
///
/// A DSSC line is "@PJL COMMENT DSSC PRINT ", a setting, CR and LF. The operations that end in
/// "Format" make one: they take the setting as an object format (@see Platform::objectFormat) with
/// its arguments, so that a percent sign in an argument means nothing. All other lines are written
/// as they stand: the handler adds no line end.
///
/// Text is UTF-8. One thread. Not copied. A handler lives for one walk.
class KLPJLHandler {
public:
    /// Called once for each line, with the handler to edit it through and the line as it was read,
    /// its line end included. Both belong to the walk and live as long as the call.
    ///
    /// What it throws ends the walk and comes through; nothing of its line is written. An empty
    /// action does the same at the first line: it throws std::bad_function_call.
    using Action = std::function<void(KLPJLHandler &handler, const std::string &currentLine)>;

    /// The arguments of an object format.
    using Arguments = std::initializer_list<Platform::FormatArgument>;

    /// Walks the job's header: copies everything up to and including the first universal exit
    /// language marker, then calls the action for each line behind it up to and including the one
    /// that begins with "@PJL ENTER LANGUAGE". What follows stays unread.
    ///
    /// A class derived from this one is named as `Handler` and made by its constructor of the same
    /// argument.
    /// @param printJob  not null; its streams report their errors to their owner, not here
    /// @param action    not empty
    template <class Handler = KLPJLHandler>
    static void enumeratePJLFromPrintJobUsingBlock(std::shared_ptr<KLPrintJob> printJob,
                                                   const Action &action)
    {
        Handler handler(std::move(printJob));
        handler.moveToFirstPJLLine();
        handler.enumeratePJLUsingBlock(action);
    }

    /// A handler (`initWithPrintJob:`) of the job, which must not be null. Nothing is read yet.
    explicit KLPJLHandler(std::shared_ptr<KLPrintJob> printJob);
    virtual ~KLPJLHandler() = default;

    KLPJLHandler(const KLPJLHandler &) = delete;
    KLPJLHandler &operator=(const KLPJLHandler &) = delete;

    /// Copies the input through up to and including the first universal exit language marker; all
    /// of it when there is none.
    void moveToFirstPJLLine();

    /// Calls the action for each line from here on, and writes what became of the line.
    ///
    /// The walk ends behind the line that begins with "@PJL ENTER LANGUAGE" once the action is
    /// through with it, be it written or removed; at the end of the input; and at a line that is
    /// not UTF-8, which is lost.
    void enumeratePJLUsingBlock(const Action &action);

    /// Whether the current line, as it was read, is a DSSC line.
    bool currentLineIsDSSC() const { return _currentLineIsDSSC; }

    /// The setting of the current DSSC line, its line end included: what stands behind the first 24
    /// characters of the line, or of what has replaced it.
    /// @return nullopt when the line, as it was read, is no DSSC line.
    /// @throws std::out_of_range when the line has been replaced by one of less than 24 characters.
    std::optional<std::string> DSSCCommand() const;

    /// The DSSC line whose setting is the format applied to the arguments, in the format of this
    /// class alone: a derived class that speaks another changes what the operations on a handler
    /// write (see DSSCLine()), and not this.
    /// @throws std::invalid_argument when the format does not fit the arguments (see
    ///         Platform::objectFormat)
    static std::string formatDSSCLineArguments(std::string_view format, Arguments arguments);
    template <class... Values>
    static std::string formatDSSCLine(std::string_view format, const Values &...values)
    {
        return formatDSSCLineArguments(format, {Platform::FormatArgument(values)...});
    }

    // Editing the current line, from the action; each line forgets what was done to the one before.
    // Lines inserted before or added after it are written in the order of the calls. While they are
    // being written, the lines of that kind cannot be changed: NSInternalInconsistencyException,
    // without effect. The operations that end in "Format" throw std::invalid_argument, without
    // effect, when the format does not fit the arguments (see Platform::objectFormat).

    void insertLineBeforeCurrentLine(std::string line);
    template <class... Values>
    void insertDSSCLineBeforeCurrentLineWithFormat(std::string_view format, const Values &...values)
    {
        insertLineBeforeCurrentLine(DSSCLine(format, {Platform::FormatArgument(values)...}));
    }

    void addLineAfterCurrentLine(std::string line);
    template <class... Values>
    void addDSSCLineAfterCurrentLineWithFormat(std::string_view format, const Values &...values)
    {
        addLineAfterCurrentLine(DSSCLine(format, {Platform::FormatArgument(values)...}));
    }

    /// Puts another line in the current line's place; a line that is removed stays removed.
    void replaceCurrentLine(std::string line);
    template <class... Values>
    void replaceCurrentLineWithDSSCLineWithFormat(std::string_view format, const Values &...values)
    {
        replaceCurrentLine(DSSCLine(format, {Platform::FormatArgument(values)...}));
    }

    /// The current line, replaced or not, will not be written. It still ends the walk.
    void removeCurrentLine() { _removeCurrentLine = true; }

protected:
    /// The line that all operations on a handler that end in "Format" make:
    /// formatDSSCLineArguments() here. A class derived from this one that has another format
    /// returns its own, line end included; the static functions go on making this class's.
    /// @throws std::invalid_argument when the format does not fit the arguments
    virtual std::string DSSCLine(std::string_view format, Arguments arguments) const;

private:
    /// Lines that wait to be written.
    struct Lines {
        std::vector<std::string> texts;
        bool areBeingWritten = false;
    };

    bool readCurrentLine(std::string &lineAsRead);
    void writeCurrentLine();
    void write(Lines &lines);
    static void append(std::string line, Lines &lines);

    std::shared_ptr<KLPrintJob> _printJob;
    std::optional<std::string> _currentLine;
    bool _removeCurrentLine = false;
    bool _currentLineIsDSSC = false;
    Lines _beforeLines;
    Lines _afterLines;
};
