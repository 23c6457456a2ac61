#include "Documents.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace fs = std::filesystem;

Folder::Folder()
{
    _path = fs::temp_directory_path() / "benchmark-XXXXXX";
    if (mkdtemp(_path.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
}

Folder::~Folder()
{
    std::error_code ignored;
    fs::remove_all(_path, ignored);
}

void shell(const std::string &command)
{
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error("has failed: " + command);
}

std::string makeScan(const Folder &folder, const std::string &name, int pages,
                     const std::string &size, const std::string &picture)
{
    const std::string page = folder.file(name + ".jpg");
    shell("convert -size " + size + " " + picture + " -colorspace gray -quality 85 " + page);
    std::string command = "img2pdf --pagesize A4 -o " + folder.file(name + ".pdf");
    for (int i = 0; i < pages; ++i)
        command += " " + page;
    shell(command);
    return folder.file(name + ".pdf");
}

std::string makeLargeScan(const Folder &folder)
{
    return makeScan(folder, "large", 44, "2480x3508", "xc:gray +noise Random");
}
