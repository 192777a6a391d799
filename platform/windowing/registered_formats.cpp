// Names of clipboard formats as numbers.
#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"
#include "platform/base/text.h"

#include "windows.h"

#include <string>
#include <vector>

namespace
{

// Registered formats start here, as atoms of strings do.
constexpr UINT kFirstFormat = 0xC000;

} // namespace

UINT RegisterClipboardFormatW(LPCWSTR name)
{
    if (platform::FaultPoint("RegisterClipboardFormatW") || name == nullptr || name[0] == 0)
        return platform::Fail<UINT>(ERROR_INVALID_PARAMETER, 0);
    static auto& names = *new std::vector<std::u16string>;
    const std::u16string key = platform::UpperCase(name);
    for (std::size_t i = 0; i < names.size(); ++i)
        if (names[i] == key)
            return kFirstFormat + static_cast<UINT>(i);
    names.push_back(key);
    return kFirstFormat + static_cast<UINT>(names.size() - 1);
}
