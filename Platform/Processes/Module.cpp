#include "Module.h"

#include <dlfcn.h>

namespace Platform {
namespace {

std::string lastReason()
{
    const char *reason = dlerror();
    return reason != nullptr ? reason : "unknown reason";
}

} // namespace

void *symbolFromModule(const std::string &fileName, const std::string &symbol)
{
    // A path would go past the run path, and an empty name is the program itself.
    if (fileName.empty() || fileName.find('/') != std::string::npos)
        throw ModuleError("Unable to load module \"" + fileName + "\": not a plain file name");
    // Opened once more it is only counted; never closed, because its code outlives this call.
    void *module = dlopen(fileName.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (module == nullptr)
        throw ModuleError("Unable to load module: " + lastReason());
    void *address = dlsym(module, symbol.c_str());
    if (address == nullptr)
        // cppcheck-suppress resourceLeak ; the module stays loaded, as said above
        throw ModuleError("Unable to use module: " + lastReason());
    // cppcheck-suppress resourceLeak ; likewise
    return address;
}

} // namespace Platform
