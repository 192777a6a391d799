// Decisions of the key table.
#include "commands/key_table.h"

namespace CustomMenu
{

namespace
{

bool Inside(const MenuItems& items, int index)
{
    return index >= 0 && index < static_cast<int>(items.size());
}

/// The next item in a direction that is no separator; where there is none, the current one again.
int NextSelectable(const MenuItems& items, int current, int step)
{
    int index = current + step;
    while (Inside(items, index) && items[index].Is(MIF_SEPARATOR))
        index += step;
    return Inside(items, index) ? index : current;
}

KeyDecision DecideMove(unsigned virtualKey, const MenuItems& items, int current)
{
    const int target = virtualKey == VK_UP ? current - 1 : current + 1;
    if (!Inside(items, current) || !Inside(items, target))
        return {};
    // The rebuild drops a separator that has come first, and with it the item moves up again.
    const bool separatorComesFirst = virtualKey == VK_DOWN && current == 0 && items[target].Is(MIF_SEPARATOR);
    return {KeyCommand::MoveItem, target, current, separatorComesFirst ? 0 : target};
}

KeyDecision DecideReturn(const MenuItems& items, int current)
{
    if (!Inside(items, current))
        return {};
    return {items[current].Is(MIF_FOLDER) ? KeyCommand::OpenSubmenu : KeyCommand::Launch, current};
}

KeyDecision DecideClipboard(unsigned virtualKey, const MenuItems& items, int current)
{
    if (virtualKey == 'V')
        return {KeyCommand::Paste, current};
    if (!Inside(items, current) || items[current].Is(MIF_PLACEHOLDER))
        return {};
    if (virtualKey == 'C')
        return {KeyCommand::Copy, current};
    return items[current].Is(MIF_PROTECTED) ? KeyDecision{} : KeyDecision{KeyCommand::Cut, current};
}

KeyDecision DecidePlainKey(const KeyPress& key, const MenuItems& items, int current, std::size_t levels)
{
    switch (key.virtualKey)
    {
    case VK_UP:
        return {KeyCommand::Select, NextSelectable(items, current, -1)};
    case VK_DOWN:
        return {KeyCommand::Select, NextSelectable(items, current, 1)};
    case VK_ESCAPE:
        return {levels > 0 ? KeyCommand::CloseDeepest : KeyCommand::None};
    case VK_LEFT:
        return {levels > 1 ? KeyCommand::CloseDeepest : KeyCommand::None};
    case VK_RIGHT:
        if (Inside(items, current) && items[current].Is(MIF_FOLDER))
            return {KeyCommand::OpenSubmenu, current};
        return {};
    case VK_RETURN:
        return DecideReturn(items, current);
    case VK_INSERT:
        return {KeyCommand::InsertShortcut, Inside(items, current) ? current : static_cast<int>(items.size())};
    case VK_DELETE:
        if (Inside(items, current) && !items[current].Is(MIF_PROTECTED))
            return {KeyCommand::DeleteFiles, current};
        return {};
    case 'S':
        return {KeyCommand::InsertSeparator, current};
    case 'C':
    case 'X':
    case 'V':
        return key.control ? DecideClipboard(key.virtualKey, items, current) : KeyDecision{};
    default:
        return {};
    }
}

} // namespace

KeyDecision DecideKey(const KeyPress& key, const MenuItems& items, int current, std::size_t levels)
{
    if (!key.shift)
        return DecidePlainKey(key, items, current, levels);
    const bool moves = key.virtualKey == VK_UP || key.virtualKey == VK_DOWN;
    return moves ? DecideMove(key.virtualKey, items, current) : KeyDecision{};
}

} // namespace CustomMenu
