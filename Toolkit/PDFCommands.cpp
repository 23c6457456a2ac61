#include "PDFCommands.h"

#include "ToolkitError.h"

void applyWatermarkToPDF(const Watermark &, const Job &)
{
    throw ToolkitError("PDF documents cannot be processed yet.");
}

void applyBookletToPDF(const Booklet &, const Job &)
{
    throw ToolkitError("PDF documents cannot be processed yet.");
}
