// What the toolkit's commands cost on documents of 2,000 pages, beside the tools that Debian has
// for the same; watermarks on PDF documents of other kinds; and the most memory that the commands
// take for a document of 2 GB.

#include "Documents.h"
#include "Measuring.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr char kPages[] = R"(%!PS
1 1 2000 {
    /page exch def
    /Times-Roman 10 selectfont
    0 1 60 {
        12 mul 780 exch sub 40 exch moveto
        page 10 string cvs show ( A line of text as it stands on any page, about as long as this.) show
    } for
    showpage
} for
)";
constexpr char kText[] =
    "%!PS\n1 0 0 setrgbcolor /Helvetica 72 selectfont 150 250 moveto 45 rotate (DRAFT) show "
    "showpage\n";

/// A PDF that Ghostscript makes of a PostScript program.
std::string makePDF(const Folder &folder, const std::string &name, const char *program)
{
    std::ofstream(folder.file(name + ".ps")) << program;
    shell("gs -q -dSAFER -sDEVICE=pdfwrite -sPAPERSIZE=a4 -o " + folder.file(name + ".pdf") + " " +
          folder.file(name + ".ps"));
    return folder.file(name + ".pdf");
}

Candidate toolkit(const std::string &name, std::vector<std::string> arguments,
                  const std::string &document, const Folder &folder)
{
    arguments.insert(arguments.begin(), KL_TOOLKIT);
    arguments.insert(arguments.end(), {document, folder.file("output")});
    return program("`toolkit " + name + "`", std::move(arguments));
}

Candidate watermark(const std::string &side, const std::string &document, const Folder &folder)
{
    return toolkit("watermark " + side,
                   {"watermark", side, "--font", "Helvetica", "--angle", "45", "--colour", "1,0,0",
                    "--position", "150,250", "--size", "72", "--text", "DRAFT"},
                   document, folder);
}

/// The same where all of a PostScript document has to be read before the first byte is written: its
/// text could have the number of pages.
Candidate watermarkReadFirst(const std::string &side, const std::string &document,
                             const Folder &folder)
{
    return toolkit("watermark " + side + " --placeholders",
                   {"watermark", side, "--font", "Helvetica", "--angle", "45", "--colour", "1,0,0",
                    "--position", "150,250", "--size", "72", "--placeholders", "--text", "DRAFT"},
                   document, folder);
}

Candidate booklet(const std::string &document, const Folder &folder)
{
    return toolkit("booklet",
                   {"booklet", "--pagesize", "A4", "--centremargin", "10mm", "--outermargin", "5mm",
                    "--ordering", "LTR"},
                   document, folder);
}

Candidate coverPages(const std::string &document, const Folder &folder)
{
    return toolkit("coverpages",
                   {"coverpages", "--back-style", "noprint", "--back-media", "None",
                    "--back-source", "Auto", "--front-style", "print", "--front-media", "None",
                    "--front-source", "Auto", "--source", "Auto", "--media", "None", "--duplex",
                    "notumble"},
                   document, folder);
}

Candidate shellCommand(const std::string &name, const std::string &command)
{
    return program(name, {"sh", "-c", command});
}

std::string sizeOf(const std::string &document)
{
    return ", " + std::to_string(fs::file_size(document) / 1'000'000) + " MB";
}

std::string title(const std::string &format, const std::string &document)
{
    return format + ", 2,000 pages" + sizeOf(document);
}

std::string contentOf(const std::string &document)
{
    std::ostringstream bytes;
    bytes << std::ifstream(document).rdbuf();
    return bytes.str();
}

/// Three times as many pages: enough that what the program's start takes is a small part.
std::string makeLongDocument(const Folder &folder, const std::string &document)
{
    const std::string whole = contentOf(document);
    const std::size_t pages = whole.find("%%Page: 1 ");
    const std::size_t trailer = whole.rfind("%%Trailer");
    std::ofstream file(folder.file("long.ps"));
    file << whole.substr(0, pages);
    for (int i = 0; i < 3; ++i)
        file << whole.substr(pages, trailer - pages);
    file << whole.substr(trailer);
    return folder.file("long.ps");
}

/// The same with a last page that is turned, which none ahead of it lets expect.
std::string makeSurprisingDocument(const Folder &folder, const std::string &document)
{
    constexpr std::string_view kUpright = "%%PageOrientation: Portrait";
    std::string whole = contentOf(document);
    whole.replace(whole.rfind(kUpright), kUpright.size(), "%%PageOrientation: Landscape");
    std::ofstream(folder.file("surprising.ps")) << whole;
    return folder.file("surprising.ps");
}

void measurePostScript(const Folder &folder, const Input &nothing, int rounds)
{
    const std::string document = folder.file("document.ps");
    shell("pdftops " + makePDF(folder, "source", kPages) + " " + document);
    compare(
        title("PostScript by Poppler", document), nothing,
        {shellCommand("`cat`", "cat " + document + " >" + folder.file("output")),
         watermark("--above", document, folder), watermark("--below", document, folder),
         booklet(document, folder), coverPages(document, folder),
         shellCommand("`psbook` and `psnup -2`",
                      "psbook -q " + document + " | psnup -q -2 -pa4 >" + folder.file("output"))},
        rounds);

    const std::string longer = makeLongDocument(folder, document);
    compare("The same pages three times" + sizeOf(longer), nothing,
            {shellCommand("`cat`", "cat " + longer + " >" + folder.file("output")),
             watermark("--above", longer, folder), watermark("--below", longer, folder),
             watermarkReadFirst("--below", longer, folder), booklet(longer, folder),
             coverPages(longer, folder)},
            rounds);

    const std::string surprising = makeSurprisingDocument(folder, longer);
    compare("The last of these pages turned" + sizeOf(surprising), nothing,
            {shellCommand("`cat`", "cat " + surprising + " >" + folder.file("output")),
             watermark("--below", surprising, folder)},
            rounds);
}

void measurePDF(const Folder &folder, const Input &nothing, int rounds)
{
    const std::string document = makePDF(folder, "document", kPages);
    const std::string text = makePDF(folder, "text", kText);
    compare(title("PDF by Ghostscript", document), nothing,
            {program("`qpdf`, nothing changed", {"qpdf", document, folder.file("output")}),
             watermark("--above", document, folder), watermark("--below", document, folder),
             booklet(document, folder),
             program("`qpdf --overlay`", {"qpdf", document, "--overlay", text, "--repeat=1", "--",
                                          folder.file("output")})},
            rounds);
}

/// What a watermark costs on PDF documents of all kinds, beside the library's own program.
void measureKindsOfPDF(const Folder &folder, const Input &nothing, int rounds)
{
    const std::string text = folder.file("text.pdf");
    const std::pair<std::string, std::string> documents[] = {
        {"2,000 pages", folder.file("document.pdf")},
        {"44 pages of pictures", makeLargeScan(folder)},
        {"the R manual, 59,000 objects", "/usr/share/R/doc/manual/refman.pdf"},
        {"Octave's manual, 20,000 objects", "/usr/share/doc/octave/octave.pdf"},
        {"a scan of 20 pages",
         makeScan(folder, "scan", 20, "2480x3508", "-seed 1 plasma:fractal")}};
    for (const auto &[name, document] : documents)
        compare("PDF: " + name + sizeOf(document), nothing,
                {program("`qpdf --overlay`", {"qpdf", document, "--overlay", text, "--repeat=1",
                                              "--", folder.file("output")}),
                 program("`qpdf`, nothing changed", {"qpdf", document, folder.file("output")}),
                 program("libqpdf, nothing changed, our identifier",
                         {KL_PDF_FLOOR, document, folder.file("output")}),
                 watermark("--above", document, folder), watermark("--below", document, folder)},
                rounds);
}

std::string makeLargeDocument(const Folder &folder)
{
    static constexpr std::size_t kBytesOfPage = 107'374'182;
    const std::string line =
        "% 0123456789abcdef%%0123456789abcdef%%0123456789abcdef%%0123456789abcdef\n";
    std::ofstream file(folder.file("large.ps"));
    file << "%!PS-Adobe-3.0\n%%Pages: 20\n%%EndComments\n";
    for (int page = 1; page <= 20; ++page) {
        file << "%%Page: " << page << ' ' << page << '\n';
        for (std::size_t length = 0; length < kBytesOfPage; length += line.size())
            file << line;
        file << "showpage\n";
    }
    file << "%%Trailer\n%%EOF\n";
    return folder.file("large.ps");
}

void measureMemory(const Folder &folder, const Input &nothing)
{
    const std::string document = makeLargeDocument(folder);
    compare("PostScript, 20 pages, 2 GB", nothing,
            {shellCommand("`cat`", "cat " + document + " >" + folder.file("output")),
             watermark("--below", document, folder), booklet(document, folder),
             coverPages(document, folder)},
            1);
}

} // namespace

/// ToolkitBenchmark [ rounds ]
int main(int argc, char *argv[])
{
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 9;
    try {
        const Folder folder;
        const Input nothing(std::size_t{0});
        measurePostScript(folder, nothing, rounds);
        measurePDF(folder, nothing, rounds);
        measureKindsOfPDF(folder, nothing, rounds);
        measureMemory(folder, nothing);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
