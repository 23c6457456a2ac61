#include "DirectoryServer.h"

#include "Loopback.h"
#include "Program.h"

#include <array>
#include <chrono>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace Support {
namespace {

constexpr std::string_view kSchema = R"(include /etc/ldap/schema/core.schema
include /etc/ldap/schema/cosine.schema
include /etc/ldap/schema/inetorgperson.schema
attributetype ( 1.3.6.1.4.1.4203.666.1.1 NAME 'sAMAccountName'
    EQUALITY caseIgnoreMatch SYNTAX 1.3.6.1.4.1.1466.115.121.1.15 SINGLE-VALUE )
attributetype ( 1.3.6.1.4.1.4203.666.1.2 NAME 'canonicalName'
    EQUALITY caseIgnoreMatch SYNTAX 1.3.6.1.4.1.1466.115.121.1.15 )
objectclass ( 1.3.6.1.4.1.4203.666.3.1 NAME 'activeDirectoryLike' SUP top AUXILIARY
    MAY ( sAMAccountName $ canonicalName ) )
modulepath /usr/lib/ldap
moduleload back_mdb
)";

constexpr char kLongAgo[] = "20200101000000Z";

/// That long from now, as openssl reads it.
std::string inDays(int days)
{
    const std::time_t then = std::time(nullptr) + std::time_t{days} * 86400;
    std::array<char, 32> text = {};
    std::tm parts = {};
    std::strftime(text.data(), text.size(), "%Y%m%d%H%M%SZ", gmtime_r(&then, &parts));
    return text.data();
}

} // namespace

DirectoryServer::DirectoryServer(const std::vector<DirectoryContext> &contexts,
                                 const std::string &certificate, const std::string &key,
                                 const std::string &configuration)
    : _port(freePort()), _securePort(freePort())
{
    writeConfiguration(contexts, certificate, key, configuration);
    for (const DirectoryContext &context : contexts)
        runOrThrow({"/usr/sbin/slapadd", "-q", "-f", _folder.file("slapd.conf"), "-b",
                    context.suffix, "-l", _folder.write("entries.ldif", context.ldif)});
    start(!certificate.empty());
    waitUntilItAnswers();
}

DirectoryServer::~DirectoryServer()
{
    kill(_process, SIGKILL); // there is nothing to be saved
    waitpid(_process, nullptr, 0);
}

void DirectoryServer::writeConfiguration(const std::vector<DirectoryContext> &contexts,
                                         const std::string &certificate, const std::string &key,
                                         const std::string &configuration)
{
    std::string text(kSchema);
    if (!certificate.empty())
        text += "TLSCertificateFile " + certificate + "\nTLSCertificateKeyFile " + key + "\n";
    text += configuration;
    for (std::size_t at = 0; at < contexts.size(); ++at) {
        const std::string folder = _folder.file("context" + std::to_string(at));
        std::filesystem::create_directory(folder);
        text += "database mdb\nsuffix \"" + contexts[at].suffix + "\"\ndirectory " + folder +
                "\nmaxsize 16777216\n";
    }
    _folder.write("slapd.conf", text);
}

void DirectoryServer::start(bool secure)
{
    std::string addresses = uri();
    if (secure)
        addresses += " " + secureURI();
    const std::string configuration = _folder.file("slapd.conf");
    const std::string program = packagedFile("/usr/sbin/slapd", "slapd");
    _process = fork();
    if (_process != 0)
        return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    execl(program.c_str(), "slapd", "-h", addresses.c_str(), "-f", configuration.c_str(), "-d", "0",
          nullptr);
    _exit(127);
}

void DirectoryServer::waitUntilItAnswers()
{
    for (int tries = 0; tries < 200; ++tries) {
        const ProgramResult asked =
            runProgram({.arguments = {"ldapsearch", "-x", "-LLL", "-H", uri(), "-s", "base", "-b",
                                      "", "1.1"}});
        if (asked.exitStatus == 0)
            return;
        if (waitpid(_process, nullptr, WNOHANG) == _process)
            break;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    throw std::runtime_error("slapd does not answer");
}

std::string DirectoryServer::uri() const
{
    return "ldap://127.0.0.1:" + std::to_string(_port);
}

std::string DirectoryServer::secureURI() const
{
    return "ldaps://127.0.0.1:" + std::to_string(_securePort);
}

CertificateAuthority::CertificateAuthority()
{
    runOrThrow({"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt",
                "ec_paramgen_curve:prime256v1", "-nodes", "-subj", "/CN=Test authority", "-keyout",
                _folder.file("ca.key"), "-out", certificate(), "-days", "1"});
}

CertificateAuthority::Certificate CertificateAuthority::issue(const std::string &alternativeNames,
                                                              int days)
{
    const std::string name = "server" + std::to_string(_issued++);
    const Certificate issued = {_folder.file(name + ".pem"), _folder.file(name + ".key")};
    const std::string request = _folder.file(name + ".csr");
    runOrThrow({"openssl", "req", "-new", "-newkey", "ec", "-pkeyopt",
                "ec_paramgen_curve:prime256v1", "-nodes", "-subj", "/CN=Test server", "-keyout",
                issued.key, "-out", request});
    _folder.write("index", "");
    const std::string rules = _folder.write(
        "rules", "[ca]\ndefault_ca = test\n[test]\nrand_serial = yes\ndefault_md = sha256\n"
                 "policy = names\nx509_extensions = extensions\ndatabase = " +
                     _folder.file("index") + "\nnew_certs_dir = " + _folder.path() +
                     "\n[names]\ncommonName = supplied\n[extensions]\nsubjectAltName = " +
                     alternativeNames + "\n");
    runOrThrow({"openssl", "ca", "-batch", "-notext", "-config", rules, "-cert", certificate(),
                "-keyfile", _folder.file("ca.key"), "-startdate", kLongAgo, "-enddate",
                inDays(days), "-in", request, "-out", issued.certificate});
    return issued;
}

} // namespace Support
