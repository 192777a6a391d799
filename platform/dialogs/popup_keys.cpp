// The rules of popup_keys.h.
#include "platform/dialogs/popup_keys.h"

#include "platform/dialogs/mnemonic.h"

namespace platform
{

namespace
{

constexpr LPARAM kWasDown = 1 << 30; ///< bit of a key message's lParam: the key repeats

enum class Rank : std::uint8_t
{
    None,
    First, ///< the text begins with the letter
    Marked,
};

Rank RankOf(const MenuItem& item, char16_t letter)
{
    if (item.IsSeparator() || item.text.empty())
        return Rank::None;
    const std::u16string_view text = ItemText(item.text);
    if (const char16_t marked = MarkedLetter(text))
        return UpperCaseOf(marked) == letter ? Rank::Marked : Rank::None;
    return !text.empty() && UpperCaseOf(text.front()) == letter ? Rank::First : Rank::None;
}

LetterMatch FindRank(std::span<const MenuItem> items, int from, char16_t letter, Rank rank)
{
    LetterMatch match;
    const int count = static_cast<int>(items.size());
    for (int i = 1; i <= count; ++i)
    {
        const int item = (from + i + count) % count;
        if (RankOf(items[static_cast<std::size_t>(item)], letter) != rank)
            continue;
        if (match.item >= 0)
            return {match.item, false};
        match = {item, true};
    }
    return match;
}

} // namespace

PopupKey MeaningOfKey(UINT message, WPARAM key, LPARAM flags)
{
    // The menu key opens a menu when it is released, so it closes one then, too.
    if (message == WM_KEYUP)
        return key == VK_APPS ? PopupKey::End : PopupKey::Nothing;
    if (message != WM_KEYDOWN && message != WM_SYSKEYDOWN)
        return PopupKey::Nothing;
    switch (key)
    {
    case VK_DOWN:
        return PopupKey::Next;
    case VK_UP:
        return PopupKey::Previous;
    case VK_HOME:
    case VK_PRIOR:
        return PopupKey::First;
    case VK_END:
    case VK_NEXT:
        return PopupKey::Last;
    case VK_RIGHT:
        return PopupKey::OpenSubMenu;
    case VK_LEFT:
        return PopupKey::CloseSubMenu;
    case VK_RETURN:
    case VK_SPACE:
        return PopupKey::Choose;
    case VK_ESCAPE:
        return PopupKey::LeaveLevel;
    case VK_MENU:
    case VK_LMENU:
    case VK_RMENU:
    case VK_F10:
        // Held down, Shift+F10 would close at once the menu that it has opened.
        return (flags & kWasDown) == 0 ? PopupKey::End : PopupKey::Nothing;
    default:
        return PopupKey::Nothing;
    }
}

int NextItem(std::span<const MenuItem> items, int from, int step)
{
    const int count = static_cast<int>(items.size());
    int item = from < 0 && step < 0 ? 0 : from;
    for (int tried = 0; tried < count; ++tried)
    {
        item = (item + step + count) % count;
        if (!items[static_cast<std::size_t>(item)].IsSeparator())
            return item;
    }
    return -1;
}

LetterMatch FindLetter(std::span<const MenuItem> items, int from, char16_t letter)
{
    const char16_t upper = UpperCaseOf(letter);
    const LetterMatch marked = FindRank(items, from, upper, Rank::Marked);
    return marked.item >= 0 ? marked : FindRank(items, from, upper, Rank::First);
}

std::u16string_view ItemText(std::u16string_view text)
{
    return text.substr(0, text.find(u'\t'));
}

std::u16string_view ItemShortcut(std::u16string_view text)
{
    const std::size_t tab = text.find(u'\t');
    return tab < text.size() ? text.substr(tab + 1) : std::u16string_view();
}

} // namespace platform
