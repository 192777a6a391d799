// The static control.
#include "platform/controls/static_text.h"

#include "platform/drawing/icon.h"
#include "platform/windowing/window_class.h"

#include <utility>

namespace platform
{
namespace
{

constinit SystemClass g_class{TEXT("Static"), &StaticText::Procedure, CS_DBLCLKS};

[[gnu::constructor]] void OfferClass()
{
    OfferSystemClass(g_class);
}

constexpr DWORD kKindMask = 0x001F; // SS_TYPEMASK

UINT AlignmentOf(DWORD kind)
{
    return kind == SS_CENTER ? DT_CENTER : kind == SS_RIGHT ? DT_RIGHT : DT_LEFT;
}

} // namespace

DWORD StaticText::Kind() const
{
    return Style() & kKindMask;
}

LRESULT StaticText::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_NCHITTEST:
        return HTTRANSPARENT;
    case WM_GETDLGCODE:
        return DLGC_STATIC;
    case STM_GETICON:
        return reinterpret_cast<LRESULT>(m_icon);
    case STM_SETICON:
        Redraw();
        return reinterpret_cast<LRESULT>(std::exchange(m_icon, reinterpret_cast<HICON>(wParam)));
    default:
        return LabelControl::Handle(message, wParam, lParam);
    }
}

void StaticText::Paint(HDC dc, const RECT& client)
{
    if (Kind() == SS_ICON)
        PaintIcon(dc, client);
    else
        PaintText(dc, client);
}

void StaticText::PaintIcon(HDC dc, const RECT& rect)
{
    const auto source = IconSourceOf(m_icon);
    if (source == nullptr)
        return;
    const IconImage& image = source->Image();
    const bool centered = HasStyle(SS_CENTERIMAGE);
    DrawIconImage(dc, centered ? (rect.right - image.width) / 2 : 0, centered ? (rect.bottom - image.height) / 2 : 0,
                  image);
}

void StaticText::PaintText(HDC dc, const RECT& rect)
{
    const bool oneLine = HasStyle(SS_CENTERIMAGE) || HasStyle(SS_ENDELLIPSIS);
    UINT format = AlignmentOf(Kind());
    format |= oneLine ? DT_SINGLELINE : Kind() == SS_LEFTNOWORDWRAP ? 0 : DT_WORDBREAK;
    format |= HasStyle(SS_CENTERIMAGE) ? DT_VCENTER : 0;
    format |= HasStyle(SS_ENDELLIPSIS) ? DT_END_ELLIPSIS : 0;
    format |= HasStyle(SS_EDITCONTROL) ? DT_EDITCONTROL : 0;
    format |= HasStyle(SS_NOPREFIX) ? DT_NOPREFIX : 0;
    PaintLabel(dc, rect, format);
}

} // namespace platform
