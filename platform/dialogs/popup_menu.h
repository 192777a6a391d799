// One popup menu on the screen: its window, its rows, what is drawn.
//
// It shows what the menu held when it was opened: whatever happens to the menu object meanwhile, its rows stay. What
// the mouse and the keys do is decided by whoever tracks it (popup_tracking.cpp).
#pragma once

#include "platform/dialogs/menu.h"
#include "platform/dialogs/popup_layout.h"

namespace platform
{

/// The levels' font and its bold cut, the latter made when the first default item is measured.
class PopupFonts
{
public:
    PopupFonts() = default;
    ~PopupFonts();
    PopupFonts(const PopupFonts&) = delete;
    PopupFonts& operator=(const PopupFonts&) = delete;
    HFONT Of(const MenuItem& item);

private:
    HFONT m_plain = nullptr;
    HFONT m_bold = nullptr;
};

class PopupMenu
{
public:
    /// Takes over the menu's items and measures them for a work area of this size (pixels).
    PopupMenu(const Menu& menu, HMENU handle, PopupFonts& fonts, SIZE room);
    ~PopupMenu();
    PopupMenu(const PopupMenu&) = delete;
    PopupMenu& operator=(const PopupMenu&) = delete;

    SIZE WindowSize() const;
    /// Shows it above all, without activating it. False when there can be no window.
    bool Show(const RECT& place, HWND owner);
    /// Null before it is shown, and when it has been destroyed with its owner.
    HWND Window() const { return m_window; }
    HMENU Handle() const { return m_handle; }

    const std::vector<MenuItem>& Items() const { return m_items; }
    bool Has(int item) const { return item >= 0 && item < static_cast<int>(m_items.size()); }
    const MenuItem& At(int item) const { return m_items[static_cast<std::size_t>(item)]; }
    bool Opens(int item) const { return Has(item) && At(item).subMenu != nullptr && At(item).IsEnabled(); }

    /// The selected item, −1 for none.
    int Hot() const { return m_hot; }
    void SetHot(int item);
    bool Contains(POINT screen) const;
    /// A separator is no row that could be hit.
    PopupHit HitTest(POINT screen) const;
    RECT RowOnScreen(int item) const;
    void ScrollTo(int item);
    /// False when there is nothing more in that direction (rows, negative upwards).
    bool ScrollBy(int rows);

    /// Pixels of the window's border on each side.
    static constexpr int kFrame = 1;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static void RegisterPopupClass();

    POINT ToClient(POINT screen) const;
    bool SetOffset(int offset);
    void InvalidateRow(int item);
    // popup_paint.cpp
    void OnPaint();
    void Paint(HDC dc, const RECT& clip);
    void PaintRow(HDC dc, int item, const RECT& row);
    void PaintTexts(HDC dc, const MenuItem& item, const RECT& row);
    void PaintScrollArrow(HDC dc, PopupPart part);

    HMENU m_handle;
    std::vector<MenuItem> m_items;
    PopupFonts& m_fonts;
    PopupMetrics m_metrics;
    PopupLayout m_layout;
    HWND m_window = nullptr;
    int m_hot = -1;
    int m_offset = 0;
};

} // namespace platform
