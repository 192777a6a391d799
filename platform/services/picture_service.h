// Reading pictures: PNG, XPM and the like by gdk-pixbuf, SVG by librsvg.
//
// The module gets a file's content and opens nothing itself: what a picture's name leads to, or what an SVG refers to,
// may be a pipe or a mount that never answers.
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform
{

struct PictureContent
{
    const char* name; ///< its ending tells an SVG
    const char* bytes;
    std::size_t size;
};

struct PictureService
{
    /// Renders a picture, scaled to fit and centred, into `size` × `size` premultiplied B G R A pixels, which must be
    /// zero before. False, with the pixels untouched, for what is no readable picture.
    bool (*render)(const PictureContent& picture, int size, std::uint32_t* pixels);
};

} // namespace platform

extern "C" const platform::PictureService orb_picture_service;
