#include "PDFCommands.h"

#include "ToolkitError.h"

void applyToPDF(const CoverPages & /*coverPages*/, const Job & /*job*/)
{
    throw ToolkitError("Cover pages need a PostScript document: PDF cannot choose trays.");
}
