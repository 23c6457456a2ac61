#include "Session.h"

#include "Environment.h"
#include "ScriptedServer.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <sys/socket.h>

using Model::Secrets;
using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace {

/// A printer of a server that has the file "office.ppd" of a folder for its PPD.
class SessionTest : public testing::Test {
protected:
    SessionTest() { folder.write("office.ppd", Support::readFile(KL_SAMPLE_PPD)); }

    Findings found(const JobOptions &queueDefaults = {})
    {
        Model::Queue queue;
        queue.name = "office";
        queue.server = {"127.0.0.1", _server.port(), true};
        queue.defaults = queueDefaults;
        Findings findings = findingsOf(queue, Model::KeptSettings(folder.file("home/lpoptions")));
        if (!findings.ppd)
            throw std::runtime_error(inEnglish(findings.whyNoPPD));
        return findings;
    }

    Session begin()
    {
        Findings findings = found();
        auto session = Session::begin(findings, &whyNot);
        if (!session)
            throw std::runtime_error(whyNot);
        return std::move(*session);
    }

    Support::TemporaryFolder folder;
    std::string whyNot;

private:
    Support::ScriptedServer _server{[path = folder.file("office.ppd")](int client, int) {
        char request[4096];
        recv(client, request, sizeof request, 0);
        const std::string ppd = Support::readFile(path);
        Support::sendAll(client, "HTTP/1.1 200 OK\r\nContent-Type: application/vnd.cups-ppd\r\n"
                                 "Content-Length: " +
                                     std::to_string(ppd.size()) + "\r\n\r\n" + ppd);
    }};
};

TEST_F(SessionTest, WhatIsAsBeforeChangesNothing)
{
    Session session = begin();
    session.settings().set("KLDepartmentCode", "Custom.0815");
    Findings same = found();
    EXPECT_FALSE(session.goOn(same, &whyNot));
    EXPECT_EQ(whyNot, "");
    EXPECT_EQ(session.settings().value("KLDepartmentCode"), "Custom.0815");
}

TEST_F(SessionTest, WhatTheQueueSaysAnewCountsAndWhatIsSetStays)
{
    Session session = begin();
    session.settings().set("KLDepartmentCode", "Custom.0815");
    EXPECT_EQ(session.settings().value("Duplex"), "None");
    Findings changed = found({{"sides", "two-sided-long-edge"}});
    EXPECT_TRUE(session.goOn(changed, &whyNot));
    EXPECT_EQ(session.settings().value("Duplex"), "DuplexNoTumble");
    EXPECT_EQ(session.settings().value("KLDepartmentCode"), "Custom.0815");
    Findings same = found({{"sides", "two-sided-long-edge"}});
    EXPECT_FALSE(session.goOn(same, &whyNot));
}

TEST_F(SessionTest, APPDThatHasChangedTakesOverWhatIsSet)
{
    Session session = begin();
    session.settings().set("Staple", "UpperLeft");
    folder.write("office.ppd", Support::readFile(KL_SAMPLE_PPD) + "*% changed\n");
    Findings changed = found();
    EXPECT_TRUE(session.goOn(changed, &whyNot));
    EXPECT_EQ(session.settings().value("Staple"), "UpperLeft");
}

TEST_F(SessionTest, APPDThatCannotBeReadIsToldOfAndTakesNothingAway)
{
    Session session = begin();
    session.settings().set("Staple", "UpperLeft");
    folder.write("office.ppd", Support::readFile(KL_SAMPLE_PPD) + "*% changed\n");
    Findings changed = found();
    std::filesystem::resize_file(changed.ppd->path(), 0);
    EXPECT_FALSE(session.goOn(changed, &whyNot));
    EXPECT_NE(whyNot, "");
    EXPECT_EQ(session.settings().value("Staple"), "UpperLeft");
}

/// The user's defaults are laid over everybody's, and a named set over both.
TEST_F(SessionTest, WhatIsKeptSaysWhatIsOtherwiseUnderneath)
{
    const Support::ScopedEnvironment everybodys("CUPS_SERVERROOT", folder.path());
    folder.write("lpoptions", "Dest office Staple=UpperLeft\n");
    std::filesystem::create_directory(folder.file("home"));
    folder.write("home/lpoptions", "Dest office Duplex=DuplexNoTumble\n");
    Session session = begin();
    session.beginWith("");
    EXPECT_EQ(session.settings().value("Staple"), "UpperLeft");
    EXPECT_EQ(session.settings().value("Duplex"), "DuplexNoTumble");
    session.settings().set("Staple", "None");
    session.settings().set("Duplex", "None");
    EXPECT_THAT(session.toKeep("", Secrets::AsTheyAre).options,
                ElementsAre(Pair("Staple", "None")));
    EXPECT_THAT(session.toKeep("loose", Secrets::AsTheyAre).options,
                UnorderedElementsAre(Pair("Staple", "None"), Pair("Duplex", "None")));
}

TEST_F(SessionTest, AChoiceHasTheWordsOfThePPD)
{
    const Session session = begin();
    const auto words = session.labelOf("InputSlot", "Tray2");
    ASSERT_TRUE(words);
    EXPECT_EQ(inEnglish(*words), "Tray 2");
    EXPECT_FALSE(session.labelOf("InputSlot", "Tray99"));
    EXPECT_FALSE(session.labelOf("NoSuchOption", "Tray2"));
}

} // namespace
