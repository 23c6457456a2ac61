// What the toolkit's commands cost on documents of 2,000 pages, beside the tools that Debian has
// for the same, and the most memory that they take for a document of 2 GB.

#include "Measuring.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// A folder that is removed with everything in it.
class Folder {
public:
    Folder()
    {
        std::string name = fs::temp_directory_path() / "benchmark-XXXXXX";
        if (mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no temporary folder");
        _path = name;
    }
    ~Folder()
    {
        std::error_code ignored;
        fs::remove_all(_path, ignored);
    }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;

    std::string file(const std::string &name) const { return _path / name; }

private:
    fs::path _path;
};

void shell(const std::string &command)
{
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error("has failed: " + command);
}

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

std::string title(const std::string &format, const std::string &document)
{
    return format + ", 2,000 pages, " + std::to_string(fs::file_size(document) / 1'000'000) + " MB";
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
        measureMemory(folder, nothing);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
