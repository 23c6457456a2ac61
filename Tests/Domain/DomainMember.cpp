#include "DomainMember.h"

#include "DomainController.h"
#include "Program.h"
#include "TemporaryFolder.h"

#include <filesystem>

namespace fs = std::filesystem;

using Support::runOrThrow;
using Support::runProgram;
using Support::writeFile;

namespace {

constexpr char kKerberos[] = R"([libdefaults]
    default_realm = CORP.EXAMPLE.TEST
    rdns = false
)";

constexpr char kSamba[] = R"([global]
    workgroup = CORP
    realm = CORP.EXAMPLE.TEST
    security = ADS
    kerberos method = secrets and keytab
    idmap config * : backend = autorid
    idmap config * : range = 100000-1999999
)";

constexpr char kSSSDSocket[] = "/var/lib/sss/pipes/nss";

} // namespace

void meetDomain(const std::string &authority)
{
    writeFile("/etc/resolv.conf", std::string("nameserver ") + DomainController::kAddress +
                                      "\nsearch " + DomainController::kDomain + "\n");
    writeFile("/etc/hosts", "127.0.0.1 localhost\n10.53.0.2 queue.corp.example.test queue\n");
    writeFile("/etc/nsswitch.conf", "passwd: files\ngroup: files\nhosts: files dns\n");
    writeFile("/etc/krb5.conf", kKerberos);
    fs::copy_file(authority, kAuthorityFile);
    fs::permissions(kAuthorityFile, fs::perms(0644));
}

void joinDomain()
{
    writeFile("/etc/samba/smb.conf", kSamba);
    runOrThrow({"net", "ads", "join", "--no-dns-updates", "-U",
                std::string("Administrator%") + DomainController::kAdministratorPassword});
}

std::unique_ptr<Daemon> startWinbind()
{
    fs::remove("/var/lib/samba/winbindd_cache.tdb");
    runOrThrow({"net", "cache", "flush"});
    auto daemon = std::make_unique<Daemon>(
        std::vector<std::string>{"winbindd", "--foreground", "--no-process-group"},
        "/run/winbindd.log");
    daemon->waitUntil([] {
        return runProgram({.arguments = {"wbinfo", "--ping-dc"}}).exitStatus == 0;
    });
    return daemon;
}

std::unique_ptr<Daemon> startSSSD(const std::string &configuration)
{
    for (const auto &file : fs::directory_iterator("/var/lib/sss/db"))
        fs::remove(file);
    for (const auto &file : fs::directory_iterator("/var/lib/sss/mc"))
        fs::remove(file);
    fs::remove(kSSSDSocket);
    writeFile("/etc/sssd/sssd.conf", configuration);
    fs::permissions("/etc/sssd/sssd.conf", fs::perms(0600)); // or it refuses to start
    auto daemon = std::make_unique<Daemon>(std::vector<std::string>{"sssd", "--interactive"},
                                           "/run/sssd.log");
    daemon->waitUntil([] { return fs::exists(kSSSDSocket); });
    return daemon;
}

std::string memberSSSDConfiguration(const std::string &domainLines)
{
    return std::string("[sssd]\nservices = nss\ndomains = ") + DomainController::kDomain +
           "\n[domain/" + DomainController::kDomain +
           "]\nid_provider = ad\ndyndns_update = false\n" + domainLines;
}

std::string ldapSSSDConfiguration(const std::string &uri, const std::string &base)
{
    return "[sssd]\nservices = nss\ndomains = office\n[domain/office]\nid_provider = ldap\n"
           "ldap_uri = " +
           uri + "\nldap_search_base = " + base +
           "\ncase_sensitive = false\nldap_id_use_start_tls = false\n"; // or SSSD 2.10 asks for it
}
