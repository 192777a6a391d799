// GDI objects: brushes, pens, fonts, stock objects, and what all objects have in common.
#include "platform/drawing/device_context.h"
#include "platform/drawing/pixel_format.h"

#include <algorithm>
#include <array>
#include <cstring>

using namespace platform;

namespace
{

std::unique_ptr<HandleObject> MakeStockObject(int index)
{
    constexpr COLORREF kWhite = 0x00FFFFFF;
    switch (index)
    {
    case WHITE_BRUSH:
        return std::make_unique<BrushObject>(kWhite);
    case BLACK_PEN:
    case NULL_PEN:
        return std::make_unique<PenObject>();
    case SYSTEM_FONT:
    case DEFAULT_GUI_FONT:
    {
        LOGFONTW font{};
        font.lfHeight = -12;
        font.lfWeight = FW_NORMAL;
        return std::make_unique<FontObject>(font);
    }
    default:
        return nullptr;
    }
}

/// Copies a description out, as GetObjectW does: all of it or nothing; without a buffer only its size.
template <typename T>
int CopyOut(const T& description, int size, LPVOID data)
{
    constexpr int kNeeded = sizeof(T);
    if (data == nullptr)
        return kNeeded;
    if (size < kNeeded)
        return Fail(ERROR_INVALID_PARAMETER, 0);
    std::memcpy(data, &description, sizeof(T));
    return kNeeded;
}

BITMAP Describe(BitmapObject& bitmap)
{
    BITMAP description{};
    description.bmWidth = bitmap.width;
    description.bmHeight = bitmap.height;
    description.bmWidthBytes = bitmap.stride;
    description.bmPlanes = 1;
    description.bmBitsPixel = static_cast<WORD>(bitmap.bitsPerPixel);
    description.bmBits = bitmap.Bits();
    return description;
}

int DescribeBitmap(BitmapObject& bitmap, int size, LPVOID data)
{
    if (data == nullptr || size < static_cast<int>(sizeof(DIBSECTION)))
        return CopyOut(Describe(bitmap), size, data);
    DIBSECTION section{};
    section.dsBm = Describe(bitmap);
    section.dsBmih.biSize = sizeof(BITMAPINFOHEADER);
    section.dsBmih.biWidth = bitmap.width;
    section.dsBmih.biHeight = bitmap.bottomUp ? bitmap.height : -bitmap.height;
    section.dsBmih.biPlanes = 1;
    section.dsBmih.biBitCount = section.dsBm.bmBitsPixel;
    section.dsBmih.biSizeImage = static_cast<DWORD>(bitmap.stride * bitmap.height);
    section.dsBmih.biClrUsed = static_cast<DWORD>(bitmap.colors.size());
    return CopyOut(section, size, data);
}

} // namespace

HGDIOBJ GetStockObject(int index)
{
    static auto& stock = *new std::array<HGDIOBJ, DEFAULT_GUI_FONT + 1>();
    if (index < 0 || index >= static_cast<int>(stock.size()))
        return nullptr;
    HGDIOBJ& handle = stock[static_cast<std::size_t>(index)];
    if (handle == nullptr)
    {
        if (auto object = MakeStockObject(index))
        {
            object->permanent = true;
            handle = reinterpret_cast<HGDIOBJ>(InsertHandle(std::move(object)));
        }
    }
    return handle;
}

BOOL DeleteObject(HGDIOBJ object)
{
    const auto value = reinterpret_cast<std::uintptr_t>(object);
    auto* selectable = dynamic_cast<SelectableObject*>(FindHandle(value));
    if (selectable == nullptr)
        return Fail(ERROR_INVALID_HANDLE, FALSE);
    if (selectable->permanent)
        return TRUE; // stock objects may be "deleted" without effect
    if (selectable->selections == 0)
        return TakeHandle(value) != nullptr;
    if (selectable->Kind() == HandleKind::Bitmap)
        return FALSE;
    selectable->deleteWhenFree = true;
    return TRUE;
}

int GetObjectW(HANDLE object, int size, LPVOID data)
{
    if (auto* bitmap = FindObject<BitmapObject>(object))
        return DescribeBitmap(*bitmap, size, data);
    if (const auto* font = FindObject<FontObject>(object))
        return CopyOut(font->logFont, size, data);
    return Fail(ERROR_INVALID_HANDLE, 0);
}

HBRUSH CreateSolidBrush(COLORREF color)
{
    return OpenHandle<HBRUSH>("CreateSolidBrush", std::make_unique<BrushObject>(color));
}

HFONT CreateFontIndirectW(const LOGFONTW* font)
{
    if (font == nullptr)
        return Fail(ERROR_INVALID_PARAMETER, static_cast<HFONT>(nullptr));
    auto object = std::make_unique<FontObject>(*font);
    object->logFont.lfFaceName[std::size(object->logFont.lfFaceName) - 1] = 0;
    return OpenHandle<HFONT>("CreateFontIndirectW", std::move(object));
}

HFONT CreateFontW(int height, int width, int escapement, int orientation, int weight, DWORD italic, DWORD underline,
                  DWORD strikeOut, DWORD charSet, DWORD outPrecision, DWORD clipPrecision, DWORD quality,
                  DWORD pitchAndFamily, LPCWSTR faceName)
{
    LOGFONTW font{height,
                  width,
                  escapement,
                  orientation,
                  weight,
                  static_cast<BYTE>(italic != 0),
                  static_cast<BYTE>(underline != 0),
                  static_cast<BYTE>(strikeOut != 0),
                  static_cast<BYTE>(charSet),
                  static_cast<BYTE>(outPrecision),
                  static_cast<BYTE>(clipPrecision),
                  static_cast<BYTE>(quality),
                  static_cast<BYTE>(pitchAndFamily),
                  {}};
    for (std::size_t i = 0; faceName != nullptr && faceName[i] != 0 && i + 1 < std::size(font.lfFaceName); ++i)
        font.lfFaceName[i] = faceName[i];
    return CreateFontIndirectW(&font);
}
