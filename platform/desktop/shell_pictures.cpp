// Rendering of pictures.
#include "platform/services/picture_service.h"

#include "platform/desktop/glib_owner.h"

#include <cairo.h>
#include <dlfcn.h>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <librsvg/rsvg.h>

#include <string_view>

namespace platform
{

namespace
{

/// librsvg's functions. The library is large, so it is loaded with the first SVG icon that is in no cache.
struct SvgLibrary
{
    decltype(&rsvg_handle_new_from_data) newFromData = nullptr;
    decltype(&rsvg_handle_render_document) render = nullptr;

    bool Usable() const { return newFromData != nullptr && render != nullptr; }
};

SvgLibrary LoadSvgLibrary()
{
    SvgLibrary library;
    if (void* handle = dlopen("librsvg-2.so.2", RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE))
    {
        library.newFromData =
            reinterpret_cast<decltype(library.newFromData)>(dlsym(handle, "rsvg_handle_new_from_data"));
        library.render = reinterpret_cast<decltype(library.render)>(dlsym(handle, "rsvg_handle_render_document"));
    }
    return library;
}

bool RenderSvg(const PictureContent& picture, int size, std::uint32_t* pixels)
{
    static const SvgLibrary library = LoadSvgLibrary();
    if (!library.Usable())
        return false;
    const auto* content = reinterpret_cast<const guint8*>(picture.bytes);
    const GObjectOwner<RsvgHandle> handle(library.newFromData(content, picture.size, nullptr));
    if (handle == nullptr)
        return false;
    const std::size_t count = static_cast<std::size_t>(size) * size;
    auto* bytes = reinterpret_cast<unsigned char*>(pixels);
    cairo_surface_t* surface = cairo_image_surface_create_for_data(bytes, CAIRO_FORMAT_ARGB32, size, size, size * 4);
    cairo_t* context = cairo_create(surface);
    const RsvgRectangle viewport{0, 0, static_cast<double>(size), static_cast<double>(size)};
    const bool rendered = library.render(handle.get(), context, &viewport, nullptr) != FALSE &&
                          cairo_status(context) == CAIRO_STATUS_SUCCESS;
    cairo_destroy(context);
    cairo_surface_finish(surface);
    cairo_surface_destroy(surface);
    if (!rendered)
        std::fill_n(pixels, count, 0u); // half a picture is none
    return rendered;
}

std::uint32_t Premultiplied(const guchar* pixel, bool alpha)
{
    const std::uint32_t a = alpha ? pixel[3] : 255;
    const auto scale = [a](std::uint32_t channel) { return (channel * a + 127) / 255; };
    return scale(pixel[2]) | scale(pixel[1]) << 8 | scale(pixel[0]) << 16 | a << 24;
}

bool RenderBitmap(const PictureContent& picture, int size, std::uint32_t* pixels)
{
    const GObjectOwner<GInputStream> stream(
        g_memory_input_stream_new_from_data(picture.bytes, static_cast<gssize>(picture.size), nullptr));
    const GObjectOwner<GdkPixbuf> pixbuf(
        gdk_pixbuf_new_from_stream_at_scale(stream.get(), size, size, TRUE, nullptr, nullptr));
    if (pixbuf == nullptr || gdk_pixbuf_get_bits_per_sample(pixbuf.get()) != 8)
        return false;
    const int width = std::min(gdk_pixbuf_get_width(pixbuf.get()), size);
    const int height = std::min(gdk_pixbuf_get_height(pixbuf.get()), size);
    const int channels = gdk_pixbuf_get_n_channels(pixbuf.get());
    const int stride = gdk_pixbuf_get_rowstride(pixbuf.get());
    const guchar* source = gdk_pixbuf_read_pixels(pixbuf.get());
    const bool alpha = gdk_pixbuf_get_has_alpha(pixbuf.get()) != FALSE;
    std::uint32_t* target = pixels + (size - height) / 2 * size + (size - width) / 2;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            target[y * size + x] = Premultiplied(source + y * stride + x * channels, alpha);
    return true;
}

bool Render(const PictureContent& picture, int size, std::uint32_t* pixels)
{
    const std::string_view name(picture.name);
    const bool svg = name.ends_with(".svg") || name.ends_with(".svgz") || name.ends_with(".SVG");
    return svg ? RenderSvg(picture, size, pixels) : RenderBitmap(picture, size, pixels);
}

} // namespace

} // namespace platform

extern "C" __attribute__((visibility("default")))
const platform::PictureService orb_picture_service = {platform::Render};
