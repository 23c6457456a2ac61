#include "Daemon.h"

#include "TemporaryFolder.h"
#include "Waiting.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

[[noreturn]] void become(const std::vector<std::string> &arguments, const std::string &log)
{
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int input = open("/dev/null", O_RDONLY);
    const int output = open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    std::vector<char *> words;
    words.reserve(arguments.size() + 1);
    for (const std::string &argument : arguments)
        words.push_back(const_cast<char *>(argument.c_str()));
    words.push_back(nullptr);
    execvp(words[0], words.data());
    std::perror(words[0]);
    _exit(127);
}

} // namespace

Daemon::Daemon(const std::vector<std::string> &arguments, const std::string &log)
    : _log(log), _process(fork())
{
    if (_process == 0)
        become(arguments, log);
    setpgid(_process, _process); // whoever of the two comes first
}

Daemon::~Daemon()
{
    goOn();
    kill(_process, SIGTERM);
    const auto ended = [this] { return waitpid(_process, nullptr, WNOHANG) == _process; };
    const bool inTime = Support::comesTrue(ended, std::chrono::seconds(10));
    kill(-_process, SIGKILL);
    if (!inTime)
        waitpid(_process, nullptr, 0);
}

void Daemon::waitUntil(const std::function<bool()> &serves) const
{
    if (!Support::comesTrue(serves, std::chrono::seconds(60)))
        throw std::runtime_error("it does not serve: " + Support::readFile(_log));
}

void Daemon::hang() const
{
    kill(-_process, SIGSTOP);
}

void Daemon::goOn() const
{
    kill(-_process, SIGCONT);
}
