#include "previewWords.h"

#include <QCoreApplication>
#include <QtGlobal>

namespace {

constexpr char kContext[] = "Preview";

// What KLToolkitProcessor says.
[[maybe_unused]] constexpr const char *kRefusals[] = {
    QT_TRANSLATE_NOOP("Preview", "Unable to apply watermark"),
    QT_TRANSLATE_NOOP("Preview", "Unable to apply booklet mode"),
    QT_TRANSLATE_NOOP("Preview", "Unable to apply cover pages"),
};

const char *sourceOf(Failure failure)
{
    switch (failure) {
    case Failure::DocumentUnreadable:
        return QT_TRANSLATE_NOOP("Preview", "The document cannot be read: %1");
    case Failure::DocumentEmpty:
        return QT_TRANSLATE_NOOP("Preview", "The document is empty.");
    case Failure::DocumentNoPDF:
        return QT_TRANSLATE_NOOP("Preview", "The document is not a PDF.");
    case Failure::DocumentDamaged:
        return QT_TRANSLATE_NOOP("Preview", "The document is damaged.");
    case Failure::DocumentLocked:
        return QT_TRANSLATE_NOOP("Preview", "The document can only be opened with its password.");
    case Failure::TooManyPages:
        return QT_TRANSLATE_NOOP("Preview", "The document has too many pages for a preview.");
    case Failure::NoPPD:
        return QT_TRANSLATE_NOOP("Preview", "The queue's printer description cannot be read: %1");
    case Failure::NoToolkit:
        return QT_TRANSLATE_NOOP("Preview", "The toolkit is not installed as it should be: %1");
    case Failure::NoPlace:
        return QT_TRANSLATE_NOOP("Preview", "There is no place for temporary files: %1");
    case Failure::NotDrawn:
        return QT_TRANSLATE_NOOP("Preview", "The page cannot be drawn.");
    case Failure::NotStarted:
        return QT_TRANSLATE_NOOP("Preview", "The preview's program cannot be started: %1");
    case Failure::NoMemory:
        return QT_TRANSLATE_NOOP("Preview", "The document takes too much memory for a preview.");
    case Failure::TooLong:
        return QT_TRANSLATE_NOOP("Preview", "The document takes too long for a preview.");
    case Failure::Ended:
        return QT_TRANSLATE_NOOP("Preview", "The preview's program has ended unexpectedly (%1).");
    case Failure::Other:
        break;
    }
    return QT_TRANSLATE_NOOP("Preview", "There is no preview: %1");
}

/// The system says its words in the user's language.
QString detailOf(Failure failure, const QString &detail)
{
    const bool isErrorNumber =
        failure == Failure::DocumentUnreadable || failure == Failure::NoPlace;
    return isErrorNumber ? qt_error_string(detail.toInt()) : detail;
}

} // namespace

QString wordsOf(Failure failure, const QString &detail)
{
    const QString words = QCoreApplication::translate(kContext, sourceOf(failure));
    return words.contains("%1") ? words.arg(detailOf(failure, detail)) : words;
}

QString wordsOf(Note note)
{
    switch (note) {
    case Note::CoversOfJobsPaper:
        return QCoreApplication::translate(
            "Preview",
            "The covers are printed on the paper of the job: a PDF cannot choose trays.");
    case Note::NoToolkit:
        break;
    }
    return QCoreApplication::translate(
        "Preview", "This queue names no toolkit: it prints without watermark, booklet and covers.");
}

QString wordsOf(const Refusal &refusal)
{
    const QString description =
        QCoreApplication::translate(kContext, refusal.description.toUtf8().constData());
    return refusal.reason.isEmpty() ? description : description + ": " + refusal.reason;
}
