// A minimal PNG writer: the pixels are stored, not compressed. Format: PNG (Third Edition), zlib RFC 1950, deflate
// RFC 1951.
#include "tests/headless/png_file.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <string_view>
#include <vector>

namespace platform::headless
{
namespace
{

using Bytes = std::vector<std::uint8_t>;

void AppendBigEndian(Bytes& bytes, std::uint32_t value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

std::uint32_t Crc(const std::uint8_t* data, std::size_t size)
{
    static const auto table = []
    {
        std::array<std::uint32_t, 256> made{};
        for (std::uint32_t n = 0; n < 256; ++n)
        {
            made[n] = n;
            for (int bit = 0; bit < 8; ++bit)
                made[n] = (made[n] & 1) != 0 ? 0xEDB88320U ^ (made[n] >> 1) : made[n] >> 1;
        }
        return made;
    }();
    std::uint32_t crc = 0xFFFFFFFF;
    for (std::size_t i = 0; i < size; ++i)
        crc = table[(crc ^ data[i]) & 0xFF] ^ (crc >> 8);
    return ~crc;
}

std::uint32_t Adler(const Bytes& data)
{
    std::uint32_t a = 1, b = 0;
    for (const std::uint8_t byte : data)
    {
        a = (a + byte) % 65521;
        b = (b + a) % 65521;
    }
    return (b << 16) | a;
}

void AppendChunk(Bytes& file, std::string_view type, const Bytes& content)
{
    AppendBigEndian(file, static_cast<std::uint32_t>(content.size()));
    const std::size_t start = file.size();
    file.insert(file.end(), type.begin(), type.end());
    file.insert(file.end(), content.begin(), content.end());
    AppendBigEndian(file, Crc(file.data() + start, file.size() - start));
}

Bytes Stored(const Bytes& data)
{
    constexpr std::size_t kBlock = 65535;
    Bytes stream{0x78, 0x01};
    for (std::size_t start = 0; start < data.size(); start += kBlock)
    {
        const std::size_t size = std::min(kBlock, data.size() - start);
        stream.push_back(start + size == data.size());
        for (const std::size_t value : {size, ~size})
        {
            stream.push_back(static_cast<std::uint8_t>(value));
            stream.push_back(static_cast<std::uint8_t>(value >> 8));
        }
        stream.insert(stream.end(), data.begin() + static_cast<std::ptrdiff_t>(start),
                      data.begin() + static_cast<std::ptrdiff_t>(start + size));
    }
    AppendBigEndian(stream, Adler(data));
    return stream;
}

Bytes Rows(const Surface& picture)
{
    Bytes rows;
    for (int y = 0; y < picture.height; ++y)
    {
        rows.push_back(0); // no filter
        for (int x = 0; x < picture.width; ++x)
        {
            const std::uint32_t pixel = picture.pixels[y * picture.stride + x];
            for (const int shift : {16, 8, 0})
                rows.push_back(static_cast<std::uint8_t>(pixel >> shift));
        }
    }
    return rows;
}

} // namespace

bool WritePng(const std::string& path, const Surface& picture)
{
    Bytes header;
    AppendBigEndian(header, static_cast<std::uint32_t>(picture.width));
    AppendBigEndian(header, static_cast<std::uint32_t>(picture.height));
    header.insert(header.end(), {8, 2, 0, 0, 0});

    Bytes file{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    AppendChunk(file, "IHDR", header);
    AppendChunk(file, "IDAT", Stored(Rows(picture)));
    AppendChunk(file, "IEND", {});

    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> out(std::fopen(path.c_str(), "wb"), &std::fclose);
    return out != nullptr && std::fwrite(file.data(), 1, file.size(), out.get()) == file.size();
}

} // namespace platform::headless
