#include "KLPrintOptions.h"
#include "Module.h"
#include "ObjectFormat.h"

/// What the module exports; copiesOfHeader() looks for it.
KL_MODULE_EXPORT void KLCopiesOfJob(const std::string &options, const std::string &copies,
                                    std::string &stored, std::string &failure)
{
    Platform::withinModule(failure, [&] {
        KLPrintOptions store(options);
        store.setDefaultValueForKey(copies, "com.kalmira.copies");
        stored =
            Platform::objectFormat("%@", store.valueForKeyWithDefault("com.kalmira.copies", "1"));
    });
}
