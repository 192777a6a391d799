// Asking, and remembering not to ask again.
#include "prompts/remembered_prompt.h"

#include "prompts/message_box.h"
#include "support/unique_handle.h"
#include "support/wstring.h"

#include <strsafe.h>

#include <cstdarg>
#include <memory>
#include <new>

namespace
{

constexpr DWORD kOwnFlags = 0xFF000000;

WString DecimalOf(UINT number)
{
    const std::string digits = std::to_string(number);
    return WString(digits.begin(), digits.end());
}

bool IsRecorded(LPCWSTR keyPath, const WString& name)
{
    UniqueRegistryKey key;
    return RegOpenKeyExW(HKEY_LOCAL_MACHINE, keyPath, 0, KEY_READ, key.Receive()) == ERROR_SUCCESS &&
           RegQueryValueExW(key.Get(), name.c_str(), nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

void Record(LPCWSTR keyPath, const WString& name)
{
    UniqueRegistryKey key;
    if (RegCreateKeyW(HKEY_LOCAL_MACHINE, keyPath, key.Receive()) == ERROR_SUCCESS)
        RegSetValueExW(key.Get(), name.c_str(), 0, REG_NONE, nullptr, 0);
}

} // namespace

int ShowRememberedPrompt(HWND owner, DWORD flags, LPCWSTR caption, HINSTANCE module, UINT text, LPCWSTR keyPath, ...)
{
    const WString name = DecimalOf(text);
    if (IsRecorded(keyPath, name))
        return IDOK;
    constexpr std::size_t kShown = 1024;
    constexpr int kFormat = 512;
    // The text as it is shown, behind it the text as it is stored.
    const std::unique_ptr<WCHAR[]> buffer(new (std::nothrow) WCHAR[2 * kShown]());
    if (buffer == nullptr || LoadStringW(module, text, &buffer[kShown], kFormat) == 0)
        return IDCANCEL;
    va_list arguments;
    va_start(arguments, keyPath);
    StringCchVPrintfW(buffer.get(), kShown, &buffer[kShown], arguments);
    va_end(arguments);
    const int answer = ShowMessageBox(owner, buffer.get(), caption, flags | MBX_DONTTELL, 0, nullptr);
    // −1, a box that could not be shown, has every bit.
    if ((static_cast<DWORD>(answer) & kOwnFlags) != MBX_DONTTELL)
        return answer;
    Record(keyPath, name);
    return answer & ~static_cast<int>(MBX_DONTTELL);
}
