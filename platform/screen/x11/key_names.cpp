// Keysyms, virtual keys and characters. Source of the keysyms' values: X11's keysymdef (X Protocol, appendix A).
#include "platform/screen/x11/key_names.h"

#include <algorithm>
#include <dlfcn.h>
#include <iterator>

namespace platform::x11
{
namespace
{

struct Entry
{
    Keysym keysym;
    BYTE code;
    bool extended;
};

constexpr Entry kNamedKeys[] = {
    {0xFE20, VK_TAB, false}, // ISO_Left_Tab
    {0xFF08, VK_BACK, false},
    {0xFF09, VK_TAB, false},
    {0xFF0D, VK_RETURN, false},
    {0xFF1B, VK_ESCAPE, false},
    {0xFF50, VK_HOME, true},
    {0xFF51, VK_LEFT, true},
    {0xFF52, VK_UP, true},
    {0xFF53, VK_RIGHT, true},
    {0xFF54, VK_DOWN, true},
    {0xFF55, VK_PRIOR, true},
    {0xFF56, VK_NEXT, true},
    {0xFF57, VK_END, true},
    {0xFF63, VK_INSERT, true},
    {0xFF67, VK_APPS, true},
    {0xFF7F, 0x90, true},      // Num_Lock, VK_NUMLOCK
    {0xFF8D, VK_RETURN, true}, // KP_Enter
    {0xFF95, VK_HOME, false},  // KP_Home and its neighbours: the number pad without Num Lock
    {0xFF96, VK_LEFT, false},
    {0xFF97, VK_UP, false},
    {0xFF98, VK_RIGHT, false},
    {0xFF99, VK_DOWN, false},
    {0xFF9A, VK_PRIOR, false},
    {0xFF9B, VK_NEXT, false},
    {0xFF9C, VK_END, false},
    {0xFF9D, 0x0C, false}, // KP_Begin, VK_CLEAR
    {0xFF9E, VK_INSERT, false},
    {0xFF9F, VK_DELETE, false},
    {0xFFAA, 0x6A, false}, // KP_Multiply
    {0xFFAB, 0x6B, false}, // KP_Add
    {0xFFAC, 0x6C, false}, // KP_Separator
    {0xFFAD, 0x6D, false}, // KP_Subtract
    {0xFFAE, 0x6E, false}, // KP_Decimal
    {0xFFAF, 0x6F, true},  // KP_Divide
    {0xFFE1, VK_SHIFT, false},
    {0xFFE2, VK_SHIFT, false},
    {0xFFE3, VK_CONTROL, false},
    {0xFFE4, VK_CONTROL, true},
    {0xFFE5, 0x14, false}, // Caps_Lock, VK_CAPITAL
    {0xFFE7, VK_MENU, false},
    {0xFFE8, VK_MENU, true},
    {0xFFE9, VK_MENU, false},
    {0xFFEA, VK_MENU, true},
    {0xFFEB, VK_LWIN, true},
    {0xFFEC, VK_RWIN, true},
    {0xFFFF, VK_DELETE, true},
    // Punctuation: the VK_OEM_ keys.
    {';', 0xBA, false},
    {':', 0xBA, false},
    {'=', 0xBB, false},
    {'+', 0xBB, false},
    {',', 0xBC, false},
    {'-', 0xBD, false},
    {'.', 0xBE, false},
    {'/', 0xBF, false},
    {'`', 0xC0, false},
    {'[', 0xDB, false},
    {'\\', 0xDC, false},
    {']', 0xDD, false},
    {'\'', 0xDE, false},
    {' ', VK_SPACE, false},
};

// The US layout's letters and digits by row, from the keycode of each row's first key (evdev code + 8).
struct Row
{
    std::uint8_t first;
    const char* keys;
};
constexpr Row kRows[] = {{10, "1234567890"}, {24, "QWERTYUIOP"}, {38, "ASDFGHJKL"}, {52, "ZXCVBNM"}};

constexpr Keysym kUnicode = 0x01000000; // a keysym of a character is this plus its code point

using KeysymToUtf32 = std::uint32_t (*)(std::uint32_t);

/// Characters of the older keysyms, script by script, as xkbcommon knows them. Loaded when such a key is first typed:
/// the Latin ones need no library.
char32_t OldKeysymCharacter(Keysym keysym)
{
    static const auto convert = []
    {
        void* library = dlopen("libxkbcommon.so.0", RTLD_NOW | RTLD_LOCAL);
        return library != nullptr ? reinterpret_cast<KeysymToUtf32>(dlsym(library, "xkb_keysym_to_utf32")) : nullptr;
    }();
    return convert != nullptr ? convert(keysym) : 0;
}

} // namespace

VirtualKey VirtualKeyOf(Keysym keysym)
{
    if (keysym >= 'a' && keysym <= 'z')
        return {static_cast<BYTE>(keysym - 'a' + 'A'), false};
    if ((keysym >= 'A' && keysym <= 'Z') || (keysym >= '0' && keysym <= '9'))
        return {static_cast<BYTE>(keysym), false};
    if (keysym >= 0xFFB0 && keysym <= 0xFFB9) // KP_0 to KP_9
        return {static_cast<BYTE>(VK_NUMPAD0 + keysym - 0xFFB0), false};
    if (keysym >= 0xFFBE && keysym <= 0xFFD5) // F1 to F24
        return {static_cast<BYTE>(VK_F1 + keysym - 0xFFBE), false};
    const auto* found = std::find_if(std::begin(kNamedKeys), std::end(kNamedKeys),
                                     [&](const Entry& entry) { return entry.keysym == keysym; });
    return found != std::end(kNamedKeys) ? VirtualKey{found->code, found->extended} : VirtualKey{};
}

BYTE VirtualKeyOfPlace(std::uint8_t keycode)
{
    for (const Row& row : kRows)
    {
        const std::size_t index = static_cast<std::size_t>(keycode) - row.first;
        if (keycode >= row.first && index < std::char_traits<char>::length(row.keys))
            return static_cast<BYTE>(row.keys[index]);
    }
    return 0;
}

char32_t CharacterOf(Keysym keysym)
{
    if ((keysym >= 0x20 && keysym <= 0x7E) || (keysym >= 0xA0 && keysym <= 0xFF))
        return keysym; // Latin-1
    if (keysym >= kUnicode + 0x100 && keysym <= kUnicode + 0x10FFFF)
        return keysym - kUnicode;
    if (keysym >= 0xFFAA && keysym <= 0xFFB9) // the number pad
        return keysym - 0xFF80;
    constexpr Keysym kFirstFunctionKey = 0xFD00;
    return keysym >= 0x100 && keysym < kFirstFunctionKey ? OldKeysymCharacter(keysym) : 0;
}

} // namespace platform::x11
