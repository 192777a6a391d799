// Texts of the program's resources.
#pragma once

#include "support/wstring.h"

/// String resource `id` of a module; empty when there is none.
inline WString ResourceText(HINSTANCE instance, UINT id)
{
    // With no capacity the call hands out the place of the text, which is not terminated.
    LPCWSTR text = nullptr;
    const int length = LoadStringW(instance, id, reinterpret_cast<LPWSTR>(&text), 0);
    return length > 0 ? WString(text, static_cast<std::size_t>(length)) : WString();
}
