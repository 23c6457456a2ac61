#include "HiddenServices.h"

#include <cerrno>
#include <cstring>
#include <sched.h>
#include <sys/mount.h>

namespace Support {

bool hideServices()
{
    static bool hidden = false;
    if (!hidden)
        hidden = unshare(CLONE_NEWNS) == 0 &&
                 mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    for (const char *folder : {"/run", "/var/lib"})
        hidden = hidden && mount("none", folder, "tmpfs", 0, "mode=755") == 0;
    return hidden;
}

void HiddenServicesTest::SetUp()
{
    if (!hideServices())
        GTEST_SKIP() << "no mount namespace of the test's own: " << std::strerror(errno);
}

} // namespace Support
