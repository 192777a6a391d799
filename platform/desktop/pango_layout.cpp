// Laying out one line: fonts, decorations, and drawing.
#include "platform/desktop/pango_layout.h"

namespace platform
{
namespace
{

using UniqueDescription = std::unique_ptr<PangoFontDescription, Closer<pango_font_description_free>>;
using UniqueSurface = std::unique_ptr<cairo_surface_t, Closer<cairo_surface_destroy>>;
using UniqueCairo = std::unique_ptr<cairo_t, Closer<cairo_destroy>>;

cairo_hint_style_t HintStyle(TextHinting hinting)
{
    switch (hinting)
    {
    case TextHinting::None:
        return CAIRO_HINT_STYLE_NONE;
    case TextHinting::Medium:
        return CAIRO_HINT_STYLE_MEDIUM;
    case TextHinting::Full:
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

} // namespace

const char* FaceOf(const TextFont& font)
{
    return font.face != nullptr && font.face[0] != 0 ? font.face : "sans";
}

// g_utf16_to_utf8 gives up on lone surrogates: they are replaced first.
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

UniqueLayout LayOut(const TextFont& font, std::u16string_view text)
{
    UniqueLayout layout(pango_layout_new(ContextFor(font)));
    const UniqueDescription description(Describe(font));
    pango_layout_set_font_description(layout.get(), description.get());
    pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
    PangoAttrList* attributes = Decorations(font);
    pango_layout_set_attributes(layout.get(), attributes);
    pango_attr_list_unref(attributes);
    const std::string utf8 = ToUtf8(std::u16string(text));
    pango_layout_set_text(layout.get(), utf8.data(), static_cast<int>(utf8.size()));
    return layout;
}

TextExtent ExtentOf(PangoLayout* layout)
{
    PangoRectangle logical{};
    pango_layout_get_extents(layout, nullptr, &logical);
    const int baseline = pango_layout_get_baseline(layout);
    return {PANGO_PIXELS_CEIL(logical.width), PANGO_PIXELS_CEIL(baseline),
            PANGO_PIXELS_CEIL(logical.height - baseline)};
}

bool DrawLayout(PangoLayout* layout, const TextTarget& target, int x, int baseline, std::uint32_t rgb)
{
    const UniqueSurface surface(cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(target.pixels),
                                                                    CAIRO_FORMAT_ARGB32, target.width, target.height,
                                                                    target.stride * 4));
    const UniqueCairo cairo(cairo_create(surface.get()));
    cairo_set_source_rgb(cairo.get(), (rgb >> 16 & 0xFF) / 255.0, (rgb >> 8 & 0xFF) / 255.0, (rgb & 0xFF) / 255.0);
    cairo_move_to(cairo.get(), x, baseline);
    pango_cairo_show_layout_line(cairo.get(), pango_layout_get_line_readonly(layout, 0));
    cairo_surface_flush(surface.get());
    return cairo_status(cairo.get()) == CAIRO_STATUS_SUCCESS;
}

} // namespace platform
