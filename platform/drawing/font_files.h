// Which file holds a font: fontconfig's answer, kept across runs.
#pragma once

#include <optional>
#include <string>

namespace platform
{

struct FontRequest
{
    std::string face; ///< UTF-8; empty for the default
    int pixelSize = 0;
    int weight = 400;
    bool italic = false;

    bool operator==(const FontRequest&) const = default;
};

struct FontFile
{
    std::string path;
    int faceIndex = 0; ///< as FreeType takes it: face number, named instance in the upper 16 bits
};

/// The file to draw a font from; nothing when the machine has no font. Asks the desktop module (which loads fontconfig)
/// only when the cache has no valid answer.
std::optional<FontFile> FindFontFile(const FontRequest& request);

} // namespace platform
