// The pager control: a window that shows part of a taller child and scrolls it with an arrow button at either end.
//
// Only the vertical kind (PGS_HORZ is ignored). The arrow buttons lie outside the client area, so that it is what shows
// of the child, and are there only while there is more in their direction. Not implemented: borders, background colour,
// forwarding of mouse messages. PGS_AUTOSCROLL: resting on a button scrolls; without it only pressing does.
// PGS_DRAGNDROP: what is dragged over a button scrolls as well.
#pragma once

#include "platform/controls/control_object.h"
#include "platform/controls/pager_drops.h"
#include "commctrl.h"

#include <array>

namespace platform
{

/// The arithmetic of scrolling. Pixels; `height` is the pager's own height, `content` the child's.
struct PagerExtent
{
    int height = 0;
    int content = 0;
    int button = 0;

    /// The largest position: the end of the child at the pager's lower edge, with the upper button showing.
    int Limit() const { return content > height ? content - (height - button) : 0; }
    int Clamp(int position) const { return position < 0 ? 0 : position > Limit() ? Limit() : position; }
};

class Pager final : public ControlObject
{
public:
    using ControlObject::ControlObject;
    ~Pager() override;

    /// Something is dragged over the pager, at this point of the screen, and no longer.
    void OnDragOver(POINT screen);
    void OnDragLeave();

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        return Route<Pager>(window, message, wParam, lParam);
    }

private:
    static constexpr int kNone = -1; ///< neither PGB_TOPORLEFT nor PGB_BOTTOMORRIGHT

    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
    void Create(const CREATESTRUCTW& create);
    LRESULT HandlePager(UINT message, LPARAM lParam);
    LRESULT HandleMouse(UINT message, LPARAM lParam);

    void SetChild(HWND child);
    void SetPosition(int position);
    int SetButtonSize(int size);
    /// Asks the owner for the child's size, then shows the part at the position.
    void Recalculate();
    /// Gives each button the state that position, cursor and mouse button ask for.
    void UpdateButtons();
    int WantedState(int button) const;
    void PlaceChild();
    void Scroll(int button);
    int Height() const;

    bool IsShowing(int button) const { return m_states[static_cast<std::size_t>(button)] != PGF_INVISIBLE; }
    bool CanScroll(int button) const;
    /// In window coordinates; empty when the button does not show.
    RECT ButtonRect(int button) const;
    /// The button at a point in client coordinates.
    int ButtonAt(POINT client) const;
    LRESULT HitTest(POINT screen) const;
    void ShrinkClientArea(RECT& rect) const;

    /// By the mouse, whose leaving is to be told, or by what is dragged.
    void HoverOver(int button, bool byMouse);
    void Press(int button);
    void Release();
    void OnTimer();
    void StartTimer(UINT milliseconds);
    void StopTimer();

    void PaintButtons();
    void PaintButton(HDC dc, int button);

    HWND m_owner = nullptr;
    HWND m_child = nullptr;
    PagerExtent m_extent;
    int m_position = 0;
    std::array<int, 2> m_states = {PGF_INVISIBLE, PGF_INVISIBLE};
    int m_hover = kNone;
    int m_pressed = kNone;
    bool m_autoScroll = false;
    bool m_isDraggedOver = false;
    ComReference<PagerDropTarget> m_drops; ///< none when the pager takes no part in drags
};

} // namespace platform
