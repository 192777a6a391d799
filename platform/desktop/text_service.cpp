// The text service: Pango for shaping, fontconfig for finding fonts (platform/services/text_service.h).
#include "platform/services/text_service.h"

#include "platform/base/xdg_folders.h"
#include "platform/desktop/pango_layout.h"

#include <cstring>
#include <fontconfig/fontconfig.h>
#include <memory>
#include <set>
#include <string>
#include <string_view>

namespace
{

using namespace platform;

using UniquePattern = std::unique_ptr<FcPattern, Closer<FcPatternDestroy>>;
using UniqueStrings = std::unique_ptr<FcStrList, Closer<FcStrListDone>>;

// --- finding fonts

bool CopyPath(const char* from, char* to, std::size_t capacity)
{
    const std::size_t size = std::strlen(from) + 1;
    if (size > capacity)
        return false;
    std::memcpy(to, from, size);
    return true;
}

bool FindFont(const TextFont* font, char* path, std::size_t capacity, int* faceIndex)
{
    const UniquePattern pattern(FcPatternCreate());
    FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(FaceOf(*font)));
    FcPatternAddInteger(pattern.get(), FC_WEIGHT, FcWeightFromOpenType(font->weight));
    FcPatternAddInteger(pattern.get(), FC_SLANT, font->italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddDouble(pattern.get(), FC_PIXEL_SIZE, font->pixelSize);
    // A bitmap font would have one size only, and FreeType's outlines are what the program draws.
    FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
    FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultNoMatch;
    const UniquePattern match(FcFontMatch(nullptr, pattern.get(), &result));
    FcChar8* file = nullptr;
    if (match == nullptr || FcPatternGetString(match.get(), FC_FILE, 0, &file) != FcResultMatch)
        return false;
    if (FcPatternGetInteger(match.get(), FC_INDEX, 0, faceIndex) != FcResultMatch)
        *faceIndex = 0;
    return CopyPath(reinterpret_cast<const char*>(file), path, capacity);
}

void AddAll(std::set<std::string>& sources, FcStrList* list)
{
    const UniqueStrings owner(list);
    while (const FcChar8* path = list != nullptr ? FcStrListNext(list) : nullptr)
        sources.insert(reinterpret_cast<const char*>(path));
}

/// Files of a conf.d folder count through their folder: there are dozens, and installing, removing or replacing one
/// changes the folder's time.
void AddConfiguration(std::set<std::string>& sources)
{
    const UniqueStrings files(FcConfigGetConfigFiles(nullptr));
    while (const FcChar8* next = files != nullptr ? FcStrListNext(files.get()) : nullptr)
    {
        const std::string path = reinterpret_cast<const char*>(next);
        const std::string folder = path.substr(0, path.rfind('/'));
        sources.insert(folder.ends_with("/conf.d") || folder.ends_with("/conf.avail") ? folder : path);
    }
    // Not there yet, perhaps: their appearance must be noticed too.
    sources.insert(ConfigHome() + "/fontconfig");
    sources.insert(ConfigHome() + "/fontconfig/fonts.conf");
    sources.insert(ConfigHome() + "/fontconfig/conf.d");
}

bool FontSources(char* paths, std::size_t capacity)
{
    std::set<std::string> sources;
    AddAll(sources, FcConfigGetConfigDirs(nullptr));
    AddAll(sources, FcConfigGetFontDirs(nullptr));
    AddConfiguration(sources);
    std::string joined;
    for (const std::string& source : sources)
    {
        joined += source;
        joined += '\0';
    }
    joined += '\0';
    if (joined.size() > capacity)
        return false;
    std::memcpy(paths, joined.data(), joined.size());
    return true;
}

// --- shaped text

bool Measure(const TextFont* font, const char16_t* text, std::size_t length, TextExtent* extent)
{
    *extent = ExtentOf(LayOut(*font, {text, length}).get());
    return true;
}

bool Draw(const TextFont* font, const char16_t* text, std::size_t length, const TextTarget* target, int x, int baseline,
          std::uint32_t rgb)
{
    return DrawLayout(LayOut(*font, {text, length}).get(), *target, x, baseline, rgb);
}

} // namespace

extern "C" __attribute__((visibility("default"))) const TextService orb_text_service;
const TextService orb_text_service = {&FindFont, &FontSources, &Measure, &Draw};
