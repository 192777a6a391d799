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

bool StaticText::Has(DWORD style) const
{
    return (static_cast<DWORD>(GetWindowLongPtrW(Window(), GWL_STYLE)) & style) != 0;
}

DWORD StaticText::Kind() const
{
    return static_cast<DWORD>(GetWindowLongPtrW(Window(), GWL_STYLE)) & kKindMask;
}

LRESULT StaticText::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_NCHITTEST:
        return HTTRANSPARENT;
    case WM_GETDLGCODE:
        return DLGC_STATIC;
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
        OnPaint();
        return 0;
    case WM_SETFONT:
        m_font = reinterpret_cast<HFONT>(wParam);
        Redraw();
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(m_font);
    case WM_ENABLE:
    case WM_SETTEXT:
        Redraw();
        return Default(message, wParam, lParam);
    case STM_GETICON:
        return reinterpret_cast<LRESULT>(m_icon);
    case STM_SETICON:
        Redraw();
        return reinterpret_cast<LRESULT>(std::exchange(m_icon, reinterpret_cast<HICON>(wParam)));
    default:
        return Default(message, wParam, lParam);
    }
}

void StaticText::OnPaint()
{
    PAINTSTRUCT paint;
    if (HDC dc = BeginPaint(Window(), &paint))
    {
        RECT client;
        GetClientRect(Window(), &client);
        const HGDIOBJ font = m_font != nullptr ? SelectObject(dc, m_font) : nullptr;
        SetBkMode(dc, TRANSPARENT);
        FillRect(dc, &client, AskForColors(WM_CTLCOLORSTATIC, dc));
        if (Kind() == SS_ICON)
            PaintIcon(dc, client);
        else
            PaintText(dc, client);
        if (font != nullptr)
            SelectObject(dc, font);
    }
    EndPaint(Window(), &paint);
}

void StaticText::PaintIcon(HDC dc, const RECT& rect)
{
    const auto source = IconSourceOf(m_icon);
    if (source == nullptr)
        return;
    const IconImage& image = source->Image();
    const bool centered = Has(SS_CENTERIMAGE);
    DrawIconImage(dc, centered ? (rect.right - image.width) / 2 : 0, centered ? (rect.bottom - image.height) / 2 : 0,
                  image);
}

void StaticText::PaintText(HDC dc, RECT rect)
{
    const std::u16string text = TextOf(Window());
    const bool oneLine = Has(SS_CENTERIMAGE) || Has(SS_ENDELLIPSIS);
    UINT format = AlignmentOf(Kind());
    format |= oneLine ? DT_SINGLELINE : Kind() == SS_LEFTNOWORDWRAP ? 0 : DT_WORDBREAK;
    format |= Has(SS_CENTERIMAGE) ? DT_VCENTER : 0;
    format |= Has(SS_ENDELLIPSIS) ? DT_END_ELLIPSIS : 0;
    format |= Has(SS_EDITCONTROL) ? DT_EDITCONTROL : 0;
    format |= Has(SS_NOPREFIX) ? DT_NOPREFIX : 0;
    if (!IsWindowEnabled(Window()))
        SetTextColor(dc, GetSysColor(COLOR_GRAYTEXT));
    DrawTextW(dc, text.data(), static_cast<int>(text.size()), &rect, format);
}

} // namespace platform
