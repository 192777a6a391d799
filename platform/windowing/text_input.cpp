// From a control's caret to the display's.
#include "platform/windowing/text_input.h"

#include "platform/windowing/window.h"

void platform::SetTextInput(HWND handle, const RECT& caret)
{
    const Window* window = FindObject<Window>(handle);
    if (window == nullptr || RootOf(*window).native == 0)
        return;
    const POINT origin = ClientOrigin(*window);
    const Window& root = RootOf(*window);
    screen::SetTextInput(root.native, Moved(caret, origin.x - root.rect.left, origin.y - root.rect.top));
}

void platform::EndTextInput()
{
    screen::SetTextInput(0, {});
}
