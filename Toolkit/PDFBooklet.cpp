#include "PDFBooklet.h"

#include "PDFDocument.h"
#include "PDFPage.h"
#include "ToolkitError.h"

void applyBookletToPDF(const Booklet &, const Job &)
{
    throw ToolkitError("PDF documents cannot be processed yet.");
}
