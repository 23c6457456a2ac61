#pragma once

#include "PrivateScheduler.h"
#include "Queues.h"
#include "RecordingPrinter.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>

/// A scheduler whose queues go to a printer that keeps its jobs: "office" and "archive" of the
/// sample drivers, "other" of another one, and a class, "pool". All cases of the program share it.
class QueuesTest : public testing::Test {
protected:
    static constexpr auto kBound = std::chrono::seconds(20);

    static void SetUpTestSuite();

    static Support::PrivateScheduler &scheduler() { return *_parts->scheduler; }
    static Support::RecordingPrinter &printer() { return _parts->printer; }

    /// A second one, as that of this computer beside a server's, with a queue "office", too.
    static Support::PrivateScheduler &otherScheduler() { return *_parts->otherScheduler; }
    static Support::RecordingPrinter &otherPrinter() { return _parts->otherPrinter; }
    static Model::ServerAddress otherServer();

    static Model::ServerAddress server();
    /// The path of its socket.
    static std::string socketOf();
    /// A queue of that name, as a list would have it.
    static Model::Queue queue(const std::string &name = "office");

    /// What a program of CUPS says that is run by a user with that home folder.
    static std::string runAtHome(const std::string &home,
                                 const std::vector<std::string> &arguments);

private:
    struct Parts {
        Support::TemporaryFolder folder;
        Support::RecordingPrinter printer;
        Support::RecordingPrinter otherPrinter;
        std::unique_ptr<Support::PrivateScheduler> scheduler;
        std::unique_ptr<Support::PrivateScheduler> otherScheduler;
    };

    static std::unique_ptr<Parts> _parts;
};
