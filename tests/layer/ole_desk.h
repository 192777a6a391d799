// Windows that take drops, and write down what they are told.
#pragma once

#include "platform/ole/data_object.h"
#include "tests/layer/windowing_desk.h"

#include <string>

namespace ole_test
{

using Log = std::vector<std::string>;

/// Answers every call with what of `takes` is allowed. `during` may do anything in a call.
class Target final : public platform::ComObject<IDropTarget, IID_IDropTarget>
{
public:
    Target(Log& log, std::string name) : m_log(log), m_name(std::move(name)) {}

    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* entering, DWORD keyState, POINTL point, DWORD* effect) override
    {
        data = entering;
        *effect &= takes;
        return Note("Enter", keyState, point);
    }
    HRESULT STDMETHODCALLTYPE DragOver(DWORD keyState, POINTL point, DWORD* effect) override
    {
        *effect &= takes;
        return Note("Over", keyState, point);
    }
    HRESULT STDMETHODCALLTYPE DragLeave() override { return Note("Leave", keys, at); }
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* dropped, DWORD keyState, POINTL point, DWORD* effect) override
    {
        data = dropped;
        *effect &= takes;
        const HRESULT result = Note("Drop", keyState, point);
        if (atDrop)
            atDrop(effect);
        return result;
    }

    DWORD takes = DROPEFFECT_COPY | DROPEFFECT_MOVE | DROPEFFECT_LINK;
    std::string failing; ///< the call that fails
    IDataObject* data = nullptr;
    DWORD keys = 0;
    POINTL at{};
    LONG time = 0;
    DWORD messagePoint = 0;
    std::function<void(const std::string& call)> during;
    std::function<void(DWORD* effect)> atDrop;

private:
    HRESULT Note(const std::string& call, DWORD keyState, POINTL point)
    {
        m_log.push_back(m_name + "." + call);
        keys = keyState;
        at = point;
        time = GetMessageTime();
        messagePoint = GetMessagePos();
        if (during)
            during(call);
        return failing == call ? E_FAIL : S_OK;
    }

    Log& m_log;
    std::string m_name;
};

/// A test's reference.
template <typename T>
using Held = platform::ComReference<T>;

struct OleDesk : Desk
{
    ~OleDesk() override
    {
        platform::headless::EndOtherDrag();
        Pump();
        m_targets.clear();
        for (const HWND window : m_registered)
            RevokeDragDrop(window);
        platform::headless::Reset();
        EXPECT_EQ(platform::LiveShellObjects(), m_before) << "objects are still referenced";
    }

    Target& Register(HWND window, const std::string& name)
    {
        m_targets.push_back(Held<Target>::Adopt(new Target(m_log, name)));
        EXPECT_EQ(RegisterDragDrop(window, m_targets.back().Get()), S_OK);
        m_registered.push_back(window);
        return *m_targets.back().Get();
    }

    static void Rest(int milliseconds)
    {
        platform::AdvanceManualClock(static_cast<std::uint64_t>(milliseconds));
        Pump();
    }

    /// What was called since the last time.
    Log Take() { return std::exchange(m_log, {}); }

    Log m_log;
    std::vector<Held<Target>> m_targets;
    std::vector<HWND> m_registered;
    long m_before = platform::LiveShellObjects();
};

inline CLIPFORMAT Format(const char16_t* name)
{
    return static_cast<CLIPFORMAT>(RegisterClipboardFormatW(name));
}

} // namespace ole_test
