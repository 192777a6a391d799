// The keyboard layout, asked of the server at the first key: groups, levels and the keysyms in them (XKB protocol).
#include "platform/screen/x11/keymap.h"

#include "platform/screen/x11/connection.h"
#include "platform/screen/x11/key_names.h"
#include "platform/screen/x11/xkb_protocol.h"

namespace platform::x11
{
namespace
{

struct LevelRule
{
    std::uint8_t modifiers;
    std::uint8_t level;
};

/// How modifiers choose a level (an XKB key type).
struct KeyType
{
    std::uint8_t modifiers = 0;
    std::vector<LevelRule> rules;

    std::size_t LevelFor(std::uint16_t state) const
    {
        for (const LevelRule& rule : rules)
            if (rule.modifiers == (state & modifiers))
                return rule.level;
        return 0;
    }
};

struct KeyGroups
{
    std::uint8_t groups = 0;
    std::uint8_t width = 0;
    std::uint8_t types[4] = {};
    std::vector<Keysym> keysyms; ///< width of them for each group
};

struct Keymap
{
    std::uint8_t firstKey = 0;
    std::vector<KeyType> types;
    std::vector<KeyGroups> keys;
};

std::optional<Keymap>& TheKeymap()
{
    static auto& keymap = *new std::optional<Keymap>;
    return keymap;
}

void ReadTypes(const xcb_xkb_get_map_reply_t& reply, const xcb_xkb_get_map_map_t& map, Keymap& keymap)
{
    auto type = xcb_xkb_get_map_map_types_rtrn_iterator(&reply, &map);
    for (; type.rem > 0; xcb_xkb_key_type_next(&type))
    {
        KeyType& made = keymap.types.emplace_back();
        made.modifiers = type.data->mods_mask;
        auto rule = xcb_xkb_key_type_map_iterator(type.data);
        for (; rule.rem > 0; xcb_xkb_kt_map_entry_next(&rule))
            if (rule.data->active != 0)
                made.rules.push_back({rule.data->mods_mask, rule.data->level});
    }
}

void ReadKeys(const xcb_xkb_get_map_reply_t& reply, const xcb_xkb_get_map_map_t& map, Keymap& keymap)
{
    auto key = xcb_xkb_get_map_map_syms_rtrn_iterator(&reply, &map);
    for (; key.rem > 0; xcb_xkb_key_sym_map_next(&key))
    {
        KeyGroups& made = keymap.keys.emplace_back();
        made.groups = key.data->groupInfo & 0x0F;
        made.width = key.data->width;
        std::copy(std::begin(key.data->kt_index), std::end(key.data->kt_index), made.types);
        const xcb_keysym_t* keysyms = xcb_xkb_key_sym_map_syms(key.data);
        made.keysyms.assign(keysyms, keysyms + xcb_xkb_key_sym_map_syms_length(key.data));
    }
}

/// Without XKB: one group of two levels, from the core protocol's table.
Keymap ReadCoreMap()
{
    Keymap keymap;
    const xcb_setup_t* setup = xcb_get_setup(TheConnection().Xcb());
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto reply = Collect(xcb_get_keyboard_mapping_reply,
                               xcb_get_keyboard_mapping(TheConnection().Xcb(), setup->min_keycode, count));
    keymap.firstKey = setup->min_keycode;
    keymap.types.push_back({XCB_MOD_MASK_SHIFT, {{XCB_MOD_MASK_SHIFT, 1}}});
    const xcb_keysym_t* keysyms = reply != nullptr ? xcb_get_keyboard_mapping_keysyms(reply.get()) : nullptr;
    for (int i = 0; keysyms != nullptr && reply->keysyms_per_keycode > 0 && i < count; ++i)
    {
        const xcb_keysym_t* key = keysyms + i * reply->keysyms_per_keycode;
        const Keysym shifted = reply->keysyms_per_keycode > 1 ? key[1] : 0;
        keymap.keys.push_back({1, 2, {}, {key[0], shifted != 0 ? shifted : key[0]}});
    }
    return keymap;
}

Keymap ReadKeymap()
{
    Connection& connection = TheConnection();
    if (connection.Extension(xcb_xkb_id) == nullptr)
        return ReadCoreMap();
    constexpr std::uint16_t kParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS;
    const auto reply = Collect(xcb_xkb_get_map_reply, xcb_xkb_get_map(connection.Xcb(), XCB_XKB_ID_USE_CORE_KBD, kParts,
                                                                      0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    if (reply == nullptr)
        return ReadCoreMap();
    Keymap keymap;
    keymap.firstKey = reply->firstKeySym;
    xcb_xkb_get_map_map_t map{};
    xcb_xkb_get_map_map_unpack(xcb_xkb_get_map_map(reply.get()), reply->nTypes, reply->nKeySyms, reply->nKeyActions,
                               reply->totalActions, reply->totalKeyBehaviors, reply->virtualMods,
                               reply->totalKeyExplicit, reply->totalModMapKeys, reply->totalVModMapKeys, reply->present,
                               &map);
    ReadTypes(*reply, map, keymap);
    ReadKeys(*reply, map, keymap);
    return keymap;
}

const KeyGroups* FindKey(std::uint8_t keycode)
{
    auto& keymap = TheKeymap();
    if (!keymap)
        keymap = ReadKeymap();
    const std::size_t index = static_cast<std::size_t>(keycode) - keymap->firstKey;
    return keycode >= keymap->firstKey && index < keymap->keys.size() ? &keymap->keys[index] : nullptr;
}

Keysym KeysymAt(const KeyGroups& key, std::size_t group, std::size_t level)
{
    const std::size_t index = group * key.width + std::min<std::size_t>(level, key.width > 0 ? key.width - 1U : 0);
    return index < key.keysyms.size() ? key.keysyms[index] : 0;
}

std::size_t LevelOf(const KeyGroups& key, std::size_t group, std::uint16_t state)
{
    const auto& types = TheKeymap()->types;
    const std::uint8_t type = key.types[group % 4];
    return type < types.size() ? types[type].LevelFor(state & 0xFF) : 0;
}

bool IsLetterOrDigit(BYTE virtualKey)
{
    return (virtualKey >= 'A' && virtualKey <= 'Z') || (virtualKey >= '0' && virtualKey <= '9');
}

/// The key's name on Windows: what it types in the active layout if that is Latin, else in the first layout in which it
/// is, else its place on the keyboard.
VirtualKey NameKey(const KeyGroups& key, std::size_t group, std::uint8_t keycode)
{
    // Layouts whose digits need Shift (French) still have the digit keys.
    const VirtualKey shifted = VirtualKeyOf(KeysymAt(key, group, 1));
    if (shifted.code >= '0' && shifted.code <= '9')
        return shifted;
    const VirtualKey active = VirtualKeyOf(KeysymAt(key, group, 0));
    if (active.code != 0)
        return active;
    for (std::size_t other = 0; other < key.groups; ++other)
    {
        const VirtualKey named = VirtualKeyOf(KeysymAt(key, other, 0));
        if (IsLetterOrDigit(named.code))
            return named;
    }
    return {VirtualKeyOfPlace(keycode), false};
}

void StoreCharacter(char32_t character, char16_t (&text)[4])
{
    if (character >= 0x10000)
    {
        text[0] = static_cast<char16_t>(0xD7C0 + (character >> 10));
        text[1] = static_cast<char16_t>(0xDC00 + (character & 0x3FF));
    }
    else
    {
        text[0] = static_cast<char16_t>(character);
    }
}

} // namespace

KeyMeaning TranslateKey(std::uint8_t keycode, std::uint16_t state)
{
    KeyMeaning meaning;
    const KeyGroups* key = FindKey(keycode);
    if (key == nullptr || key->groups == 0)
        return meaning;
    const std::size_t group = ((state >> 13) & 3U) % key->groups;
    const Keysym typed = KeysymAt(*key, group, LevelOf(*key, group, state));
    // Num Lock decides which key of the number pad it is, not only what it types.
    const VirtualKey name = IsKeypad(typed) ? VirtualKeyOf(typed) : NameKey(*key, group, keycode);
    meaning.virtualKey = name.code;
    meaning.extended = name.extended;
    StoreCharacter(CharacterOf(typed), meaning.text);
    return meaning;
}

void ForgetKeymap()
{
    TheKeymap().reset();
}

} // namespace platform::x11
