#include "Deflated.h"

#include <stdexcept>
#include <zlib.h>

namespace Support {
namespace {

constexpr std::size_t kMebibyte = std::size_t{1} << 20;

/// Deflates piece by piece.
class Deflater {
public:
    Deflater()
    {
        if (deflateInit(&_stream, Z_BEST_COMPRESSION) != Z_OK)
            throw std::runtime_error("deflateInit");
    }
    ~Deflater() { deflateEnd(&_stream); }
    Deflater(const Deflater &) = delete;
    Deflater &operator=(const Deflater &) = delete;

    /// @param flush  Z_FULL_FLUSH for a piece that stands for itself, Z_FINISH for the last
    std::string put(std::string bytes, int flush)
    {
        std::string result(deflateBound(&_stream, bytes.size()) + 16, '\0');
        _stream.next_in = reinterpret_cast<Bytef *>(bytes.data());
        _stream.avail_in = static_cast<uInt>(bytes.size());
        _stream.next_out = reinterpret_cast<Bytef *>(result.data());
        _stream.avail_out = static_cast<uInt>(result.size());
        deflate(&_stream, flush);
        result.resize(result.size() - _stream.avail_out);
        return result;
    }

private:
    z_stream _stream = {};
};

uLong checksumOf(const std::string &bytes)
{
    return adler32(adler32(0, nullptr, 0), reinterpret_cast<const Bytef *>(bytes.data()),
                   static_cast<uInt>(bytes.size()));
}

} // namespace

std::string deflated(const std::string &bytes)
{
    return Deflater().put(bytes, Z_FINISH);
}

std::string deflatedWithBlanks(const std::string &text, std::size_t mebibytes)
{
    const std::string blanks(kMebibyte, ' ');
    Deflater deflater;
    std::string result = deflater.put(text, Z_FULL_FLUSH);
    const std::string piece = deflater.put(blanks, Z_FULL_FLUSH);
    const uLong checksumOfPiece = checksumOf(blanks);
    uLong checksum = checksumOf(text);
    for (std::size_t i = 0; i < mebibytes; ++i) {
        result += piece;
        checksum = adler32_combine(checksum, checksumOfPiece, kMebibyte);
    }
    result += deflater.put("", Z_FINISH);
    result.resize(result.size() - 4); // it counts the piece once
    for (const int shift : {24, 16, 8, 0})
        result += static_cast<char>(checksum >> shift);
    return result;
}

} // namespace Support
