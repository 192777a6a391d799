// Laying out one line with Pango on cairo, for the text services.
#pragma once

#include "platform/services/text_service.h"

#include <memory>
#include <pango/pangocairo.h>
#include <string>
#include <string_view>

namespace platform
{

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

/// The name of the font's family for Pango and fontconfig.
const char* FaceOf(const TextFont& font);
/// UTF-8 of any UTF-16; a lone surrogate becomes U+FFFD.
std::string ToUtf8(std::u16string text);
/// A line in the font, decorated as it says.
UniqueLayout LayOut(const TextFont& font, std::u16string_view text);
TextExtent ExtentOf(PangoLayout* layout);
bool DrawLayout(PangoLayout* layout, const TextTarget& target, int x, int baseline, std::uint32_t rgb);

} // namespace platform
