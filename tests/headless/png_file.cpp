// Pictures as PNG files, by libpng.
#include "tests/headless/png_file.h"

#include <png.h>

#include <vector>

namespace platform::headless
{

bool WritePng(const std::string& path, const Surface& picture)
{
    std::vector<std::uint8_t> rows;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
        {
            const std::uint32_t pixel = picture.pixels[y * picture.stride + x];
            for (const int shift : {16, 8, 0})
                rows.push_back(static_cast<std::uint8_t>(pixel >> shift));
        }
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(picture.width);
    png.height = static_cast<png_uint_32>(picture.height);
    png.format = PNG_FORMAT_RGB;
    return png_image_write_to_file(&png, path.c_str(), 0, rows.data(), 0, nullptr) != 0;
}

} // namespace platform::headless
