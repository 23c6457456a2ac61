#include "DomainController.h"

#include "Program.h"
#include "TemporaryFolder.h"

#include <filesystem>

using Support::runOrThrow;

namespace {

/// Everything that it keeps; the private host's end is the folder's.
constexpr char kFolder[] = "/run/dc";
constexpr char kConfigurationFile[] = "/run/dc/etc/smb.conf";
constexpr char kDatabase[] = "/run/dc/private/sam.ldb";

/// No second controller to agree with, no names of old. The records and the service principals of
/// a first start are in the database before it: nobody has to wait until they come.
constexpr char kConfiguration[] = R"([global]
    netbios name = DC
    realm = CORP.EXAMPLE.TEST
    workgroup = CORP
    server role = active directory domain controller
    server services = cldap dns kdc ldap rpc s3fs winbindd
    lock directory = /run/dc
    cache directory = /run/dc/cache
    private dir = /run/dc/private
    state directory = /run/dc/state
    log file = /run/dc/log.%m
    tls cafile =
)";

constexpr char kServicePrincipals[] = R"(
dn: CN=DC,OU=Domain Controllers,DC=corp,DC=example,DC=test
changetype: modify
add: servicePrincipalName
servicePrincipalName: ldap/dc.corp.example.test
servicePrincipalName: ldap/dc.corp.example.test/corp.example.test
servicePrincipalName: GC/dc.corp.example.test/corp.example.test
)";

constexpr char kUsers[] = R"(
dn: OU=Kunden\, Köln,DC=corp,DC=example,DC=test
objectClass: organizationalUnit

dn: OU=Müller\, Söhne & Co,OU=Kunden\, Köln,DC=corp,DC=example,DC=test
objectClass: organizationalUnit

dn: CN=Muster\, Anna,OU=Müller\, Söhne & Co,OU=Kunden\, Köln,DC=corp,DC=example,DC=test
objectClass: user
sAMAccountName: Anna
userPrincipalName: anna@corp.example.test
userAccountControl: 512

dn: CN=O'Brien\, Seán,OU=Kunden\, Köln,DC=corp,DC=example,DC=test
objectClass: user
sAMAccountName: O'Brien
userAccountControl: 512

dn: CN=Jürgen Groß,OU=Kunden\, Köln,DC=corp,DC=example,DC=test
objectClass: user
sAMAccountName: Jürgen
userAccountControl: 512
)";

/// A network namespace with a pair of linked interfaces, "to-dc" here and "to-queue" there.
void makeHost()
{
    runOrThrow({"ip", "netns", "add", "dc"});
    runOrThrow({"ip", "link", "add", "name", "to-dc", "type", "veth", "peer", "name", "to-queue",
                "netns", "dc"});
    runOrThrow({"ip", "address", "add", "10.53.0.2/24", "dev", "to-dc"});
    runOrThrow({"ip", "-n", "dc", "address", "add", DomainController::kAddress + std::string("/24"),
                "dev", "to-queue"});
    runOrThrow({"ip", "link", "set", "to-dc", "up"});
    runOrThrow({"ip", "-n", "dc", "link", "set", "to-queue", "up"});
    runOrThrow({"ip", "-n", "dc", "link", "set", "lo", "up"});
}

void provision(const Support::CertificateAuthority::Certificate &certificate)
{
    std::filesystem::remove("/etc/samba/smb.conf"); // provisioning would keep to it
    runOrThrow({"samba-tool", "domain", "provision", "--realm=CORP.EXAMPLE.TEST", "--domain=CORP",
                "--host-name=dc", "--host-ip=" + std::string(DomainController::kAddress),
                "--adminpass=" + std::string(DomainController::kAdministratorPassword),
                "--targetdir=" + std::string(kFolder)});
    Support::writeFile(kConfigurationFile, std::string(kConfiguration) +
                                               "tls certfile = " + certificate.certificate +
                                               "\ntls keyfile = " + certificate.key + "\n");
}

void addUsers()
{
    const Support::TemporaryFolder folder;
    runOrThrow({"ldbadd", "-H", kDatabase, folder.write("users", kUsers)});
    runOrThrow({"ldbmodify", "-H", kDatabase, folder.write("principals", kServicePrincipals)});
    runOrThrow({"samba-tool", "user", "create", DomainController::kServiceName,
                DomainController::kServicePassword, "-H", kDatabase, "--configfile",
                kConfigurationFile});
    // What anonymous clients may do once they may do anything: list, and read properties.
    runOrThrow({"samba-tool", "dsacl", "set", "--objectdn=DC=corp,DC=example,DC=test",
                "--sddl=(A;CI;RPLCLORC;;;AN)", "-H", kDatabase, "--configfile",
                kConfigurationFile});
}

/// All processes on its host are its own.
void signalAll(const std::string &signal)
{
    runOrThrow({"sh", "-c", "kill " + signal + " $(ip netns pids dc) || true"}); // some may be gone
}

} // namespace

DomainController::DomainController(const Support::CertificateAuthority::Certificate &certificate)
{
    makeHost();
    provision(certificate);
    addUsers();
    start();
}

DomainController::~DomainController()
{
    stop();
}

void DomainController::start()
{
    // Its parts find each other in /run/samba and nowhere else; that is the other host's.
    const std::string script = "mkdir -p /run/dc/run && mount --bind /run/dc/run /run/samba && "
                               "exec samba --foreground --model=single --no-process-group "
                               "--configfile=" +
                               std::string(kConfigurationFile);
    _samba = std::make_unique<Daemon>(
        std::vector<std::string>{"ip", "netns", "exec", "dc", "sh", "-c", script}, "/run/dc/log");
    const Support::ProgramCall question = {
        .arguments = {"ldapsearch", "-x", "-LLL", "-o", "nettimeout=1", "-H",
                      std::string("ldap://") + kAddress, "-s", "base", "-b", "", "1.1"}};
    const Support::ProgramCall smbQuestion = {
        .arguments = {"bash", "-c", "exec 3<>/dev/tcp/" + std::string(kAddress) + "/445"}};
    _samba->waitUntil([&] {
        return runProgram(question).exitStatus == 0 && runProgram(smbQuestion).exitStatus == 0;
    });
}

void DomainController::stop()
{
    signalAll("-KILL"); // its databases survive that
    _samba.reset();
}

void DomainController::hang() const
{
    signalAll("-STOP");
}

void DomainController::goOn() const
{
    signalAll("-CONT");
}

void DomainController::cutLink() const
{
    runOrThrow({"ip", "-n", "dc", "link", "set", "to-queue", "down"});
}

void DomainController::mendLink() const
{
    runOrThrow({"ip", "-n", "dc", "link", "set", "to-queue", "up"});
}

void DomainController::allowAnonymousReading(bool allowed) const
{
    const Support::TemporaryFolder folder;
    const std::string change =
        "dn: CN=Directory Service,CN=Windows NT,CN=Services,CN=Configuration,"
        "DC=corp,DC=example,DC=test\nchangetype: modify\nreplace: dSHeuristics\ndSHeuristics: ";
    runOrThrow({"ldbmodify", "-H", kDatabase,
                folder.write("heuristics", change + (allowed ? "0000002" : "0000000") + "\n")});
}

void DomainController::exportKeytab(const std::string &path) const
{
    runOrThrow({"samba-tool", "domain", "exportkeytab", path,
                "--principal=" + std::string(kServiceName), "--configfile", kConfigurationFile});
}
