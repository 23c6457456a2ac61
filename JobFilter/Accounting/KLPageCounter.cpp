#include "KLPageCounter.h"

#include "PDFPageCount.h"
#include "TemporaryDirectory.h"

#include <algorithm>
#include <cstdio>
#include <sys/mman.h>

namespace {

constexpr std::string_view kPDFStart = "%PDF-";

/// A file as memory, which a child process has too. It must not get shorter meanwhile.
class MappedFile {
public:
    /// @param length  in bytes, not 0
    MappedFile(int descriptor, std::size_t length)
        : _length(length), _address(mmap(nullptr, length, PROT_READ, MAP_SHARED, descriptor, 0))
    {
    }
    ~MappedFile()
    {
        if (_address != MAP_FAILED)
            munmap(_address, _length);
    }
    MappedFile(const MappedFile &) = delete;
    MappedFile &operator=(const MappedFile &) = delete;

    /// Empty when the system has refused.
    std::string_view bytes() const
    {
        return _address == MAP_FAILED
                   ? std::string_view()
                   : std::string_view(static_cast<const char *>(_address), _length);
    }

private:
    std::size_t _length;
    void *_address;
};

} // namespace

void KLPageCounter::count(std::string_view block)
{
    if (_start.size() < kPDFStart.size())
        block = readStart(block);
    take(block);
}

/// @return what is left of the block behind the data's first bytes
std::string_view KLPageCounter::readStart(std::string_view block)
{
    const auto length = std::min(kPDFStart.size() - _start.size(), block.size());
    _start += block.substr(0, length);
    if (_start.size() == kPDFStart.size()) {
        _isPDF = _start == kPDFStart;
        if (_isPDF)
            _pdf = Platform::openTemporaryIn(Platform::temporaryDirectory());
        take(_start);
    }
    return block.substr(length);
}

void KLPageCounter::take(std::string_view bytes)
{
    if (!_isPDF)
        return _postScript.count(bytes);
    // Where there is no room, the job is printed all the same.
    if (_pdf && std::fwrite(bytes.data(), 1, bytes.size(), _pdf.get()) != bytes.size())
        _pdf.reset();
}

std::optional<std::size_t> KLPageCounter::pages()
{
    return _isPDF ? pagesOfPDF() : _postScript.pages();
}

std::optional<std::size_t> KLPageCounter::pagesOfPDF() const
{
    if (!_pdf || std::fflush(_pdf.get()) != 0)
        return std::nullopt;
    const auto length = ftello(_pdf.get());
    if (length <= 0)
        return std::nullopt;
    const MappedFile file(fileno(_pdf.get()), static_cast<std::size_t>(length));
    return file.bytes().empty() ? std::nullopt : Platform::pagesOfPDFWithModule(file.bytes());
}
