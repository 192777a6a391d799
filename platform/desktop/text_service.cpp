// The text service: Pango on cairo for shaping, fontconfig for finding fonts (platform/services/text_service.h).
#include "platform/services/text_service.h"

#include "platform/base/xdg_folders.h"

#include <cstring>
#include <fontconfig/fontconfig.h>
#include <memory>
#include <pango/pangocairo.h>
#include <set>
#include <string>
#include <string_view>

namespace
{

using platform::ConfigHome;
using platform::TextExtent;
using platform::TextFont;
using platform::TextService;
using platform::TextTarget;

template <auto close>
struct Closer
{
    template <typename T>
    void operator()(T* object) const
    {
        close(object);
    }
};
using UniqueLayout = std::unique_ptr<PangoLayout, Closer<g_object_unref>>;
using UniqueDescription = std::unique_ptr<PangoFontDescription, Closer<pango_font_description_free>>;
using UniquePattern = std::unique_ptr<FcPattern, Closer<FcPatternDestroy>>;
using UniqueStrings = std::unique_ptr<FcStrList, Closer<FcStrListDone>>;
using UniqueSurface = std::unique_ptr<cairo_surface_t, Closer<cairo_surface_destroy>>;
using UniqueCairo = std::unique_ptr<cairo_t, Closer<cairo_destroy>>;

const char* FaceOf(const TextFont& font)
{
    return font.face != nullptr && font.face[0] != 0 ? font.face : "sans";
}

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

cairo_hint_style_t HintStyle(platform::TextHinting hinting)
{
    switch (hinting)
    {
    case platform::TextHinting::None:
        return CAIRO_HINT_STYLE_NONE;
    case platform::TextHinting::Medium:
        return CAIRO_HINT_STYLE_MEDIUM;
    case platform::TextHinting::Full:
        return CAIRO_HINT_STYLE_FULL;
    default:
        return CAIRO_HINT_STYLE_SLIGHT;
    }
}

/// The one context, set up for the font's rendering.
PangoContext* ContextFor(const TextFont& font)
{
    static PangoContext* const context = pango_font_map_create_context(pango_cairo_font_map_get_default());
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, font.antialias ? CAIRO_ANTIALIAS_GRAY : CAIRO_ANTIALIAS_NONE);
    cairo_font_options_set_hint_style(options, HintStyle(font.hinting));
    pango_cairo_context_set_font_options(context, options);
    cairo_font_options_destroy(options);
    return context;
}

PangoFontDescription* Describe(const TextFont& font)
{
    PangoFontDescription* description = pango_font_description_new();
    pango_font_description_set_family(description, FaceOf(font));
    pango_font_description_set_absolute_size(description, static_cast<double>(font.pixelSize) * PANGO_SCALE);
    pango_font_description_set_weight(description, static_cast<PangoWeight>(font.weight));
    pango_font_description_set_style(description, font.italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
    return description;
}

PangoAttrList* Decorations(const TextFont& font)
{
    PangoAttrList* attributes = pango_attr_list_new();
    if (font.underline)
        pango_attr_list_insert(attributes, pango_attr_underline_new(PANGO_UNDERLINE_SINGLE));
    if (font.strikeOut)
        pango_attr_list_insert(attributes, pango_attr_strikethrough_new(TRUE));
    return attributes;
}

/// UTF-16 from anywhere may hold lone surrogates, on which g_utf16_to_utf8 gives up: these become U+FFFD first.
std::string ToUtf8(std::u16string text)
{
    const auto isHigh = [](char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; };
    const auto isLow = [](char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; };
    for (std::size_t i = 0; i < text.size(); ++i)
        if (isHigh(text[i]) && i + 1 < text.size() && isLow(text[i + 1]))
            ++i;
        else if (isHigh(text[i]) || isLow(text[i]))
            text[i] = u'\uFFFD';
    glong bytes = 0;
    char* utf8 = g_utf16_to_utf8(reinterpret_cast<const gunichar2*>(text.data()), static_cast<glong>(text.size()),
                                 nullptr, &bytes, nullptr);
    const std::string result(utf8 != nullptr ? utf8 : "", static_cast<std::size_t>(utf8 != nullptr ? bytes : 0));
    g_free(utf8);
    return result;
}

UniqueLayout LayOut(const TextFont& font, const char16_t* text, std::size_t length)
{
    UniqueLayout layout(pango_layout_new(ContextFor(font)));
    const UniqueDescription description(Describe(font));
    pango_layout_set_font_description(layout.get(), description.get());
    pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
    PangoAttrList* attributes = Decorations(font);
    pango_layout_set_attributes(layout.get(), attributes);
    pango_attr_list_unref(attributes);
    const std::string utf8 = ToUtf8(std::u16string(text, length));
    pango_layout_set_text(layout.get(), utf8.data(), static_cast<int>(utf8.size()));
    return layout;
}

bool Measure(const TextFont* font, const char16_t* text, std::size_t length, TextExtent* extent)
{
    const UniqueLayout layout = LayOut(*font, text, length);
    PangoRectangle logical{};
    pango_layout_get_extents(layout.get(), nullptr, &logical);
    const int baseline = pango_layout_get_baseline(layout.get());
    extent->width = PANGO_PIXELS_CEIL(logical.width);
    extent->ascent = PANGO_PIXELS_CEIL(baseline);
    extent->descent = PANGO_PIXELS_CEIL(logical.height - baseline);
    return true;
}

bool Draw(const TextFont* font, const char16_t* text, std::size_t length, const TextTarget* target, int x, int baseline,
          std::uint32_t rgb)
{
    const UniqueLayout layout = LayOut(*font, text, length);
    const UniqueSurface surface(cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(target->pixels),
                                                                    CAIRO_FORMAT_ARGB32, target->width, target->height,
                                                                    target->stride * 4));
    const UniqueCairo cairo(cairo_create(surface.get()));
    cairo_set_source_rgb(cairo.get(), (rgb >> 16 & 0xFF) / 255.0, (rgb >> 8 & 0xFF) / 255.0, (rgb & 0xFF) / 255.0);
    cairo_move_to(cairo.get(), x, baseline);
    pango_cairo_show_layout_line(cairo.get(), pango_layout_get_line_readonly(layout.get(), 0));
    cairo_surface_flush(surface.get());
    return cairo_status(cairo.get()) == CAIRO_STATUS_SUCCESS;
}

} // namespace

extern "C" __attribute__((visibility("default"))) const TextService orb_text_service;
const TextService orb_text_service = {&FindFont, &FontSources, &Measure, &Draw};
