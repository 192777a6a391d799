// Formatting into a buffer of known size.
#pragma once

#include "winbase.h"

#include <cstdarg>

#define STRSAFE_E_INSUFFICIENT_BUFFER static_cast<HRESULT>(0x8007007A)
#define STRSAFE_E_INVALID_PARAMETER static_cast<HRESULT>(0x80070057)

/// The rules of wide printf: %s and %c take UTF-16, %hs UTF-8; "n" is not known. The text is always ended by 0 and,
/// with STRSAFE_E_INSUFFICIENT_BUFFER, cut to `capacity` − 1 characters.
HRESULT StringCchVPrintfW(LPWSTR text, SIZE_T capacity, LPCWSTR format, va_list arguments);
