#include "Module.h"
#include "QueuePPD.h"
#include "ToolkitError.h"

namespace {

/// Calls what the module exports by that name.
template <class Asked, class Answer>
Answer askModule(const char *symbol, const Asked &asked)
try {
    Answer answer = {};
    Platform::callModule<const Asked &, Answer &>("KLQueuePPDModule.so", symbol, asked, answer);
    return answer;
} catch (const Platform::ModuleError &error) {
    throw ToolkitError(error.what() + std::string("."));
}

} // namespace

std::unique_ptr<QueuePPD> queuePPD(const std::string &path)
{
    if (path.empty())
        return nullptr;
    return askModule<std::string, std::unique_ptr<QueuePPD>>("KLOpenQueuePPD", path);
}

std::optional<PageSize> standardPageSize(const std::string &name)
{
    return askModule<std::string, std::optional<PageSize>>("KLStandardPageSize", name);
}
