// Shell string helpers.
#pragma once

#include "shlobj.h"

/// Converts and releases `name`; *text is freed with CoTaskMemFree.
HRESULT StrRetToStrW(STRRET* name, PCUITEMID_CHILD item, LPWSTR* text);
/// Copies a text; *copy is freed with CoTaskMemFree.
HRESULT SHStrDupW(LPCWSTR text, LPWSTR* copy);
/// The part of a path behind its last separator, within `path`.
LPWSTR PathFindFileNameW(LPCWSTR path);
