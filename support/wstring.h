// Text as the Windows API takes it: UTF-16 code units.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

using WString = std::basic_string<WCHAR>;
using WStringView = std::basic_string_view<WCHAR>;
