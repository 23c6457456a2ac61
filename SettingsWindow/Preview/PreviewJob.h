#pragma once

#include <QString>

#include <chrono>

/// What is to be shown: a document as a queue would print it with these settings. A value.
struct PreviewJob {
    QString ppdPath;       ///< of the queue's PPD; read when the job is prepared
    QString optionString;  ///< as cupsParseOptions() reads it; passwords in it go nowhere
    QString documentPath;  ///< a PDF file, which is only read; empty for the built-in sample
    QString userName = {}; ///< what placeholders of a watermark stand for
    QString title = {};    ///< likewise

    bool operator==(const PreviewJob &) const = default;
};

/// Which programs make the preview.
struct PreviewPrograms {
    QString worker;        ///< jobfilter-preview
    QString toolkitBundle; ///< the folder that holds the toolkit, as a PPD names it

    /// Those that belong to the running program: in a build folder the ones beside it, else those
    /// that are installed with it, wherever that is. A QCoreApplication must be there.
    static PreviewPrograms ofThisProgram();
};

/// What a preview may take. A document that nobody here has chosen can ask for any amount.
struct PreviewLimits {
    std::chrono::milliseconds preparing = std::chrono::minutes(2); ///< until the sheets are known
    std::chrono::milliseconds drawing = std::chrono::seconds(30);  ///< of one page
    qint64 memory = qint64{1} << 30;   ///< bytes of address space, of each process
    qint64 writing = qint64{4} << 30;  ///< bytes of one file
    qint64 picture = qint64{16} << 20; ///< pixels of one picture; a larger one is made smaller
    qint64 cache = qint64{64} << 20;   ///< bytes of the pictures that are kept
    int pages = 100'000;               ///< of a document
};
