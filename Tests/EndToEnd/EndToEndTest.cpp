#include "EndToEndTest.h"

#include "ICCProfile.h"
#include "Rendering.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

using Support::lpOption;
using Support::PJLJob;
using Support::PrivateScheduler;
using Support::readFile;
using Support::RecordingPrinter;
using Support::runOrThrow;
using Support::TemporaryFolder;

namespace {

constexpr char kSamplePPD[] = KL_SAMPLE_PPD;

std::string replaced(std::string text, const std::string &part, const std::string &replacement)
{
    const auto position = text.find(part);
    if (position == std::string::npos)
        throw std::runtime_error("the sample PPD has no " + part);
    return text.replace(position, part.size(), replacement);
}

/// The PPD without questions to the printer's SNMP agent, of which ours has none.
std::string withoutSNMP(const std::string &ppd)
{
    return ppd + "*cupsSNMPSupplies: False\n";
}

/// The sample queue's PPD with one line replaced.
std::string ppdWith(const std::string &line, const std::string &replacement)
{
    return withoutSNMP(replaced(readFile(kSamplePPD), line, replacement));
}

std::string bundleLine(const std::string &bundle)
{
    return "*APDialogExtension: \"" + bundle + "\"\n";
}

/// Everything that lives as long as the test program.
class PrintRoom {
public:
    PrintRoom() : _scheduler({KL_JOBFILTER, KL_NOJCL, KL_CHAIN, writeRecorder()})
    {
        // Made by the scheduler's owner, read by its jobs.
        fs::permissions(_folder.path(), fs::perms(0755));
        makeDocuments();
        addQueue("office", bundleLine(KL_TOOLKIT_BUNDLE));
        addQueue("bare", bundleLine(_folder.file("missing.bundle")));
        const std::string noting = makeBundle("noting", "printf '%s\\n' \"$@\" "
                                                        ">>\"$TMPDIR/toolkit-arguments\"\n"
                                                        "for last; do :; done\n"
                                                        "while [ $# -gt 2 ]; do shift; done\n"
                                                        "cat \"$1\" >\"$last\"\n");
        for (const char *queue : {"toolkit", "defaults"})
            addQueue(queue, bundleLine(noting));
        // Not at once: a toolkit that has ended at the first look keeps its text to itself.
        addQueue("broken", bundleLine(makeBundle("failing", "echo out of ideas for ${4} ${14} >&2\n"
                                                            "sleep 0.5; exit 3\n")));
        addQueue("slow", bundleLine(makeBundle("slow", "exec sleep 600\n")));
        addQueueWith("pair", "0 jobfilter-chain\"\n",
                     "0 jobfilter\"\n"
                     "*cupsPreFilter: \"application/vnd.cups-postscript 0 jobfilter-nojcl\"\n");
        addQueueWith("recorded", "0 jobfilter-chain\"\n",
                     "0 jobfilter-recorder\"\n"
                     "*cupsPreFilter: \"application/vnd.cups-postscript 0 jobfilter-nojcl\"\n");
        _scheduler.addQueue("pdf",
                            _folder.write("pdf.ppd", withoutSNMP(readFile(KL_SAMPLE_PDF_PPD))),
                            printer.deviceURI());
        addQueueWith("headless",
                     "*JCLToPSInterpreter: \"@PJL ENTER LANGUAGE = POSTSCRIPT<0D><0A>\"\n", "");
    }

    PrivateScheduler &scheduler() { return _scheduler; }
    std::string file(std::string_view name) const { return _folder.file(name); }

    RecordingPrinter printer;

private:
    /// A filter that is jobfilter, but for keeping what it reads.
    std::string writeRecorder() const
    {
        return _folder.writeScript("jobfilter-recorder",
                                   "tee \"$TMPDIR/recorded-body\" | \"$CUPS_SERVERBIN/filter/"
                                   "jobfilter\" \"$@\"\n");
    }

    std::string makeBundle(const std::string &name, const std::string &script) const
    {
        const std::string bundle = _folder.file(name + ".bundle");
        fs::create_directories(bundle);
        _folder.writeScript(name + ".bundle/toolkit", script);
        return bundle;
    }

    void addQueue(const std::string &name, const std::string &newBundleLine) const
    {
        addQueueWith(name, bundleLine(KL_TOOLKIT_BUNDLE), newBundleLine);
    }

    void addQueueWith(const std::string &name, const std::string &line,
                      const std::string &replacement) const
    {
        _scheduler.addQueue(name, _folder.write(name + ".ppd", ppdWith(line, replacement)),
                            printer.deviceURI());
    }

    void makeDocuments() const
    {
        const std::string sample = readFile(KL_SAMPLE_DOCUMENT);
        const std::string path = _folder.write("sample.ps", sample);
        const auto ghostscript = [&](const std::string &device, const std::string &output) {
            runOrThrow({"gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-sDEVICE=" + device, "-r50",
                        "-dLastPage=" + std::string(device == "pdfwrite" ? "99" : "1"),
                        "-sOutputFile=" + _folder.file(output), path});
        };
        ghostscript("pdfwrite", "sample.pdf");
        ghostscript("png16m", "sample.png");
        _folder.write("sample.txt", "one\n\ftwo\n\fthree\n\ffour\n\ffive\n");
        // Comments, which the chain keeps and no printer minds.
        std::string longer = sample;
        longer.insert(longer.find("%%EndProlog"), std::string(1 << 24, '%') + "\n");
        _folder.write("long.ps", longer);
        _folder.write("srgb.icc", Support::standardSRGBProfile());
    }

    TemporaryFolder _folder;
    PrivateScheduler _scheduler;
};

std::unique_ptr<PrintRoom> room;

class Environment : public testing::Environment {
public:
    void SetUp() override { room = std::make_unique<PrintRoom>(); }
    void TearDown() override { room.reset(); }
};

[[maybe_unused]] const auto *const environment = testing::AddGlobalTestEnvironment(new Environment);

std::string temporaryFile(std::string_view name)
{
    return room->scheduler().temporaryFolder() + "/" + std::string(name);
}

void forgetRecords()
{
    fs::remove(temporaryFile("recorded-body"));
    fs::remove(temporaryFile("toolkit-arguments"));
}

std::string withoutLineEnd(std::string line)
{
    while (line.ends_with('\n') || line.ends_with('\r'))
        line.pop_back();
    return line;
}

} // namespace

PrivateScheduler &EndToEndTest::scheduler()
{
    return room->scheduler();
}

RecordingPrinter &EndToEndTest::printer()
{
    return room->printer;
}

std::string EndToEndTest::document(std::string_view name)
{
    return room->file(name);
}

bool EndToEndTest::valuesEndAtTheirFirstBlank()
{
    static const bool doEnd = [] {
        const int job = scheduler().submit(
            {"-d", kQueue, "-o", lpOption("two-words", "before behind"), document("sample.txt")});
        scheduler().waitForJob(job);
        printer().forgetJobs();
        const std::string log = scheduler().log(job); // has the arguments of every filter
        if (log.find("two-words=") == std::string::npos)
            throw std::runtime_error("the scheduler does not say what it hands on:\n" + log);
        // Without its quotes: behind the blank, another option begins.
        return log.find("two-words=before behind") != std::string::npos;
    }();
    return doEnd;
}

bool EndToEndTest::wasPDFOnTheWay(int job)
{
    return scheduler().log(job).find("application/vnd.universal-input") != std::string::npos;
}

void EndToEndTest::SetUp()
{
    printer().finishJobs();
    printer().forgetJobs();
}

PJLJob EndToEndTest::print(const std::string &queue, const std::string &path,
                           const std::vector<std::string> &options)
{
    forgetRecords();
    std::vector<std::string> arguments = {"-d", queue};
    for (const std::string &option : options)
        arguments.insert(arguments.end(), {"-o", option});
    arguments.push_back(path);
    return finishedJob(scheduler().submit(arguments));
}

PJLJob EndToEndTest::printOverIPP(const std::string &queue, const std::string &path,
                                  const std::vector<std::string> &ippAttributes)
{
    forgetRecords();
    return finishedJob(submitOverIPP(queue, path, ippAttributes));
}

int EndToEndTest::submitOverIPP(const std::string &queue, const std::string &path,
                                const std::vector<std::string> &ippAttributes)
{
    return submitRequests(queue, path, {{"Print-Job", {"name job-name bare"}, ippAttributes}});
}

int EndToEndTest::submitRequests(const std::string &queue, const std::string &path,
                                 const std::vector<IPPRequest> &requests)
{
    std::string tests;
    for (const IPPRequest &request : requests) {
        tests += "{ OPERATION " + request.operation +
                 " GROUP operation-attributes-tag ATTR charset attributes-charset utf-8 "
                 "ATTR language attributes-natural-language en ATTR uri printer-uri $uri "
                 "ATTR name requesting-user-name anna ";
        for (const std::string &attribute : request.operationAttributes)
            tests += "ATTR " + attribute + " ";
        tests += "GROUP job-attributes-tag ";
        for (const std::string &attribute : request.jobAttributes)
            tests += "ATTR " + attribute + " ";
        tests += request.withDocument ? "FILE $filename " : "";
        tests += "STATUS successful-ok DISPLAY job-id }\n";
    }
    const TemporaryFolder folder;
    const std::string answer =
        scheduler().run({"ipptool", "-tv", "-f", path, scheduler().queueURI(queue),
                         folder.write("requests.test", tests)});
    std::smatch match;
    if (!std::regex_search(answer, match, std::regex("job-id \\(integer\\) = (\\d+)")))
        throw std::runtime_error("ipptool: " + answer);
    return std::stoi(match[1]);
}

PJLJob EndToEndTest::finishedJob(int job)
{
    const auto status = scheduler().waitForJob(job);
    const auto jobs = printer().jobs();
    printer().forgetJobs();
    EXPECT_EQ("completed", status.state) << scheduler().log(job);
    EXPECT_EQ(1U, jobs.size());
    EXPECT_THAT(strayFiles(), testing::IsEmpty());
    if (jobs.size() != 1)
        return {};
    EXPECT_THAT(Support::problemsOfPJLJob(jobs[0]), testing::IsEmpty());
    return Support::splitPJLJob(jobs[0]).value_or(PJLJob{});
}

std::string EndToEndTest::recordedBody()
{
    return readFile(temporaryFile("recorded-body"));
}

std::vector<std::string> EndToEndTest::toolkitArguments()
{
    std::istringstream file(readFile(temporaryFile("toolkit-arguments")));
    std::vector<std::string> arguments;
    for (std::string line; std::getline(file, line);)
        arguments.push_back(line);
    return arguments;
}

std::vector<std::string> EndToEndTest::strayFiles()
{
    std::vector<std::string> stray;
    for (const std::string &name : scheduler().temporaryFiles())
        if (name.starts_with("jobfilter-") || name.starts_with("toolkit-"))
            if (name != "toolkit-arguments")
                stray.push_back(name);
    return stray;
}

std::vector<int> copiesOfEachSide(const std::string &pageData)
{
    // The printer's own procedure for a page, told to speak.
    constexpr char prologue[] = R"(%!PS
/KLshowpage /showpage load def
/showpage {
  (SIDE ) print
  currentpagedevice /NumCopies 2 copy known { get } { pop pop null } ifelse
  dup null eq { pop #copies dup 1 eq { pop 0 } if } if =
  flush KLshowpage
} bind def
)";
    const auto rendering = Support::renderText(prologue + pageData, {.resolution = 10});
    std::vector<int> copies;
    std::istringstream log(rendering.log);
    for (std::string line; std::getline(log, line);)
        if (line.starts_with("SIDE "))
            copies.push_back(std::stoi(line.substr(5)));
    return copies;
}

std::vector<std::string> headerLines(const PJLJob &job)
{
    std::vector<std::string> lines;
    for (const std::string &line : Support::linesOf(job.header))
        lines.push_back(withoutLineEnd(line));
    return lines;
}

std::string dssc(const std::string &setting)
{
    return "@PJL COMMENT DSSC PRINT " + setting;
}
