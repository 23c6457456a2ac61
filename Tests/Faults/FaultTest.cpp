#include "FaultTest.h"

#include "PackagedFonts.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <unistd.h>

namespace fs = std::filesystem;
namespace calls = Support::SystemCalls;
using Support::FaultedRun;
using Kind = Support::Fault::Kind;

const NamedFault kNoMemory = {"no memory", {Kind::Allocation}};

std::vector<NamedFault> faultsOfSystemCalls()
{
    return {{"open: too many files", {Kind::Fails, calls::kOpen, EMFILE}},
            {"read: input/output error", {Kind::Fails, calls::kRead, EIO}},
            {"write: no space", {Kind::Fails, calls::kWrite, ENOSPC}},
            {"seek: input/output error", {Kind::Fails, calls::kSeek, EIO}},
            {"status: input/output error", {Kind::Fails, calls::kStatus, EIO}},
            {"pipe: too many files", {Kind::Fails, calls::kPipe, EMFILE}},
            {"start of a child: no process", {Kind::Fails, calls::kStart, EAGAIN}},
            {"map: no memory", {Kind::Fails, calls::kMap, ENOMEM}},
            {"change of a file: input/output error", {Kind::Fails, calls::kChangeFile, EIO}},
            {"wait: interrupted", {Kind::Fails, calls::kWait, EINTR}},
            {"open: interrupted", {Kind::Fails, calls::kOpen, EINTR}},
            {"read: interrupted", {Kind::Fails, calls::kRead, EINTR}},
            {"write: interrupted", {Kind::Fails, calls::kWrite, EINTR}},
            {"read: half", {Kind::Halved, calls::kRead}},
            {"write: half", {Kind::Halved, calls::kWrite}},
            {"close: input/output error", {Kind::Closing}}};
}

std::uint64_t stepOfMany()
{
    return std::getenv("KL_EVERY_CALL") == nullptr ? 7 : 1;
}

NamedFault signalAtSystemCalls(int signalNumber)
{
    return {"signal " + std::to_string(signalNumber), {Kind::Signalled, calls::kAll, signalNumber}};
}

FaultTest::FaultTest()
{
    fs::create_directory(temporaries);
    makeFonts();
}

void FaultTest::makeFonts() const
{
    const std::string root = folder.file("root");
    const std::string fonts = folder.file("fonts");
    fs::create_directory(fonts);
    fs::copy_file(Support::latinFont().file, fonts + "/NimbusSans-Regular.otf");
    // The library looks for everything beneath a root of the test's own, and finds its fonts there
    // under the same path as the program that opens them.
    fs::create_directories(root + "/etc/fonts");
    fs::create_directory(root + "/cache");
    fs::create_directories(root + folder.path());
    fs::create_directory_symlink(fonts, root + fonts);
    Support::writeFile(root + "/etc/fonts/fonts.conf",
                       "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">\n"
                       "<fontconfig><dir>" +
                           fonts +
                           "</dir><cachedir>/cache</cachedir>"
                           "<alias binding=\"same\"><family>Helvetica</family>"
                           "<accept><family>Nimbus Sans</family></accept></alias></fontconfig>\n");
}

Support::ProgramCall FaultTest::withFewFonts(Support::ProgramCall call) const
{
    call.environment["FONTCONFIG_SYSROOT"] = folder.file("root");
    return call;
}

std::vector<std::string> FaultTest::temporaryFiles() const
{
    std::vector<std::string> paths;
    for (const auto &entry : fs::directory_iterator(temporaries))
        paths.push_back(entry.path());
    return paths;
}

void FaultTest::clearTemporaryFiles() const
{
    for (const std::string &path : temporaryFiles())
        fs::remove(path);
}

std::uint64_t FaultTest::strikeEveryCall(
    const NamedFault &fault, const std::function<Support::ProgramCall()> &call,
    const std::function<void(const Support::FaultedRun &)> &check, std::uint64_t step)
{
    std::uint64_t struck = 0;
    for (std::uint64_t k = 1;; k += step, ++struck) {
        clearTemporaryFiles();
        const FaultedRun run = Support::runWithFault(call(), fault.fault, k);
        SCOPED_TRACE(fault.name + ", call " + std::to_string(k) + ": " + run.where +
                     "\nit said: " + run.result.errors);
        EXPECT_EQ("", run.crash);
        EXPECT_FALSE(run.childLeft);
        check(run);
        if (!run.struck || HasFatalFailure())
            break;
    }
    clearTemporaryFiles();
    std::cout << "[  STRUCK  ] " << struck << " x " << fault.name << "\n";
    return struck;
}

std::vector<std::string> saidLines(const std::string &text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

bool lostItsLine(const NamedFault &fault, const Support::FaultedRun &run)
{
    return fault.fault.systemCalls == calls::kWrite && run.descriptor == STDERR_FILENO;
}
