#include "printMode.h"

#include "KLPrintOptions.h"
#include "Text.h"

PrintMode printMode(const KLPrintOptions &options)
{
    if (options.valueForKeyIsEqualToString("PrintMode", "Private"))
        return PrintMode::Private;
    if (!options.valueForKeyIsEqualToStringOptions("StoreToDocStore", "true",
                                                   Platform::CaseInsensitiveComparison))
        return PrintMode::Open;
    return options.valueForKeyIsEqualToString("PrintAsWell", "False") ? PrintMode::StoredOnly
                                                                      : PrintMode::StoredAndPrinted;
}

std::optional<KLValue> privatePrintCode(const KLPrintOptions &options)
{
    return options.valueForKey("com.kalmira.pde.print-mode-ovm.privatePassword");
}
