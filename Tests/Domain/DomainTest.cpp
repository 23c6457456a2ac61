#include "DomainTest.h"

#include "TemporaryFolder.h"

#include <filesystem>
#include <grp.h>
#include <pwd.h>
#include <regex>
#include <unistd.h>

namespace fs = std::filesystem;

using Support::ProgramResult;
using Support::runProgram;
using Support::TemporaryFolder;
using Support::writeFile;

namespace {

using Clock = std::chrono::steady_clock;

constexpr char kConfigurationFile[] = "/etc/cups/jobfilter.conf";
constexpr char kLDAPFile[] = "/etc/ldap/ldap.conf";

/// Everything that lives as long as the test program.
class Office {
public:
    Office()
    {
        // Made by root, used by "lp"; the build's folder may be its maker's alone.
        fs::permissions(_folder.path(), fs::perms(0755));
        for (const fs::path file : {KL_JOBFILTER, KL_DOMAIN_COMMAND})
            fs::copy_file(file, _folder.file(file.filename().string()));
        for (const auto &file : fs::directory_iterator(KL_MODULES))
            fs::copy_file(file, _folder.file(file.path().filename().string()));
        _folder.write("queue.ppd", Support::directoryPPD());
        fs::create_directory(_folder.file("tmp"));
        fs::permissions(_folder.file("tmp"), fs::perms(0777));
        meetDomain(_authority.certificate());
        joinDomain();
    }

    std::string file(std::string_view name) const { return _folder.file(name); }

private:
    TemporaryFolder _folder;
    Support::CertificateAuthority _authority;

public:
    DomainController controller{
        _authority.issue(std::string("IP:127.0.0.1,DNS:") + DomainController::kHost)};
};

std::unique_ptr<Office> office;

class Environment : public testing::Environment {
public:
    void SetUp() override { office = std::make_unique<Office>(); }
    void TearDown() override { office.reset(); }
};

[[maybe_unused]] const auto *const environment = testing::AddGlobalTestEnvironment(new Environment);

void becomeFilterUser()
{
    const passwd *user = getpwnam("lp");
    if (setgroups(0, nullptr) != 0 || setgid(user->pw_gid) != 0 || setuid(user->pw_uid) != 0)
        _exit(126);
}

std::string withDomain(std::string job, const std::string &domain)
{
    constexpr std::string_view kLine = "@PJL COMMENT DSSC PRINT DOMAINNAME=";
    return job.insert(job.find(kLine) + kLine.size(), domain);
}

} // namespace

DomainController &DomainTest::controller()
{
    return office->controller;
}

void DomainTest::SetUp()
{
    fs::remove(kConfigurationFile);
    writeFile(kLDAPFile, "");
}

void DomainTest::TearDown()
{
    EXPECT_TRUE(fs::is_empty(office->file("tmp")));
}

void DomainTest::configure(const std::string &jobfilter, const std::string &ldap)
{
    writeFile(kConfigurationFile, jobfilter);
    writeFile(kLDAPFile, ldap);
}

TimedJob DomainTest::print(const std::string &user, const std::string &options)
{
    const auto begin = Clock::now();
    auto result =
        runProgram({.arguments = {office->file("jobfilter"), "7", user, "Report", "1", options},
                    .environment = {{"PPD", office->file("queue.ppd")},
                                    {"TMPDIR", office->file("tmp")},
                                    {"LD_LIBRARY_PATH", office->file("")}},
                    .input = "%!PS\n",
                    .inChild = becomeFilterUser});
    EXPECT_EQ(0, result.exitStatus) << result.errors;
    return {std::move(result),
            std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin)};
}

ProgramResult DomainTest::printAsking(const std::string &user)
{
    const std::string without = print(user).result.output;
    EXPECT_THAT(without, testing::HasSubstr("\n%!PS\n\033%-12345X"));
    auto [job, elapsed] = print(user, "UseOpenDirectoryForAuthentication=true");
    EXPECT_LT(elapsed, kMost);
    EXPECT_EQ(withDomain(without, domainIn(job)), job.output);
    return job;
}

ProgramResult DomainTest::explain(const std::string &user)
{
    auto result = runProgram({.arguments = {office->file("jobfilter-domain"), user},
                              .environment = {{"LD_LIBRARY_PATH", office->file("")}}});
    result.output = std::regex_replace(result.output, std::regex("[0-9.]+ ms"), "N ms");
    return result;
}
