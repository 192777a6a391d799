// The calls that a drag makes to the drop targets under it, in the order that they rely on.
#pragma once

#include "platform/ole/com_object.h"
#include "platform/screen/drags.h"

#include "ole2.h"

namespace platform
{

inline constexpr DWORD kDropEffects = DROPEFFECT_COPY | DROPEFFECT_MOVE | DROPEFFECT_LINK;
/// How often a target is called while the drag over it rests, in milliseconds.
inline constexpr UINT kRestPeriod = 50;

/// Where drops can go.
class DropPlaces
{
public:
    virtual ~DropPlaces() = default;
    /// The window with a drop target at a point of the screen, in this top-level window of the display; null for none.
    /// Asks the windows.
    virtual HWND WindowAt(screen::NativeWindow native, POINT point) = 0;
    /// The target registered for a window; null for none, and for no window.
    virtual ComReference<IDropTarget> TargetOf(HWND window) = 0;
};

/// One moment of a drag.
struct DragMoment
{
    DWORD keys = 0;    ///< MK_ flags
    POINT point{};     ///< screen
    DWORD allowed = 0; ///< DROPEFFECT_ bits
};

/// The target that a drag is over. Each DragEnter is followed by one DragLeave or one Drop, whatever becomes of the
/// window and of its registration meanwhile; a target that refuses to be entered gets neither, and no other call.
class DropSite
{
public:
    explicit DropSite(DropPlaces& places) : m_places(places) {}

    /// DragOver, or DragEnter and DragOver for another target than before, which is left first. What a drop would do.
    DWORD Over(HWND window, IDataObject& data, const DragMoment& moment);
    void Leave();
    /// What was done. The site is left.
    DWORD Drop(IDataObject& data, const DragMoment& moment);

private:
    bool IsCurrent() const { return m_target && m_places.TargetOf(m_window).Get() == m_target.Get(); }
    bool Enter(HWND window, IDataObject& data, const DragMoment& moment);

    DropPlaces& m_places;
    HWND m_window = nullptr;
    ComReference<IDropTarget> m_target;
    bool m_entered = false;
};

/// The one thing that a target would do when it names several: what the pointer shows and other programs are told.
screen::DragActions LikelyAction(DWORD effect);
/// What has been done, where several things are named: what leaves what was dragged alone, if that is among them.
screen::DragActions DoneAction(DWORD effect);

} // namespace platform
