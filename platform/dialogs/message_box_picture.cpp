// The message box's pictures, computed from distances so that their edges are smooth at every size.
#include "platform/dialogs/message_box_picture.h"

#include "platform/drawing/icon.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace platform
{

namespace
{

constexpr COLORREF kErrorColor = RGB(200, 40, 40);
constexpr COLORREF kNoteColor = RGB(40, 100, 190);
constexpr COLORREF kWarningColor = RGB(245, 190, 40);

/// How far inside its outline a shape has a point, in pixels; negative outside.
using Depth = std::function<double(double x, double y)>;

Depth Disc(double size)
{
    return [=](double x, double y) { return size / 2 - std::hypot(x - size / 2, y - size / 2); };
}

/// Standing on the lower edge, its tip in the middle of the upper one.
Depth Triangle(double size)
{
    return [=](double x, double y)
    {
        const double side = y / 2 - std::abs(x - size / 2);
        return std::min(side * 2 / std::sqrt(5.0), size - y);
    };
}

Depth Cross(double size)
{
    return [=](double x, double y)
    {
        const double u = x - size / 2;
        const double v = y - size / 2;
        const double along = std::max(std::abs(u + v), std::abs(u - v)) / std::sqrt(2.0);
        const double across = std::min(std::abs(u + v), std::abs(u - v)) / std::sqrt(2.0);
        return std::min(size * 0.28 - along, size * 0.06 - across);
    };
}

void DrawShape(HDC dc, const RECT& rect, COLORREF color, const Depth& depth)
{
    const int size = rect.right - rect.left;
    IconImage image{size, size, {}};
    image.pixels.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
    for (int y = 0; y < size; ++y)
    {
        for (int x = 0; x < size; ++x)
        {
            const double coverage = std::clamp(depth(x + 0.5, y + 0.5) + 0.5, 0.0, 1.0);
            const auto part = [&](unsigned value) { return static_cast<std::uint32_t>(std::lround(value * coverage)); };
            image.pixels.push_back(part(255) << 24 | part(GetRValue(color)) << 16 | part(GetGValue(color)) << 8 |
                                   part(GetBValue(color)));
        }
    }
    DrawIconImage(dc, rect.left, rect.top, image);
}

void DrawMark(HDC dc, RECT rect, LPCWSTR mark, COLORREF color)
{
    LOGFONTW description = {};
    description.lfHeight = -(rect.bottom - rect.top) * 2 / 3;
    description.lfWeight = FW_BOLD;
    HFONT font = CreateFontIndirectW(&description);
    HGDIOBJ previous = SelectObject(dc, font);
    const COLORREF previousColor = SetTextColor(dc, color);
    DrawTextW(dc, mark, 1, &rect, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    SetTextColor(dc, previousColor);
    SelectObject(dc, previous);
    DeleteObject(font);
}

} // namespace

MessageBoxPicture PictureOfMessageBox(UINT type)
{
    switch (type & 0xf0)
    {
    case MB_ICONERROR:
        return MessageBoxPicture::Error;
    case MB_ICONQUESTION:
        return MessageBoxPicture::Question;
    case MB_ICONWARNING:
        return MessageBoxPicture::Warning;
    case 0x40: // MB_ICONINFORMATION
        return MessageBoxPicture::Information;
    default:
        return MessageBoxPicture::None;
    }
}

void DrawMessageBoxPicture(HDC dc, const RECT& rect, MessageBoxPicture picture)
{
    const double size = rect.right - rect.left;
    switch (picture)
    {
    case MessageBoxPicture::None:
        return;
    case MessageBoxPicture::Error:
        DrawShape(dc, rect, kErrorColor, Disc(size));
        DrawShape(dc, rect, RGB(255, 255, 255), Cross(size));
        return;
    case MessageBoxPicture::Warning:
        DrawShape(dc, rect, kWarningColor, Triangle(size));
        DrawMark(dc, {rect.left, rect.top + (rect.bottom - rect.top) / 4, rect.right, rect.bottom}, TEXT("!"),
                 RGB(0, 0, 0));
        return;
    case MessageBoxPicture::Question:
        DrawShape(dc, rect, kNoteColor, Disc(size));
        DrawMark(dc, rect, TEXT("?"), RGB(255, 255, 255));
        return;
    case MessageBoxPicture::Information:
        DrawShape(dc, rect, kNoteColor, Disc(size));
        DrawMark(dc, rect, TEXT("i"), RGB(255, 255, 255));
        return;
    }
}

} // namespace platform
