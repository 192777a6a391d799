// What this program drags, as a state machine: from pointer, keys and the other side's answers to the calls of the drop
// source, of this program's drop targets, and of the screen. Knows no screen and no clock.
#pragma once

#include "platform/ole/drop_site.h"

namespace platform
{

/// What the machine asks and does besides.
class OutgoingDragPort : public DropPlaces
{
public:
    virtual HRESULT QueryContinue(bool escape, DWORD keys) = 0;
    virtual HRESULT GiveFeedback(DWORD effect) = 0;
    /// These as in platform/screen/drags.h.
    virtual screen::DragPlace Move(POINT point, screen::DragActions wanted) = 0;
    virtual screen::DragPlace Place() = 0;
    virtual void Show(screen::DragActions action) = 0;
    virtual bool DropOutside() = 0;
    /// Gives everything back that the drag holds of the display and of this program's input. Once.
    virtual void End() = 0;
};

/// Over this program's own windows their targets get the very data object, and the display is not asked; over others'
/// the screen does the talking. What happens within a call of source or target is seen when the call has returned.
class OutgoingDrag
{
public:
    struct Input
    {
        POINT point{};       ///< of the pointer, screen
        DWORD keys = 0;      ///< MK_ flags
        bool escape = false; ///< pressed since the last time
    };

    /// `keys`: as the drag begins; a drag by the right button asks what is to be done.
    OutgoingDrag(OutgoingDragPort& port, IDataObject& data, DWORD allowed, DWORD keys);

    /// How things are now; to be told whenever they may have changed, and first of all.
    void OnInput(const Input& input);
    /// The pointer rests: the target below is called again.
    void OnRest();
    void OnAnswered() { OnRest(); }
    void OnEnded();
    /// Ends the drag with nothing done, or the waiting for what another program does with what was dropped on it. So do
    /// Escape and a press on this program's windows.
    void Cancel() { Stop(DRAGDROP_S_CANCEL); }

    bool IsOver() const { return m_step == Step::Over; }
    /// As DoDragDrop returns them; once it is over.
    HRESULT Result() const { return m_result; }
    DWORD Effect() const { return m_effect; }

private:
    enum class Step : std::uint8_t
    {
        Dragging,
        Dropped, ///< on another program, which has not said yet what it has done
        Over,
    };

    void Handle(const Input& input);
    void HandleWhileDropped(const Input& input);
    void Track(POINT point, DWORD keys);
    void Look(const screen::DragPlace& place);
    void Feedback(screen::DragActions action);
    void Drop(DWORD keys);
    void DropHere(DWORD keys);
    void Stop(HRESULT result);
    void EndWith(HRESULT result, DWORD effect);
    void Release();
    screen::DragActions Wanted() const;
    DragMoment Moment() const { return {m_keys, m_point, m_allowed}; }

    OutgoingDragPort& m_port;
    IDataObject& m_data;
    DropSite m_site;
    DWORD m_allowed;
    bool m_asks;
    Step m_step = Step::Dragging;
    bool m_begun = false;
    bool m_busy = false;
    bool m_released = false; ///< End has been called
    POINT m_point{};
    DWORD m_keys;
    bool m_own = false;   ///< over a window of this program
    DWORD m_possible = 0; ///< what a drop there would do
    screen::DragActions m_shown = ~0U;
    HRESULT m_result = S_OK;
    DWORD m_effect = DROPEFFECT_NONE;
};

} // namespace platform
