// Shell file information.
#pragma once

#include "windows.h"

struct SHFILEINFOW
{
    HICON hIcon; ///< the caller destroys it
    int iIcon;   ///< system image list index; with SHGFI_ADDOVERLAYS the overlay index in the high byte
    DWORD dwAttributes;
    WCHAR szDisplayName[MAX_PATH];
    WCHAR szTypeName[80];
};

#define SHGFI_LARGEICON 0x000000000
#define SHGFI_SMALLICON 0x000000001
#define SHGFI_PIDL 0x000000008
#define SHGFI_ADDOVERLAYS 0x000000020
#define SHGFI_ICON 0x000000100
#define SHGFI_TYPENAME 0x000000400
#define SHGFI_SYSICONINDEX 0x000004000

/// Information on an item; with SHGFI_SYSICONINDEX the result is the system image list of that size (never freed by
/// the caller), 0 on failure.
DWORD_PTR SHGetFileInfoW(LPCWSTR path, DWORD attributes, SHFILEINFOW* info, UINT size, UINT flags);
