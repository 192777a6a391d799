// The order of calls to drop targets.
#include "platform/ole/drop_site.h"

#include <utility>

namespace platform
{
namespace
{

POINTL PointOf(const DragMoment& moment)
{
    return {moment.point.x, moment.point.y};
}

screen::DragActions FirstOf(DWORD effect, DWORD first, DWORD second)
{
    const DWORD wanted[] = {first, second, DROPEFFECT_LINK};
    for (const DWORD bit : wanted)
        if ((effect & bit) != 0)
            return bit;
    return 0;
}

} // namespace

screen::DragActions LikelyAction(DWORD effect)
{
    return FirstOf(effect, DROPEFFECT_MOVE, DROPEFFECT_COPY);
}

screen::DragActions DoneAction(DWORD effect)
{
    return FirstOf(effect, DROPEFFECT_COPY, DROPEFFECT_MOVE);
}

bool DropSite::Enter(HWND window, IDataObject& data, const DragMoment& moment)
{
    Leave();
    m_target = m_places.TargetOf(window);
    if (!m_target)
        return false;
    m_window = window;
    DWORD effect = moment.allowed;
    m_entered = SUCCEEDED(m_target->DragEnter(&data, moment.keys, PointOf(moment), &effect));
    return m_entered;
}

DWORD DropSite::Over(HWND window, IDataObject& data, const DragMoment& moment)
{
    const bool same = window != nullptr && window == m_window && IsCurrent();
    if (!same)
        Enter(window, data, moment);
    if (!m_entered)
        return DROPEFFECT_NONE;
    DWORD effect = moment.allowed;
    const bool current = IsCurrent(); // entering may have revoked it
    if (current && FAILED(m_target->DragOver(moment.keys, PointOf(moment), &effect)))
        effect = DROPEFFECT_NONE;
    if (current && IsCurrent())
        return effect & moment.allowed;
    Leave();
    return DROPEFFECT_NONE;
}

void DropSite::Leave()
{
    const ComReference<IDropTarget> target = std::exchange(m_target, {});
    m_window = nullptr;
    if (std::exchange(m_entered, false))
        target->DragLeave();
}

DWORD DropSite::Drop(IDataObject& data, const DragMoment& moment)
{
    if (!m_entered || !IsCurrent())
    {
        Leave();
        return DROPEFFECT_NONE;
    }
    const ComReference<IDropTarget> target = std::exchange(m_target, {});
    m_window = nullptr;
    m_entered = false;
    DWORD effect = moment.allowed;
    const HRESULT dropped = target->Drop(&data, moment.keys, PointOf(moment), &effect);
    return SUCCEEDED(dropped) ? effect & moment.allowed : DROPEFFECT_NONE;
}

} // namespace platform
