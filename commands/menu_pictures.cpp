// Turning an icon's image into a bitmap that a menu blends.
#include "commands/menu_pictures.h"

#include "app/launcher_state.h"
#include "support/premultiply.h"

#include <cstring>

namespace CustomMenu
{

namespace
{

constexpr WORD kPictureDepth = 32;

BYTE* ResourceData(int id, LPCWSTR type)
{
    const HRSRC found = FindResourceW(g_instance, MAKEINTRESOURCEW(id), type);
    const HGLOBAL loaded = found != nullptr ? LoadResource(g_instance, found) : nullptr;
    return loaded != nullptr ? static_cast<BYTE*>(LockResource(loaded)) : nullptr;
}

/// An icon's image: header, colours (bottom-up B G R A), then mask, which the stored height counts as well.
const BITMAPINFOHEADER* IconImage(int resource, int size)
{
    BYTE* const directory = ResourceData(resource, RT_GROUP_ICON);
    if (directory == nullptr)
        return nullptr;
    const int image = LookupIconIdFromDirectoryEx(directory, TRUE, size, size, LR_DEFAULTCOLOR);
    return image != 0 ? reinterpret_cast<const BITMAPINFOHEADER*>(ResourceData(image, RT_ICON)) : nullptr;
}

void PremultiplyBitmap(HBITMAP picture)
{
    BITMAP data{};
    if (GetObjectW(picture, sizeof(data), &data) != 0 && data.bmBitsPixel == kPictureDepth && data.bmBits != nullptr)
        PremultiplyPixels(static_cast<std::uint8_t*>(data.bmBits),
                          static_cast<std::size_t>(data.bmWidth) * static_cast<std::size_t>(data.bmHeight));
}

} // namespace

UniqueBitmap MakeMenuPicture(int resource, int size)
{
    const BITMAPINFOHEADER* const image = IconImage(resource, size);
    if (image == nullptr || image->biBitCount != kPictureDepth)
        return {};
    BITMAPINFO info{};
    info.bmiHeader = *image;
    info.bmiHeader.biHeight /= 2;
    void* pixels = nullptr;
    UniqueBitmap picture(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
    if (!picture || pixels == nullptr)
        return {};
    std::memcpy(pixels, reinterpret_cast<const BYTE*>(image) + image->biSize,
                static_cast<std::size_t>(info.bmiHeader.biWidth) * static_cast<std::size_t>(info.bmiHeader.biHeight) *
                    4);
    PremultiplyBitmap(picture.Get());
    return picture;
}

} // namespace CustomMenu
