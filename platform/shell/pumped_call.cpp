// Dispatching messages while something else is waited for.
#include "platform/shell/pumped_call.h"

#include "windows.h"

#include <optional>

namespace platform
{

void PumpUntil(const std::function<bool()>& done, const MessageFilterHook& hook)
{
    std::optional<int> exitCode;
    while (!done())
    {
        MSG message;
        if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        {
            WaitForMessage();
            continue;
        }
        const bool kept = hook && hook(message);
        if (message.message == WM_QUIT)
        {
            exitCode = static_cast<int>(message.wParam);
        }
        else if (!kept)
        {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    if (exitCode)
        PostQuitMessage(*exitCode);
}

} // namespace platform
