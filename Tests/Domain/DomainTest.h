#pragma once

#include "Daemon.h"
#include "DirectoryJob.h"
#include "DomainController.h"
#include "DomainMember.h"

#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>

/// A job and how long it took.
struct TimedJob {
    Support::ProgramResult result;
    std::chrono::milliseconds elapsed;
};

/// Jobs of a host in a domain whose controller is a real one, made once for all tests of the
/// program. Nothing that the filter could ask runs unless the test starts it.
class DomainTest : public testing::Test {
protected:
    /// Longer than the whole look-up may take, with what a busy machine adds.
    static constexpr auto kMost = std::chrono::seconds(15);

    static DomainController &controller();

    void SetUp() override;
    void TearDown() override;

    /// Writes what the filter is told by the host's administrator.
    /// @param jobfilter  the lines of jobfilter.conf
    /// @param ldap       the lines of ldap.conf(5)
    static void configure(const std::string &jobfilter, const std::string &ldap = {});

    /// Runs the filter as the scheduler does, in the name of the user "lp".
    static TimedJob print(const std::string &user, const std::string &options = {});
    /// Prints a job that asks for the domain. The test fails unless it comes out within kMost, and
    /// byte for byte as a job does that does not ask, but for the domain.
    static Support::ProgramResult printAsking(const std::string &user);

    /// What the administrator's command says. @return its output, with the milliseconds as "N ms"
    static Support::ProgramResult explain(const std::string &user);
};
