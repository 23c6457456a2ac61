#include "PreviewProcess.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/statvfs.h>
#include <unistd.h>
#include <utility>

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kTimeToEnd(1500);
constexpr milliseconds kLook(250);
constexpr char kFilesOfCommands[] = "toolkit-*"; // as KLToolkitProcessor calls them
constexpr char kFolderPrefix[] = "jobfilter-preview-";
constexpr qint64 kRoomBeside = qint64{64} << 20;

/// Where temporary files can lie, the fastest place first.
QStringList places()
{
    QStringList places = {QDir::tempPath()};
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && QDir(runtime).exists())
        places.prepend(runtime);
    return places;
}

qint64 freeBytes(const QString &place)
{
    struct statvfs status = {};
    if (statvfs(QFile::encodeName(place).constData(), &status) != 0)
        return 0;
    return static_cast<qint64>(status.f_bavail) * static_cast<qint64>(status.f_frsize);
}

/// A command of the toolkit has the document that it reads and the one that it writes, which may
/// have grown.
QString placeFor(const QString &documentPath)
{
    const qint64 room = 4 * QFileInfo(documentPath).size() + kRoomBeside;
    const QStringList all = places();
    const auto found = std::find_if(
        all.begin(), all.end(), [room](const QString &place) { return freeBytes(place) >= room; });
    return found != all.end() ? *found : all.last();
}

qint32 secondsOf(milliseconds time)
{
    return static_cast<qint32>(std::chrono::ceil<std::chrono::seconds>(time).count());
}

qint64 mostBytesOfAnswer(const PreviewLimits &limits)
{
    constexpr qint64 kBytesOfSheet = 256;
    constexpr qint64 kRest = 1 << 20;
    return std::max(4 * limits.picture, kBytesOfSheet * limits.pages) + kRest;
}

} // namespace

PreviewProcess::PreviewProcess(PreviewPrograms programs, const PreviewLimits &limits,
                               QObject *parent)
    : QObject(parent),
      _programs(std::move(programs)),
      _limits(limits),
      _reader(mostBytesOfAnswer(limits))
{
    _clock.setSingleShot(true);
    _process.setStandardErrorFile(QProcess::nullDevice());
    connect(&_clock, &QTimer::timeout, this, [this] { fail(Failure::TooLong); });
    connect(&_look, &QTimer::timeout, this, &PreviewProcess::lookAtFiles);
    connect(&_process, &QProcess::readyReadStandardOutput, this, &PreviewProcess::readAnswers);
    connect(&_process, &QProcess::finished, this, &PreviewProcess::handleEnd);
    connect(&_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            fail(Failure::NotStarted, _process.errorString());
    });
}

PreviewProcess::~PreviewProcess()
{
    _process.disconnect(this);
    if (_process.state() == QProcess::NotRunning)
        return;
    _process.terminate(); // which gives it the time to end the toolkit
    if (!_process.waitForFinished(static_cast<int>(kTimeToEnd.count()))) {
        _process.kill();
        _process.waitForFinished();
    }
}

void PreviewProcess::prepare(const PreviewJob &job)
{
    const QString process = QString::number(QCoreApplication::applicationPid());
    _folder = std::make_unique<QTemporaryDir>(placeFor(job.documentPath) + "/" + kFolderPrefix +
                                              process + "-XXXXXX");
    if (!_folder->isValid()) {
        const QString error = QString::number(errno);
        auto *const soon = new QTimer(this); // whoever has called is not ready for an answer yet
        soon->setSingleShot(true);
        connect(soon, &QTimer::timeout, this, [this, error] { fail(Failure::NoPlace, error); });
        soon->start();
        return;
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("PPD", job.ppdPath);
    environment.insert("TMPDIR", _folder->path());
    _process.setProcessEnvironment(environment);
    _process.start(_programs.worker, {});
    const QString document =
        job.documentPath.isEmpty() ? QString() : QFileInfo(job.documentPath).absoluteFilePath();
    _documentBytes = QFileInfo(document).size();
    _look.start(kLook);
    request(PreviewRequests::Prepare{job.optionString, document, _programs.toolkitBundle,
                                     job.userName, job.title, _limits.memory, _limits.writing,
                                     _limits.pages, secondsOf(_limits.preparing),
                                     secondsOf(_limits.drawing)},
            _limits.preparing);
}

void PreviewProcess::draw(const PreviewRequests::Draw &request)
{
    this->request(request, _limits.drawing);
}

void PreviewProcess::request(const PreviewRequest &request, milliseconds limit)
{
    _process.write(bytesOf(request));
    _clock.start(limit);
}

void PreviewProcess::readAnswers()
{
    _reader.add(_process.readAllStandardOutput());
    while (const auto answer = _reader.next()) {
        const bool moreFollow =
            std::holds_alternative<Refusal>(*answer) || std::holds_alternative<Note>(*answer);
        if (!moreFollow) {
            _clock.stop();
            _look.stop();
        }
        emit answered(*answer);
    }
    if (_reader.isNonsense())
        fail(Failure::Ended, qt_error_string(EPROTO));
}

/// The toolkit does not say how far it has come, but what it writes is about as much as it reads.
void PreviewProcess::lookAtFiles()
{
    const auto files =
        QDir(_folder->path()).entryInfoList({kFilesOfCommands}, QDir::Files, QDir::Time);
    if (files.isEmpty() || _documentBytes == 0)
        return;
    for (const QFileInfo &file : files)
        _written.insert(file.fileName());
    const qint64 percent = 100 * files.front().size() / _documentBytes;
    emit working(static_cast<int>(_written.size()),
                 static_cast<int>(std::min<qint64>(percent, 99)));
}

void PreviewProcess::handleEnd(int exitCode, QProcess::ExitStatus status)
{
    readAnswers();
    if (status == QProcess::CrashExit && exitCode == SIGXCPU)
        fail(Failure::TooLong);
    else if (status == QProcess::CrashExit)
        fail(Failure::Ended, QString::fromLocal8Bit(strsignal(exitCode)));
    else // the one thing that ends it without a word, see MemoryShortage.h
        fail(Failure::NoMemory);
}

void PreviewProcess::fail(Failure failure, const QString &detail)
{
    _clock.stop();
    _look.stop();
    _process.disconnect(this);
    emit failed(failure, detail);
}

void PreviewProcess::retire()
{
    disconnect(); // nobody hears of it
    _clock.stop();
    _look.stop();
    _process.disconnect(this);
    if (_process.state() == QProcess::NotRunning) {
        deleteLater();
        return;
    }
    connect(&_process, &QProcess::stateChanged, this, &QObject::deleteLater); // to not running
    _process.terminate();
    _clock.disconnect(this);
    connect(&_clock, &QTimer::timeout, &_process, &QProcess::kill);
    _clock.start(kTimeToEnd);
}

void removeFoldersOfEndedWindows()
{
    for (const QString &place : places()) {
        const auto folders = QDir(place).entryInfoList({QString(kFolderPrefix) + "*"}, QDir::Dirs);
        for (const QFileInfo &folder : folders) {
            const qsizetype begin = qsizetype(sizeof kFolderPrefix) - 1;
            const pid_t process = folder.fileName().mid(begin).section('-', 0, 0).toInt();
            const bool isOurs = folder.ownerId() == geteuid();
            if (isOurs && process > 0 && kill(process, 0) != 0 && errno == ESRCH)
                QDir(folder.filePath()).removeRecursively();
        }
    }
}
