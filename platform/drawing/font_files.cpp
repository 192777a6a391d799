// Font look-up: the cache first, then the desktop module.
#include "platform/drawing/font_files.h"

#include "platform/base/cache_folder.h"
#include "platform/base/file_content.h"
#include "platform/drawing/font_cache.h"
#include "platform/services/text_service_access.h"

#include <algorithm>
#include <array>
#include <climits>
#include <unistd.h>

namespace platform
{
namespace
{

std::string CachePath()
{
    return CacheFolder().empty() ? std::string() : CacheFolder() + "/fonts";
}

/// Read once: within one run the answers stay as they are.
FontCache& TheCache()
{
    static FontCache& cache =
        *new FontCache(ReadFontCache(FileContent(OpenCacheFile(CachePath())).Content(), FontEnvironment()));
    return cache;
}

std::vector<std::string> AskForSources(const TextService& service)
{
    std::vector<char> paths(64 * 1024);
    std::vector<std::string> sources;
    if (service.fontSources(paths.data(), paths.size()))
        for (const char* path = paths.data(); *path != 0; path += sources.back().size() + 1)
            sources.emplace_back(path);
    return sources;
}

std::optional<FontFile> Ask(const TextService& service, const FontRequest& request)
{
    std::array<char, PATH_MAX> path{};
    FontFile file;
    TextFont font{};
    font.face = request.face.c_str();
    font.pixelSize = request.pixelSize;
    font.weight = request.weight;
    font.italic = request.italic;
    if (!service.findFont(&font, path.data(), path.size(), &file.faceIndex))
        return std::nullopt;
    file.path = path.data();
    return file;
}

void Remember(const TextService& service, const FontRequest& request, const FontFile& file)
{
    FontCache& cache = TheCache();
    std::erase_if(cache.fonts, [&](const CachedFont& font) { return font.request == request; });
    cache.fonts.push_back({request, file, StampOf(file.path)});
    cache.sources = AskForSources(service);
    // Without sources nothing would ever make the file void.
    const std::string path = CachePath();
    if (!path.empty() && !cache.sources.empty())
        ReplaceCacheFile(path, WriteFontCache(cache, FontEnvironment()));
}

/// For an installation whose desktop module is missing: text in a common font is better than none.
std::optional<FontFile> UsualFont()
{
    for (const char* path :
         {"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", "/usr/share/fonts/truetype/noto/NotoSans-Regular.ttf",
          "/usr/share/fonts/truetype/liberation/LiberationSans-Regular.ttf", "/usr/share/fonts/TTF/DejaVuSans.ttf"})
        if (access(path, R_OK) == 0)
            return FontFile{path, 0};
    return std::nullopt;
}

} // namespace

std::optional<FontFile> FindFontFile(const FontRequest& request)
{
    const FontCache& cache = TheCache();
    const auto known = std::find_if(cache.fonts.begin(), cache.fonts.end(),
                                    [&](const CachedFont& font) { return font.request == request; });
    if (known != cache.fonts.end() && known->stamp == StampOf(known->file.path))
        return known->file;
    const TextService* service = GetTextService();
    if (service == nullptr)
        return UsualFont();
    std::optional<FontFile> file = Ask(*service, request);
    if (file)
        Remember(*service, request, *file);
    return file;
}

} // namespace platform
