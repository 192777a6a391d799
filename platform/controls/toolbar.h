// The toolbar control: a column of buttons, each an icon with its label to the right.
//
// Only what a menu needs: the list style in one column, flat and transparent (the parent draws the background), with
// hot tracking, custom draw and an insertion mark. TBSTYLE_REGISTERDROP: its owner's drop target (TBN_GETOBJECT, asked
// for the toolbar as a whole) takes what is dragged over it. Not implemented: rows of several buttons, other styles,
// check and drop-down buttons, bitmaps other than an image list's, string lists, other padding, tooltips, customising,
// saving, mnemonics. Labels are drawn as they are: an ampersand in one is an ampersand, for labels are file names.
#pragma once

#include "platform/controls/control_object.h"
#include "platform/controls/drop_proxy.h"
#include "platform/controls/toolbar_column.h"

namespace platform
{

class Toolbar final : public ControlObject
{
public:
    using ControlObject::ControlObject;
    ~Toolbar() override;

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        return Route<Toolbar>(window, message, wParam, lParam);
    }

private:
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
    LRESULT HandleButtons(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT HandleAppearance(UINT message, LPARAM lParam);
    LRESULT HandleInput(UINT message, WPARAM wParam, LPARAM lParam);

    // --- buttons and sizes (toolbar.cpp)
    void Create(const CREATESTRUCTW& create);
    void RegisterDrops();
    void EndDrops();
    void SetFont(HFONT font);
    bool InsertButton(int index, const TBBUTTON* button);
    bool DeleteButton(int index);
    bool GetButton(int index, TBBUTTON* button) const;
    /// Sets the natural size after buttons, font or images have changed: rows for the widest text.
    void UpdateSize();
    SIZE MeasureContent();
    void SetButtonSize(int width, int height);
    SIZE ImageSize() const;
    HIMAGELIST SetImages(HIMAGELIST images);
    void InvalidateAll();
    void InvalidateButton(int index);

    // --- hot item, mouse and keys (toolbar_input.cpp)
    /// Offers the owner a change of the hot item; an index that names no item means none. True unless refused.
    bool ChangeHot(int index, DWORD flags);
    int SetHotItem(int index);
    int ItemAt(POINT point) const;
    void TrackLeaving();
    POINT PointOf(LPARAM lParam) const;
    void OnMouseMove(POINT point);
    void OnPress(POINT point);
    void OnRelease(POINT point);
    LRESULT OnRightRelease(WPARAM keys, LPARAM lParam);
    bool OnKey(WPARAM key, LPARAM lParam);
    void OnFocus();
    void CancelPress();
    void SetPressed(bool pressed);
    void SendCommand(int command);
    LRESULT NotifyMouse(UINT code, int index, POINT point);
    int NextItem(int from, int step) const;

    // --- painting (toolbar_paint.cpp)
    void OnPaint();
    void Paint(HDC dc, const RECT& clip);
    void PaintRows(HDC dc, const RECT& clip, bool notifyItems);
    void PaintItem(HDC dc, int index, bool notify);
    void PaintItemContent(HDC dc, int index, const NMTBCUSTOMDRAW& draw, LRESULT flags);
    NMTBCUSTOMDRAW DrawInfo(HDC dc, int index) const;
    void PaintInsertMark(HDC dc);
    RECT InsertMarkRect(const TBINSERTMARK& mark) const;
    void SetInsertMark(const TBINSERTMARK* mark);

    ToolbarColumn m_column;
    HWND m_owner = nullptr; ///< gets the notifications; stays the same when the toolbar moves under a pager
    HIMAGELIST m_images = nullptr;
    HFONT m_font = nullptr;
    HFONT m_ownFont = nullptr; ///< the default font, which the toolbar frees
    bool m_sizeStale = true;
    bool m_allInvalid = false; ///< saves invalidating once per button while a level is filled

    int m_hot = -1;
    int m_pressed = -1;          ///< the item that the left button went down on
    bool m_pressStarted = false; ///< the left button went down in this toolbar
    bool m_trackingLeave = false;
    TBINSERTMARK m_mark = {-1, 0};
    COLORREF m_markColor = 0;
    ComReference<DropProxy> m_drops; ///< none when the toolbar takes no part in drags
};

} // namespace platform
