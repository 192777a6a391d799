// What keys and letters do in a popup menu: rules over its items.
#pragma once

#include "platform/dialogs/menu.h"

#include <cstdint>
#include <span>

namespace platform
{

enum class PopupKey : std::uint8_t
{
    Nothing,
    Next,
    Previous,
    First,
    Last,
    OpenSubMenu,
    CloseSubMenu, ///< the deepest one; the first menu stays
    Choose,
    LeaveLevel, ///< closes the deepest menu, the first one too
    End,
};

/// `message` is a key message with its parameters.
PopupKey MeaningOfKey(UINT message, WPARAM key, LPARAM flags);

/// The next item in a direction (1 or −1) that is no separator, going round; with `from` −1 the first or last one. −1
/// when there is none.
int NextItem(std::span<const MenuItem> items, int from, int step);

struct LetterMatch
{
    int item = -1;
    bool only = false; ///< no other item answers to this letter
};

/// The item behind `from` that a typed letter means: one whose text marks it by '&', else one without a mark whose text
/// begins with it.
LetterMatch FindLetter(std::span<const MenuItem> items, int from, char16_t letter);

/// What stands before and behind the tab in an item's text.
std::u16string_view ItemText(std::u16string_view text);
std::u16string_view ItemShortcut(std::u16string_view text);

} // namespace platform
