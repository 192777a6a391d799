// Reading, checking and writing the font cache.
#include "platform/drawing/font_cache.h"

#include "platform/base/product.h"

#include <charconv>
#include <cstdlib>
#include <sys/stat.h>

namespace platform
{
namespace
{

constexpr std::string_view kHeader = ORB_PRODUCT " fonts 1";

/// Splits off the text up to a separator, which is dropped.
std::string_view TakeUntil(std::string_view& text, char separator)
{
    const std::size_t end = text.find(separator);
    const std::string_view result = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return result;
}

bool ParseNumber(std::string_view text, int& value)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() && !text.empty();
}

bool ParseFont(std::string_view line, CachedFont& font)
{
    font.request.face = TakeUntil(line, '\t');
    int italic = 0;
    const bool numbers = ParseNumber(TakeUntil(line, '\t'), font.request.pixelSize) &&
                         ParseNumber(TakeUntil(line, '\t'), font.request.weight) &&
                         ParseNumber(TakeUntil(line, '\t'), italic) &&
                         ParseNumber(TakeUntil(line, '\t'), font.file.faceIndex);
    font.request.italic = italic != 0;
    font.stamp = TakeUntil(line, '\t');
    font.file.path = line;
    return numbers && !font.stamp.empty() && line.starts_with('/');
}

bool ParseRecord(std::string_view line, const std::string& environment, FontCache& cache)
{
    const std::string_view kind = TakeUntil(line, '\t');
    if (kind == "environment")
        return line == environment;
    if (kind == "source")
    {
        const std::string_view stamp = TakeUntil(line, '\t');
        cache.sources.emplace_back(line);
        return StampOf(cache.sources.back()) == stamp;
    }
    return kind == "font" && ParseFont(line, cache.fonts.emplace_back());
}

/// Names with a separator in them would break the format; such a font is looked up anew each time.
bool Storable(const std::string& text)
{
    return text.find_first_of("\t\n") == std::string::npos;
}

std::string FontRecord(const CachedFont& font)
{
    std::string record = "font\t" + font.request.face;
    for (const int number :
         {font.request.pixelSize, font.request.weight, static_cast<int>(font.request.italic), font.file.faceIndex})
        record += '\t' + std::to_string(number);
    return record + '\t' + font.stamp + '\t' + font.file.path + '\n';
}

} // namespace

std::string FontEnvironment()
{
    std::string result;
    for (const char* name : {"FONTCONFIG_FILE", "FONTCONFIG_PATH", "FONTCONFIG_SYSROOT", "HOME", "XDG_CONFIG_HOME",
                             "XDG_DATA_HOME", "LC_ALL", "LC_CTYPE", "LANG", "FC_LANG"})
    {
        const char* value = std::getenv(name);
        result += value != nullptr ? value : "";
        result += '|';
    }
    return result;
}

std::string StampOf(const std::string& path)
{
    struct stat info = {};
    if (stat(path.c_str(), &info) != 0)
        return "-";
    return std::to_string(info.st_mtim.tv_sec) + '.' + std::to_string(info.st_mtim.tv_nsec) + ':' +
           std::to_string(info.st_size);
}

std::string WriteFontCache(const FontCache& cache, const std::string& environment)
{
    std::string text(kHeader);
    text += "\nenvironment\t" + environment + '\n';
    for (const std::string& source : cache.sources)
        text += "source\t" + StampOf(source) + '\t' + source + '\n';
    for (const CachedFont& font : cache.fonts)
        if (Storable(font.request.face) && Storable(font.file.path))
            text += FontRecord(font);
    return text;
}

FontCache ReadFontCache(std::string_view text, const std::string& environment)
{
    FontCache cache;
    if (TakeUntil(text, '\n') != kHeader || !text.ends_with('\n'))
        return {};
    while (!text.empty())
        if (!ParseRecord(TakeUntil(text, '\n'), environment, cache))
            return {};
    return cache;
}

} // namespace platform
