// Names and text of keys, by xkbcommon.
#include "platform/keyboard/key_translator.h"

#include "platform/base/text.h"

#include "windows.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace platform
{
namespace
{

/// Keysyms that follow one another as their virtual keys do.
struct NamedKeys
{
    xkb_keysym_t first;
    BYTE code;
    bool extended = false;
    unsigned count = 1;
};

constexpr NamedKeys kNamedKeys[] = {
    {XKB_KEY_a, 'A', false, 26},
    {XKB_KEY_A, 'A', false, 26},
    {XKB_KEY_0, '0', false, 10},
    {XKB_KEY_F1, VK_F1, false, 24},
    {XKB_KEY_BackSpace, VK_BACK},
    {XKB_KEY_Tab, VK_TAB},
    {XKB_KEY_ISO_Left_Tab, VK_TAB},
    {XKB_KEY_Return, VK_RETURN},
    {XKB_KEY_Escape, VK_ESCAPE},
    {XKB_KEY_space, VK_SPACE},
    {XKB_KEY_Home, VK_HOME, true, 5}, // to Down
    {XKB_KEY_Prior, VK_PRIOR, true, 3},
    {XKB_KEY_Insert, VK_INSERT, true},
    {XKB_KEY_Delete, VK_DELETE, true},
    {XKB_KEY_Menu, VK_APPS, true},
    {XKB_KEY_Shift_L, VK_SHIFT},
    {XKB_KEY_Shift_R, VK_SHIFT},
    {XKB_KEY_Control_L, VK_CONTROL},
    {XKB_KEY_Control_R, VK_CONTROL, true},
    {XKB_KEY_Alt_L, VK_MENU},
    {XKB_KEY_Alt_R, VK_MENU, true},
    {XKB_KEY_Meta_L, VK_MENU},
    {XKB_KEY_Meta_R, VK_MENU, true},
    {XKB_KEY_Super_L, VK_LWIN, true, 2},
    {XKB_KEY_Caps_Lock, 0x14},      // VK_CAPITAL
    {XKB_KEY_Num_Lock, 0x90, true}, // VK_NUMLOCK
    // The number pad, first as it is without Num Lock.
    {XKB_KEY_KP_Home, VK_HOME, false, 5},
    {XKB_KEY_KP_Prior, VK_PRIOR, false, 3},
    {XKB_KEY_KP_Begin, 0x0C}, // VK_CLEAR
    {XKB_KEY_KP_Insert, VK_INSERT},
    {XKB_KEY_KP_Delete, VK_DELETE},
    {XKB_KEY_KP_0, VK_NUMPAD0, false, 10},
    {XKB_KEY_KP_Multiply, 0x6A, false, 5}, // VK_MULTIPLY to VK_DECIMAL
    {XKB_KEY_KP_Divide, 0x6F, true},
    {XKB_KEY_KP_Enter, VK_RETURN, true},
    // Punctuation: VK_OEM_1 and so on.
    {XKB_KEY_semicolon, 0xBA},
    {XKB_KEY_colon, 0xBA},
    {XKB_KEY_equal, 0xBB},
    {XKB_KEY_plus, 0xBB},
    {XKB_KEY_comma, 0xBC, false, 4}, // to slash
    {XKB_KEY_grave, 0xC0},
    {XKB_KEY_bracketleft, 0xDB, false, 3},
    {XKB_KEY_apostrophe, 0xDE},
};

bool IsLetterOrDigit(BYTE code)
{
    return (code >= 'A' && code <= 'Z') || (code >= '0' && code <= '9');
}

/// The US layout's letter or digit at a place of the keyboard, 0 for other places.
BYTE LetterAtPlace(xkb_keycode_t keycode)
{
    struct Row
    {
        xkb_keycode_t first; ///< evdev's code + 8
        std::string_view keys;
    };
    constexpr Row kRows[] = {{10, "1234567890"}, {24, "QWERTYUIOP"}, {38, "ASDFGHJKL"}, {52, "ZXCVBNM"}};
    for (const Row& row : kRows)
        if (keycode >= row.first && keycode - row.first < row.keys.size())
            return static_cast<BYTE>(row.keys[keycode - row.first]);
    return 0;
}

std::string CharacterOf(xkb_keysym_t keysym)
{
    char text[8] = {};
    xkb_keysym_to_utf8(keysym, text, sizeof(text));
    // Windowing makes control characters, from virtual keys.
    return static_cast<unsigned char>(text[0]) < ' ' || text[0] == '\x7F' ? std::string() : text;
}

void StoreText(const std::string& utf8, char16_t (&text)[16])
{
    const std::u16string whole = Utf16FromUtf8(utf8);
    std::size_t length = std::min(whole.size(), std::size(text) - 1);
    const bool cutsPair = length > 0 && length < whole.size() && (whole[length - 1] & 0xFC00) == 0xD800;
    std::copy_n(whole.begin(), cutsPair ? length - 1 : length, text);
}

} // namespace

KeyTranslator::KeyTranslator(xkb_context* context, const char* locale)
{
    XkbComposeTable table(xkb_compose_table_new_from_locale(context, locale, XKB_COMPOSE_COMPILE_NO_FLAGS));
    if (table == nullptr)
        table.reset(xkb_compose_table_new_from_locale(context, "en_US.UTF-8", XKB_COMPOSE_COMPILE_NO_FLAGS));
    if (table != nullptr)
        m_compose.reset(xkb_compose_state_new(table.get(), XKB_COMPOSE_STATE_NO_FLAGS));
}

void KeyTranslator::SetLayout(XkbKeymap layout)
{
    m_state.reset(layout != nullptr ? xkb_state_new(layout.get()) : nullptr);
    m_layout = std::move(layout);
}

KeyMeaning KeyTranslator::Translate(xkb_keycode_t keycode, std::uint16_t state, bool pressed)
{
    KeyMeaning meaning;
    if (m_state == nullptr)
        return meaning;
    xkb_state_update_mask(m_state.get(), state & 0xFF, 0, 0, 0, 0, state >> 13 & 3);
    const xkb_keysym_t typed = xkb_state_key_get_one_sym(m_state.get(), keycode);
    // Num Lock decides which key of the number pad it is, not only what it types.
    const bool onPad = typed >= XKB_KEY_KP_Space && typed <= XKB_KEY_KP_Equal;
    const Name name = onPad ? NameOf(typed) : NameOfKey(keycode);
    meaning.virtualKey = name.code;
    meaning.extended = name.extended;
    if (pressed)
        StoreText(Compose(typed), meaning.text);
    return meaning;
}

KeyTranslator::Name KeyTranslator::NameOf(xkb_keysym_t keysym)
{
    for (const NamedKeys& keys : kNamedKeys)
        if (keysym - keys.first < keys.count)
            return {static_cast<BYTE>(keys.code + (keysym - keys.first)), keys.extended};
    return {};
}

/// The key's name on Windows: what it types in the active layout if that is Latin, else in the first layout in which it
/// is, else its place on the keyboard.
KeyTranslator::Name KeyTranslator::NameOfKey(xkb_keycode_t keycode) const
{
    const xkb_layout_index_t active = xkb_state_key_get_layout(m_state.get(), keycode);
    // Layouts whose digits need Shift (French) still have the digit keys.
    const Name shifted = NameOf(KeysymAt(keycode, active, 1));
    if (shifted.code >= '0' && shifted.code <= '9')
        return shifted;
    const Name plain = NameOf(KeysymAt(keycode, active, 0));
    if (plain.code != 0)
        return plain;
    for (xkb_layout_index_t other = 0; other < xkb_keymap_num_layouts_for_key(m_layout.get(), keycode); ++other)
    {
        const Name named = NameOf(KeysymAt(keycode, other, 0));
        if (IsLetterOrDigit(named.code))
            return named;
    }
    return {LetterAtPlace(keycode), false};
}

xkb_keysym_t KeyTranslator::KeysymAt(xkb_keycode_t keycode, xkb_layout_index_t layout, xkb_level_index_t level) const
{
    const xkb_keysym_t* keysyms = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(m_layout.get(), keycode, layout, level, &keysyms);
    return count > 0 ? keysyms[0] : XKB_KEY_NoSymbol;
}

/// What a press types now that a composition may be under way.
std::string KeyTranslator::Compose(xkb_keysym_t keysym)
{
    if (m_compose == nullptr)
        return CharacterOf(keysym);
    xkb_compose_state_feed(m_compose.get(), keysym);
    switch (xkb_compose_state_get_status(m_compose.get()))
    {
    case XKB_COMPOSE_COMPOSED:
    {
        char text[64] = {};
        xkb_compose_state_get_utf8(m_compose.get(), text, sizeof(text));
        return text;
    }
    case XKB_COMPOSE_NOTHING:
        return CharacterOf(keysym);
    default:
        return {}; // under way, or cancelled, which costs the key that did not fit
    }
}

} // namespace platform
