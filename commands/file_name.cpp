// The file-name rule.
#include "commands/file_name.h"

namespace CustomMenu
{

namespace
{

constexpr std::size_t kLongestName = 255;
constexpr WStringView kForbidden = TEXT("\\/:><?*|\"");

} // namespace

bool IsValidFileName(WStringView name)
{
    return !name.empty() && name.size() <= kLongestName && name.back() != TEXT('.') &&
           name.find_first_of(kForbidden) == WStringView::npos;
}

} // namespace CustomMenu
