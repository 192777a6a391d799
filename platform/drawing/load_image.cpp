// LoadImageW: bitmaps and icons out of resources and files.
#include "platform/base/file_content.h"
#include "platform/base/text.h"
#include "platform/drawing/icon_directory.h"

using namespace platform;

namespace
{

std::unique_ptr<BitmapObject> ReadBitmap(HINSTANCE instance, LPCWSTR name, UINT flags)
{
    if ((flags & LR_LOADFROMFILE) == 0)
        return ReadPackedDib(ResourceBytesOf(instance, name, RT_BITMAP));
    if (IS_INTRESOURCE(name))
        return nullptr;
    const FileContent file(PosixFromShellPath(name));
    const std::string_view content = file.Content();
    return ReadBitmapFile({reinterpret_cast<const unsigned char*>(content.data()), content.size()});
}

} // namespace

// Bitmaps come at their natural size, as sections; icon files and cursors are not implemented.
HANDLE LoadImageW(HINSTANCE instance, LPCWSTR name, UINT type, int width, int height, UINT flags)
{
    constexpr HANDLE kNone = nullptr;
    if (type == IMAGE_ICON && (flags & LR_LOADFROMFILE) == 0)
    {
        constexpr int kUsual = 32;
        const auto load = (flags & LR_SHARED) != 0 ? LoadSharedIcon : LoadResourceIcon;
        return load(instance, name, width != 0 ? width : kUsual, height != 0 ? height : kUsual);
    }
    if (type != IMAGE_BITMAP)
        return Fail(ERROR_NOT_SUPPORTED, kNone);
    auto bitmap = ReadBitmap(instance, name, flags);
    return bitmap != nullptr ? OpenHandle<HANDLE>("LoadImageW", std::move(bitmap))
                             : Fail(ERROR_RESOURCE_NAME_NOT_FOUND, kNone);
}
