// The loop in which a popup menu and its sub-menus are used.
#pragma once

#include "platform/dialogs/popup_menu.h"

#include <memory>
#include <optional>
#include <vector>

namespace platform
{

/// One call of TrackPopupMenuEx.
class PopupTracking
{
public:
    PopupTracking(HMENU menu, UINT flags, HWND owner) : m_menu(menu), m_flags(flags), m_owner(owner) {}

    /// False when the menu could not be shown.
    bool Run(POINT point, const std::optional<RECT>& exclude);
    void End() { m_ended = true; }
    void OnTimer(UINT_PTR id);
    UINT Chosen() const { return m_chosen; }

private:
    bool Begin();
    void Finish();
    bool Going() const;
    /// Going on, with a menu of this depth: to be asked after anything that sends messages.
    bool Shows(int depth) const { return Going() && depth <= Deepest(); }
    LRESULT Tell(UINT message, WPARAM wParam, LPARAM lParam) const;

    void TakeMessage();
    bool IsPressOutside(const MSG& message) const;
    void OnKey(const MSG& message);
    void OnLetter(const MSG& message);
    void OnMouse(const MSG& message);
    void OnPress(POINT point);
    void OnRelease(POINT point);
    void OnMove(POINT point);
    void OnWheel(const MSG& message);

    /// The menu at a point of the screen, −1 for none.
    int PopupAt(POINT point) const;
    /// The menu that the keys are for: the deepest one with a selected item.
    int ActiveDepth() const;
    int Deepest() const { return static_cast<int>(m_popups.size()) - 1; }
    PopupMenu& Popup(int depth) { return *m_popups[static_cast<std::size_t>(depth)].menu; }
    const PopupMenu& Popup(int depth) const { return *m_popups[static_cast<std::size_t>(depth)].menu; }
    /// The item whose sub-menu is open beside this menu, −1 for none.
    int OpenedFrom(int depth) const;

    bool Prepare(HMENU menu, int position);
    bool OpenRoot(POINT point, const std::optional<RECT>& exclude);
    bool OpenSubMenu(int depth, int item);
    void CloseBeyond(int depth);
    void Select(int depth, int item, bool byMouse);
    void MoveTo(int depth, int item);
    void Activate(int depth, int item);

    void StartRest(int depth, int item);
    void StopRest();
    void StartScrolling(int depth, int rows);
    void StopScrolling();

    struct OpenPopup
    {
        std::unique_ptr<PopupMenu> menu;
        int opener; ///< item of the menu before
    };

    HMENU m_menu;
    UINT m_flags;
    HWND m_owner;
    PopupFonts m_fonts;
    std::vector<OpenPopup> m_popups; ///< the first one is never closed by itself
    bool m_ended = false;
    UINT m_chosen = 0;
    POINT m_lastPoint{};      ///< of the pointer; a movement that ends there is none
    POINT m_openingPoint{};   ///< where the pointer was when the menu opened
    bool m_mayChoose = false; ///< a release is not that of the press which opened the menu
    int m_restDepth = -1;
    int m_restItem = -1;
    int m_scrollDepth = -1;
    int m_scrollRows = 0;
};

} // namespace platform
