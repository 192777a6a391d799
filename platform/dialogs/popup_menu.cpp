// A popup menu's window: measuring, showing, selection and scrolling.
#include "platform/dialogs/popup_menu.h"

#include "platform/dialogs/popup_keys.h"
#include "platform/windowing/system_parameters.h"

#include <algorithm>

namespace platform
{

namespace
{

constexpr LPCWSTR kClassName = TEXT("#32768"); // the name that menus have on Windows
constexpr DWORD kStyle = WS_POPUP | WS_BORDER;
constexpr DWORD kExStyle = WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE;

// At 96 DPI rows are as high and as far indented as those of a vertical toolbar in list style, which levels are made
// of.
constexpr int kRowPadding = 6;
constexpr int kMargin = 4;
constexpr int kTextRoom = 7;

class MeasuringContext
{
public:
    MeasuringContext() : m_dc(GetDC(nullptr)) {}
    ~MeasuringContext()
    {
        if (m_dc != nullptr)
        {
            SelectObject(m_dc, m_previous);
            ReleaseDC(nullptr, m_dc);
        }
    }
    MeasuringContext(const MeasuringContext&) = delete;
    MeasuringContext& operator=(const MeasuringContext&) = delete;

    void Select(HFONT font)
    {
        HGDIOBJ previous = SelectObject(m_dc, font);
        m_previous = m_previous != nullptr ? m_previous : previous;
    }
    SIZE Measure(std::u16string_view text)
    {
        RECT rect{};
        if (!text.empty())
            DrawTextW(m_dc, text.data(), static_cast<int>(text.size()), &rect, DT_CALCRECT | DT_SINGLELINE);
        return {rect.right, rect.bottom};
    }
    int LineHeight()
    {
        TEXTMETRICW metrics{};
        GetTextMetricsW(m_dc, &metrics);
        return metrics.tmHeight;
    }

private:
    HDC m_dc;
    HGDIOBJ m_previous = nullptr;
};

PopupMetrics StandardMetrics()
{
    PopupMetrics metrics;
    metrics.pictureWidth = ScaledPixels(16);
    metrics.separatorHeight = ScaledPixels(9);
    metrics.scrollHeight = ScaledPixels(12);
    metrics.margin = ScaledPixels(kMargin);
    metrics.shortcutGap = ScaledPixels(24);
    metrics.rightRoom = ScaledPixels(kTextRoom + 16);
    metrics.bottomRoom = ScaledPixels(2);
    return metrics;
}

} // namespace

PopupFonts::~PopupFonts()
{
    for (HFONT font : {m_plain, m_bold})
        if (font != nullptr)
            DeleteObject(font);
}

HFONT PopupFonts::Of(const MenuItem& item)
{
    const bool bold = (item.state & MFS_DEFAULT) != 0;
    HFONT& font = bold ? m_bold : m_plain;
    if (font == nullptr)
    {
        LOGFONTW description = InterfaceFont();
        description.lfWeight = bold ? FW_BOLD : description.lfWeight;
        font = CreateFontIndirectW(&description);
    }
    return font;
}

PopupMenu::PopupMenu(const Menu& menu, HMENU handle, PopupFonts& fonts, SIZE room)
    : m_handle(handle), m_items(menu.items), m_fonts(fonts), m_metrics(StandardMetrics())
{
    MeasuringContext context;
    int line = 0;
    std::vector<PopupRow> rows;
    rows.reserve(m_items.size());
    for (const MenuItem& item : m_items)
    {
        context.Select(m_fonts.Of(item));
        line = std::max(line, context.LineHeight());
        const SIZE text = context.Measure(ItemText(item.text));
        rows.push_back({static_cast<int>(text.cx), static_cast<int>(context.Measure(ItemShortcut(item.text)).cx),
                        item.IsSeparator()});
        if (BITMAP bitmap{}; GetObjectW(item.bitmap, sizeof(bitmap), &bitmap) != 0)
            m_metrics.pictureWidth = std::max<int>(m_metrics.pictureWidth, bitmap.bmWidth);
    }
    m_metrics.rowHeight = std::max(m_metrics.pictureWidth, line) + ScaledPixels(kRowPadding);
    m_layout = PopupLayout(rows, m_metrics, {room.cx - 2 * kFrame, room.cy - 2 * kFrame});
}

PopupMenu::~PopupMenu()
{
    if (m_window != nullptr)
        DestroyWindow(m_window);
}

void PopupMenu::RegisterPopupClass()
{
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof(windowClass);
    if (GetClassInfoExW(nullptr, kClassName, &windowClass))
        return;
    windowClass = {};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.style = CS_DROPSHADOW;
    windowClass.lpfnWndProc = Procedure;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kClassName;
    RegisterClassExW(&windowClass);
}

SIZE PopupMenu::WindowSize() const
{
    const SIZE client = m_layout.Client();
    return {client.cx + 2 * kFrame, client.cy + 2 * kFrame};
}

bool PopupMenu::Show(const RECT& place, HWND owner)
{
    RegisterPopupClass();
    m_window = CreateWindowExW(kExStyle, kClassName, nullptr, kStyle, place.left, place.top, place.right - place.left,
                               place.bottom - place.top, owner, nullptr, nullptr, this);
    if (m_window == nullptr)
        return false;
    SetWindowPos(m_window, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    return m_window != nullptr;
}

POINT PopupMenu::ToClient(POINT screen) const
{
    ScreenToClient(m_window, &screen);
    return screen;
}

void PopupMenu::InvalidateRow(int item)
{
    if (m_window == nullptr || !Has(item))
        return;
    const RECT row = m_layout.RowRect(item, m_offset);
    const RECT view = m_layout.View();
    RECT visible{};
    if (IntersectRect(&visible, &row, &view))
        InvalidateRect(m_window, &visible, FALSE);
}

void PopupMenu::SetHot(int item)
{
    if (item == m_hot)
        return;
    InvalidateRow(m_hot);
    m_hot = item;
    InvalidateRow(m_hot);
}

bool PopupMenu::Contains(POINT screen) const
{
    RECT rect{};
    return m_window != nullptr && GetWindowRect(m_window, &rect) && PtInRect(&rect, screen);
}

PopupHit PopupMenu::HitTest(POINT screen) const
{
    const PopupHit hit = m_layout.HitTest(ToClient(screen), m_offset);
    return hit.part == PopupPart::Row && At(hit.row).IsSeparator() ? PopupHit{} : hit;
}

RECT PopupMenu::RowOnScreen(int item) const
{
    RECT row = m_layout.RowRect(item, m_offset);
    POINT origin{};
    ClientToScreen(m_window, &origin);
    OffsetRect(&row, origin.x, origin.y);
    return row;
}

void PopupMenu::ScrollTo(int item)
{
    if (Has(item))
        SetOffset(m_layout.OffsetShowing(item, m_offset));
}

bool PopupMenu::ScrollBy(int rows)
{
    return SetOffset(m_layout.OffsetByRows(m_offset, rows));
}

bool PopupMenu::SetOffset(int offset)
{
    if (offset == m_offset)
        return false;
    m_offset = offset;
    if (m_window != nullptr)
        InvalidateRect(m_window, nullptr, FALSE);
    return true;
}

LRESULT CALLBACK PopupMenu::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE)
    {
        void* const made = reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made));
        static_cast<PopupMenu*>(made)->m_window = window;
    }
    auto* popup = reinterpret_cast<PopupMenu*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (popup == nullptr)
        return DefWindowProcW(window, message, wParam, lParam);
    switch (message)
    {
    case WM_PAINT:
        popup->OnPaint();
        return 0;
    case WM_ERASEBKGND:
        return 1; // every pixel is painted
    case WM_MOUSEACTIVATE:
        return MA_NOACTIVATE;
    case WM_NCDESTROY:
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        popup->m_window = nullptr;
        break;
    default:
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace platform
