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

/// Dialog units.
struct MessageBoxLayout
{
    SIZE client{};
    RECT picture{}; ///< empty when there is none
    RECT text{};
    RECT firstButton{};

    RECT ButtonRect(std::size_t index) const;
};

/// `text` and `picture` are the sizes of the broken text and of the icon (0 for none), in dialog units.
MessageBoxLayout LayOutMessageBox(SIZE text, SIZE picture, std::size_t buttons);

} // namespace platform
