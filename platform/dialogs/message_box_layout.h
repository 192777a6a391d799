// What a message box of each kind offers, and where its parts go.
#pragma once

#include "windows.h"

#include <cstddef>
#include <span>

namespace platform
{

struct MessageBoxButton
{
    int id;
    LPCWSTR label; ///< an ampersand before the mnemonic
};

struct MessageBoxKind
{
    std::span<const MessageBoxButton> buttons;
    int cancel; ///< the answer that Escape and closing give; 0 when the box must be answered
};

/// The kind that a MessageBox type asks for; an unknown one has an OK button.
const MessageBoxKind& KindOfMessageBox(UINT type);

/// Client coordinates, pixels.
struct MessageBoxLayout
{
    SIZE client{};
    RECT picture{}; ///< empty when there is none
    RECT text{};
    RECT firstButton{};
    LONG buttonStep = 0; ///< from one button's left edge to the next one's

    RECT ButtonRect(std::size_t index) const;
};

/// Everything is measured in lines of the font, so that the box grows with it: `text` is the size of the broken text,
/// `widestLabel` of the widest button label, `line` the font's height, `picture` the picture's width and height, 0 for
/// none.
MessageBoxLayout LayOutMessageBox(SIZE text, LONG widestLabel, LONG line, std::size_t buttons, LONG picture);

} // namespace platform
