#include "Needed.h"

#include <cstdlib>
#include <dlfcn.h>
#include <sstream>
#include <string>
#include <unistd.h>

namespace Support {

bool isProgramThere(const char *name)
{
    const char *path = std::getenv("PATH");
    std::istringstream folders(path == nullptr ? "" : path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (access((folder + "/" + name).c_str(), X_OK) == 0)
            return true;
    }
    return false;
}

bool isLibraryThere(const char *file)
{
    void *library = dlopen(file, RTLD_LAZY | RTLD_LOCAL);
    return library != nullptr && dlclose(library) == 0;
}

} // namespace Support
