// Loading bitmaps and premultiplying them.
#include "app/bitmap_loader.h"

#include "app/launcher_state.h"
#include "support/premultiply.h"

#include <string>

namespace
{

HANDLE LoadDibSection(const WString& name)
{
    if (name.starts_with(TEXT('#')))
        return LoadImageW(g_instance, name.c_str(), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION);
    return LoadImageW(nullptr, name.c_str(), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION | LR_LOADFROMFILE);
}

} // namespace

UniqueBitmap LoadBitmapImage(const WString& name)
{
    UniqueBitmap image(static_cast<HBITMAP>(LoadDibSection(name)));
    BITMAP bitmap{};
    if (image && GetObjectW(image.Get(), sizeof(bitmap), &bitmap) != 0 && bitmap.bmBitsPixel >= 32 &&
        bitmap.bmBits != nullptr)
    {
        PremultiplyPixels(static_cast<std::uint8_t*>(bitmap.bmBits),
                          static_cast<std::size_t>(bitmap.bmWidth) * static_cast<std::size_t>(bitmap.bmHeight));
    }
    return image;
}

WString ResourceName(unsigned number)
{
    const std::string digits = std::to_string(number);
    return TEXT("#") + WString(digits.begin(), digits.end());
}

SIZE BitmapSize(HBITMAP bitmap)
{
    BITMAP data{};
    if (GetObjectW(bitmap, sizeof(data), &data) == 0)
        return {0, 0};
    return {data.bmWidth, data.bmHeight};
}
