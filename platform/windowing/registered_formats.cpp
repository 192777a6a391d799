// Names of clipboard formats as numbers.
#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"
#include "platform/base/text.h"

#include "windows.h"

#include <algorithm>
#include <string>
#include <vector>

namespace
{

// Registered formats start here, as atoms of strings do.
constexpr UINT kFirstFormat = 0xC000;

std::vector<std::u16string>& Names()
{
    static auto& names = *new std::vector<std::u16string>;
    return names;
}

} // namespace

UINT RegisterClipboardFormatW(LPCWSTR name)
{
    if (platform::FaultPoint("RegisterClipboardFormatW") || name == nullptr || name[0] == 0)
        return platform::Fail<UINT>(ERROR_INVALID_PARAMETER, 0);
    auto& names = Names();
    const std::u16string key = platform::UpperCase(name);
    for (std::size_t i = 0; i < names.size(); ++i)
        if (platform::UpperCase(names[i]) == key)
            return kFirstFormat + static_cast<UINT>(i);
    names.emplace_back(name);
    return kFirstFormat + static_cast<UINT>(names.size() - 1);
}

int GetClipboardFormatNameW(UINT format, LPWSTR name, int capacity)
{
    const auto& names = Names();
    if (platform::FaultPoint("GetClipboardFormatNameW") || name == nullptr || capacity <= 0 || format < kFirstFormat ||
        format - kFirstFormat >= names.size())
        return platform::Fail(ERROR_INVALID_PARAMETER, 0);
    const std::u16string& known = names[format - kFirstFormat];
    const std::size_t length = std::min(known.size(), static_cast<std::size_t>(capacity) - 1);
    std::copy_n(known.begin(), length, name);
    name[length] = 0;
    return static_cast<int>(length);
}
