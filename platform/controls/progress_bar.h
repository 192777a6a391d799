// The progress bar control ("msctls_progress32"): how much of something is done.
//
// Messages: PBM_SETRANGE32, PBM_SETPOS, PBM_GETPOS. It is filled from the left with the colour of what is selected. Not
// implemented: steps, marquee, states, vertical bars, colours of one's own.
#pragma once

#include "platform/controls/control_object.h"

namespace platform
{

class ProgressBar final : public ControlObject
{
public:
    using ControlObject::ControlObject;

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        return Route<ProgressBar>(window, message, wParam, lParam);
    }

private:
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
    LRESULT SetPosition(int position);
    void OnPaint();

    int m_low = 0;
    int m_high = 100;
    int m_position = 0;
};

} // namespace platform
