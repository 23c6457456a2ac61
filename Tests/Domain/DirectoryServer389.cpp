#include "DirectoryServer389.h"

#include "Program.h"
#include "TemporaryFolder.h"

#include <filesystem>
#include <regex>

namespace fs = std::filesystem;

using Support::readFile;
using Support::runOrThrow;
using Support::writeFile;

namespace {

constexpr char kDefaults[] = "/usr/share/dirsrv/inf/defaults.inf";
constexpr char kPrivateDefaults[] = "/run/dirsrv-defaults.inf";
constexpr char kManager[] = "cn=Directory Manager";
constexpr char kPassword[] = "Manager-pass-1";

constexpr char kInstance[] = R"([general]
config_version = 2
full_machine_name = localhost
strict_host_checking = False
selinux = False
start = False
[slapd]
instance_name = office
port = 3890
secure_port = 6360
self_sign_cert = False
root_password = Manager-pass-1
[backend-userroot]
suffix = dc=example,dc=com
create_suffix_entry = True
sample_entries = no
)";

/// Nothing of systemd's runs on a private host.
void doWithoutSystemd()
{
    if (fs::exists(kPrivateDefaults))
        return;
    writeFile(kPrivateDefaults,
              std::regex_replace(readFile(kDefaults), std::regex("with_systemd = 1"),
                                 "with_systemd = 0"));
    runOrThrow({"mount", "--bind", kPrivateDefaults, kDefaults});
}

} // namespace

DirectoryServer389::DirectoryServer389(const std::string &entries)
{
    const Support::TemporaryFolder folder;
    doWithoutSystemd();
    runOrThrow({"dscreate", "from-file", folder.write("instance.inf", kInstance)});
    _server = std::make_unique<Daemon>(
        std::vector<std::string>{"ns-slapd", "-D", "/etc/dirsrv/slapd-office", "-d", "0"},
        "/run/dirsrv.log");
    const Support::ProgramCall question = {
        .arguments = {"ldapsearch", "-x", "-H", kURI, "-s", "base", "-b", "", "1.1"}};
    _server->waitUntil([&] { return runProgram(question).exitStatus == 0; });
    runOrThrow({"ldapadd", "-x", "-H", kURI, "-D", kManager, "-w", kPassword, "-f",
                folder.write("entries", entries)});
}

void DirectoryServer389::modify(const std::string &changes) const
{
    const Support::TemporaryFolder folder;
    runOrThrow({"ldapmodify", "-x", "-H", kURI, "-D", kManager, "-w", kPassword, "-f",
                folder.write("changes", changes)});
}
