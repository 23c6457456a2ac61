// What the preview of a job takes: from a change of its settings to the picture of the side in
// view, to turn to another sheet, and the memory of the window and of the processes that work for
// it.

#include "Documents.h"
#include "PreviewMaker.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr QSize kView(700, 990); ///< a page as it fills half a screen
constexpr int kSheetInView = 7;

double middle(std::vector<double> values)
{
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

/// Milliseconds of processor time of all processes that have worked and ended.
double processorTimeOfChildren()
{
    rusage usage = {};
    getrusage(RUSAGE_CHILDREN, &usage);
    const auto milliseconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

/// Mebibytes that were resident at the most.
double peakMemoryOf(const std::string &process)
{
    std::ifstream status("/proc/" + process + "/status");
    std::string word;
    double kibibytes = 0;
    while (status >> word) {
        if (word == "VmHWM:")
            status >> kibibytes;
    }
    return kibibytes / 1024;
}

/// The first of the processes that this one has started.
std::string child()
{
    const std::string self = std::to_string(getpid());
    std::ifstream children("/proc/" + self + "/task/" + self + "/children");
    std::string first;
    children >> first;
    return first;
}

/// A window that waits for its pictures.
class Window {
public:
    Window() : _maker({KL_PREVIEW, KL_TOOLKIT_BUNDLE})
    {
        const auto fail = [this](const QString &words) { _failure = words.toStdString(); };
        QObject::connect(&_maker, &PreviewMaker::failed, &_maker, fail);
        QObject::connect(&_maker, &PreviewMaker::refused, &_maker, fail);
        QObject::connect(&_maker, &PreviewMaker::sheetReady, &_maker, [this] { ++_pictures; });
    }

    /// Milliseconds until the picture of the side in view is there.
    double show(const PreviewJob &job, int sheet)
    {
        return timeOf([this, &job, sheet] {
            _maker.show(sheet, Side::Front, kView);
            _maker.setJob(job);
        });
    }

    double change(const PreviewJob &job)
    {
        return timeOf([this, &job] { _maker.setJob(job); });
    }

    double turnTo(int sheet)
    {
        return timeOf([this, sheet] { _maker.show(sheet, Side::Front, kView); });
    }

private:
    template <class Action>
    double timeOf(const Action &action)
    {
        const int before = _pictures;
        QElapsedTimer clock;
        clock.start();
        action();
        while (_pictures == before) {
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
            if (!_failure.empty())
                throw std::runtime_error(_failure);
        }
        return static_cast<double>(clock.nsecsElapsed()) / 1e6;
    }

    std::string _failure;
    int _pictures = 0;
    PreviewMaker _maker;
};

/// Settings of a job, with a text that can change.
struct Candidate {
    const char *name;
    std::string options;
    std::vector<double> elapsed = {};
    std::vector<double> processor = {};
};

constexpr char kWatermark[] = " com.kalmira.pde.watermark.place=centre "
                              "com.kalmira.pde.watermark.text=";
constexpr char kBooklet[] = "BookletPaperSize=A4";
constexpr char kCovers[] = " UseFrontCover=True FrontCoverPrintStyle=NoPrint UseBackCover=True "
                           "BackCoverPrintStyle=NoPrint";

std::vector<Candidate> candidates()
{
    return {
        {"pages as they are", "com.kalmira.nothing="},
        {"a watermark", kWatermark},
        {"a booklet", kBooklet + std::string(" com.kalmira.nothing=")},
        {"a watermark, a booklet and two covers", kBooklet + std::string(kCovers) + kWatermark}};
}

PreviewJob job(const std::string &options, const std::string &document)
{
    return {KL_SAMPLE_PPD, QString::fromStdString(options), QString::fromStdString(document)};
}

/// Two jobs are made, and the second one counts: the first is what is changed.
void measureChange(Candidate &candidate, const std::string &document)
{
    const double before = processorTimeOfChildren();
    {
        Window window;
        window.show(job(candidate.options + "First", document), kSheetInView);
        candidate.elapsed.push_back(window.change(job(candidate.options + "Second", document)));
    }
    candidate.processor.push_back((processorTimeOfChildren() - before) / 2);
}

void measureChanges(const std::string &title, const std::string &document, int rounds)
{
    std::vector<Candidate> all = candidates();
    for (int round = 0; round < rounds; ++round) {
        for (Candidate &candidate : all)
            measureChange(candidate, document);
    }
    std::printf("\n| %s | CPU ms | elapsed ms |\n|---|---|---|\n", title.c_str());
    for (const Candidate &candidate : all)
        std::printf("| %s | %.0f | %.0f |\n", candidate.name, middle(candidate.processor),
                    middle(candidate.elapsed));
}

void measureFirstPreview(const std::string &document, int rounds)
{
    std::vector<double> sample;
    std::vector<double> whole;
    std::vector<double> turning;
    for (int round = 0; round < rounds; ++round) {
        sample.push_back(Window().show(job("", ""), 0));
        Window window;
        whole.push_back(window.show(job(kWatermark + std::string("DRAFT"), document), 0));
        turning.push_back(window.turnTo(round % 100 + 1));
    }
    std::printf("\n| Until a picture is there | elapsed ms |\n|---|---|\n");
    std::printf("| the sample, nothing open yet | %.0f |\n", middle(sample));
    std::printf("| 200 pages with a watermark, nothing open yet | %.0f |\n", middle(whole));
    std::printf("| another sheet of them | %.0f |\n", middle(turning));
}

void measureLargeDocument(const Folder &folder)
{
    const std::string document = makeLargeScan(folder);
    std::printf("\n| A PDF of 44 pictures, %ld MB | until a picture is there, ms | peak of the "
                "window, MiB | peak of the process that draws, MiB |\n|---|---|---|---|\n",
                static_cast<long>(fs::file_size(document) / 1'000'000));
    for (const Candidate &candidate : candidates()) {
        Window window;
        const double elapsed = window.show(job(candidate.options + "DRAFT", document), 1);
        std::printf("| %s | %.0f | %.0f | %.0f |\n", candidate.name, elapsed, peakMemoryOf("self"),
                    peakMemoryOf(child()));
    }
}

} // namespace

/// PreviewBenchmark [ rounds ]
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 9;
    try {
        const Folder folder;
        measureFirstPreview(KL_DOCUMENTS "/tex-200.pdf", rounds);
        measureChanges("From a change to the picture, 200 pages by TeX",
                       KL_DOCUMENTS "/tex-200.pdf", rounds);
        measureChanges("The same, 200 pages by LibreOffice", KL_DOCUMENTS "/office-200.pdf",
                       rounds);
        measureLargeDocument(folder);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
