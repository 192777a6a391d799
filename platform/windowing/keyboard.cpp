// The keyboard's state, key messages, and characters.
#include "platform/base/clock.h"
#include "platform/base/fault_points.h"
#include "platform/windowing/input_events.h"
#include "platform/windowing/input_state.h"
#include "platform/windowing/message_queue.h"
#include "platform/windowing/mnemonic_key.h"
#include "platform/windowing/window.h"

#include <cstring>
#include <algorithm>
#include <type_traits>

namespace platform
{
namespace
{

constexpr BYTE kDown = 0x80;
constexpr BYTE kToggled = 0x01;
// Bits of a key message's lParam.
constexpr LPARAM kExtended = 1 << 24;
constexpr LPARAM kContext = 1 << 29; // Alt is down
constexpr LPARAM kWasDown = 1 << 30;
constexpr LPARAM kReleased = static_cast<LPARAM>(1U << 31);

struct Keyboard
{
    BYTE keys[256] = {};
    screen::Event current; ///< the key message that was taken last
};

Keyboard& State()
{
    static Keyboard& state = *new Keyboard;
    return state;
}

bool IsDown(BYTE virtualKey)
{
    return (State().keys[virtualKey] & kDown) != 0;
}

void SetDown(BYTE virtualKey, bool down)
{
    BYTE& key = State().keys[virtualKey];
    if (down && (key & kDown) == 0)
        key ^= kToggled;
    key = static_cast<BYTE>(down ? key | kDown : key & ~kDown);
}

struct SidedKey
{
    BYTE left;
    BYTE right;
    BYTE either;
};

constexpr SidedKey kSidedKeys[] = {
    {VK_LSHIFT, VK_RSHIFT, VK_SHIFT},
    {VK_LCONTROL, VK_RCONTROL, VK_CONTROL},
    {VK_LMENU, VK_RMENU, VK_MENU},
};

/// Alt without Control makes "system" keys; so do Alt itself and F10, alone.
bool IsSystemKey(BYTE virtualKey, bool down)
{
    if (virtualKey == VK_F10)
        return !IsDown(VK_CONTROL);
    const bool alt = IsDown(VK_MENU) || (virtualKey == VK_MENU && down);
    return alt && !IsDown(VK_CONTROL);
}

/// What the key types; Control makes control characters of letters and Backspace, as it does on Windows.
std::size_t TextOf(const screen::Event& key, char16_t* text)
{
    if (key.virtualKey == VK_BACK && IsDown(VK_CONTROL))
    {
        text[0] = u'\x7F';
        return 1;
    }
    if (IsDown(VK_CONTROL) && !IsDown(VK_MENU) && key.virtualKey >= 'A' && key.virtualKey <= 'Z')
    {
        text[0] = static_cast<char16_t>(key.virtualKey - 'A' + 1);
        return 1;
    }
    if (key.text[0] != 0)
    {
        const std::size_t length = std::char_traits<char16_t>::length(key.text);
        std::copy_n(key.text, length, text);
        return length;
    }
    switch (key.virtualKey)
    {
    case VK_BACK:
    case VK_TAB:
    case VK_RETURN:
    case VK_ESCAPE:
    case VK_SPACE:
        text[0] = key.virtualKey;
        return 1;
    default:
        return 0;
    }
}

void SyncModifier(const SidedKey& key, bool down)
{
    if (down != IsDown(key.either))
    {
        // Pressed or released while another program had the keyboard.
        SetDown(key.either, down);
        SetDown(key.left, down);
        SetDown(key.right, false);
    }
}

} // namespace

void NoteModifiers(unsigned modifiers)
{
    SyncModifier(kSidedKeys[0], (modifiers & screen::kShift) != 0);
    SyncModifier(kSidedKeys[1], (modifiers & screen::kControl) != 0);
    SyncModifier(kSidedKeys[2], (modifiers & screen::kAlt) != 0);
}

void NoteKeyboardLost()
{
    const auto isModifier = [](int key)
    { return (key >= VK_SHIFT && key <= VK_MENU) || (key >= VK_LSHIFT && key <= VK_RMENU); };
    for (int key = VK_BACK; key < 256; ++key) // those before are the mouse's
        if (!isModifier(key))
            SetDown(static_cast<BYTE>(key), false);
}

void NoteKey(BYTE virtualKey, bool down)
{
    SetDown(virtualKey, down);
    for (const SidedKey& sided : kSidedKeys)
    {
        if (virtualKey == sided.either)
        {
            SetDown(sided.left, down);
            SetDown(sided.right, IsDown(sided.right) && down);
        }
        else if (virtualKey == sided.left || virtualKey == sided.right)
        {
            SetDown(sided.either, IsDown(sided.left) || IsDown(sided.right));
        }
    }
}

WPARAM MouseKeys()
{
    struct Flag
    {
        BYTE key;
        WPARAM flag;
    };
    constexpr Flag kFlags[] = {{VK_LBUTTON, MK_LBUTTON},
                               {VK_RBUTTON, MK_RBUTTON},
                               {VK_MBUTTON, MK_MBUTTON},
                               {VK_SHIFT, MK_SHIFT},
                               {VK_CONTROL, MK_CONTROL}};
    WPARAM keys = 0;
    for (const Flag& flag : kFlags)
        keys |= IsDown(flag.key) ? flag.flag : 0;
    return keys;
}

void MakeKeyMessage(const screen::Event& event, MSG& message)
{
    const bool down = event.type == screen::EventType::KeyDown;
    const bool system = IsSystemKey(event.virtualKey, down);
    message.message = down ? (system ? WM_SYSKEYDOWN : WM_KEYDOWN) : (system ? WM_SYSKEYUP : WM_KEYUP);
    message.wParam = event.virtualKey;
    message.lParam = 1 | (static_cast<LPARAM>(event.scanCode) << 16);
    message.lParam |= event.extended ? kExtended : 0;
    message.lParam |= system && (IsDown(VK_MENU) || event.virtualKey == VK_MENU) ? kContext : 0;
    message.lParam |= !down || event.repeat || IsDown(event.virtualKey) ? kWasDown : 0;
    message.lParam |= down ? 0 : kReleased;
}

void CommitKey(const screen::Event& event)
{
    NoteKey(event.virtualKey, event.type == screen::EventType::KeyDown);
    State().current = event;
}

WCHAR LatinLetterOf(const MSG& character)
{
    const screen::Event& key = State().current;
    const bool typed = key.type == screen::EventType::KeyDown && key.text[0] == character.wParam;
    const bool letter = key.virtualKey >= 'A' && key.virtualKey <= 'Z';
    const bool latin = character.wParam < 0x250; // what follows are other scripts
    return typed && letter && !latin ? key.virtualKey : WCHAR{0};
}

} // namespace platform

using namespace platform;

BOOL TranslateMessage(const MSG* message)
{
    const screen::Event& key = State().current;
    const bool isPress = message != nullptr && (message->message == WM_KEYDOWN || message->message == WM_SYSKEYDOWN);
    if (!isPress)
        return message != nullptr && (message->message == WM_KEYUP || message->message == WM_SYSKEYUP);
    if (key.type == screen::EventType::KeyDown && key.virtualKey == message->wParam)
    {
        char16_t text[std::extent_v<decltype(screen::Event::text)>] = {};
        const std::size_t length = TextOf(key, text);
        for (std::size_t i = 0; i < length; ++i)
        {
            PostMessageW(message->hwnd, message->message == WM_KEYDOWN ? WM_CHAR : WM_SYSCHAR, text[i],
                         message->lParam);
        }
    }
    return TRUE;
}

SHORT GetAsyncKeyState(int virtualKey)
{
    // What the display has told so far: nothing is asked for, and what waits in the queue is a key's moment away.
    return static_cast<SHORT>(GetKeyState(virtualKey) & 0x8000);
}

SHORT GetKeyState(int virtualKey)
{
    const BYTE key = State().keys[virtualKey & 0xFF];
    return static_cast<SHORT>(((key & kDown) != 0 ? 0xFF80 : 0) | (key & kToggled));
}

BOOL GetKeyboardState(BYTE* state)
{
    if (FaultPoint("GetKeyboardState") || state == nullptr)
        return Fail(ERROR_INVALID_PARAMETER, FALSE);
    std::memcpy(state, State().keys, sizeof(State().keys));
    return TRUE;
}

void keybd_event(BYTE virtualKey, BYTE scan, DWORD flags, ULONG_PTR)
{
    screen::Event event;
    event.type = (flags & KEYEVENTF_KEYUP) != 0 ? screen::EventType::KeyUp : screen::EventType::KeyDown;
    event.virtualKey = virtualKey;
    event.scanCode = scan;
    event.extended = (flags & KEYEVENTF_EXTENDEDKEY) != 0;
    event.time = NowMs();
    event.modifiers = kOwnModifiers;
    QueueInput(event);
}
