// The registry calls, over one embedded store.
//
// Results are error codes (ERROR_SUCCESS, ERROR_FILE_NOT_FOUND for a missing key or value, ERROR_MORE_DATA, …). Key and
// value names compare case-insensitively; a trailing "\" of a sub-key path is ignored.
#pragma once

#include "windef.h"

using LSTATUS = LONG;
using REGSAM = DWORD;

#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000001))))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000002))))

#define KEY_QUERY_VALUE 0x0001
#define KEY_SET_VALUE 0x0002
#define KEY_READ 0x20019
#define KEY_WRITE 0x20006
#define REG_OPTION_NON_VOLATILE 0
#define REG_CREATED_NEW_KEY 1
#define REG_OPENED_EXISTING_KEY 2
#define REG_NONE 0
#define REG_SZ 1
#define REG_BINARY 3
#define REG_DWORD 4

LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD options, REGSAM access, HKEY* result);
LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD reserved, LPWSTR keyClass, DWORD options, REGSAM access,
                        struct SECURITY_ATTRIBUTES* attributes, HKEY* result, LPDWORD disposition);
/// Opens or creates a key for reading and writing.
LSTATUS RegCreateKeyW(HKEY key, LPCWSTR subKey, HKEY* result);
LSTATUS RegQueryValueExW(HKEY key, LPCWSTR valueName, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size);
LSTATUS RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD reserved, DWORD type, const BYTE* data, DWORD size);
LSTATUS RegDeleteValueW(HKEY key, LPCWSTR valueName);
LSTATUS RegDeleteTreeW(HKEY key, LPCWSTR subKey);
LSTATUS RegCloseKey(HKEY key);
