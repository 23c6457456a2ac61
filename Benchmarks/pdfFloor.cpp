// What libqpdf takes for reading a document and writing it anew, with the identifier that the
// toolkit gives it and nothing changed. Nothing is taken apart at the end.

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

#include <cstdio>
#include <cstdlib>
#include <exception>

/// pdfFloor INPUT OUTPUT
int main(int argc, char *argv[])
{
    if (argc != 3)
        return EXIT_FAILURE;
    try {
        QPDF &document = *new QPDF; // stays
        document.setSuppressWarnings(true);
        document.processFile(argv[1]);
        QPDFWriter writer(document, argv[2]);
        writer.setDeterministicID(true);
        writer.write();
        return EXIT_SUCCESS;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
