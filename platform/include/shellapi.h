// Shell file information, file operations, running verbs.
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

struct SHFILEOPSTRUCTW
{
    HWND hwnd;
    UINT wFunc;
    LPCWSTR pFrom; ///< full paths, each ended by 0, the list by one more
    LPCWSTR pTo;
    WORD fFlags;
    BOOL fAnyOperationsAborted;
    LPVOID hNameMappings;
    LPCWSTR lpszProgressTitle;
};

#define FO_DELETE 0x0003
#define FOF_ALLOWUNDO 0x0040 ///< into the trash where there is one
#define FOF_NORECURSION 0x1000
#define FOF_NO_CONNECTED_ELEMENTS 0x2000

/// Returns when the work is done or given up: 0, or an error that the user has been told.
int SHFileOperationW(SHFILEOPSTRUCTW* operation);

struct SHELLEXECUTEINFOW
{
    DWORD cbSize;
    ULONG fMask;
    HWND hwnd;
    LPCWSTR lpVerb;
    LPCWSTR lpFile;
    LPCWSTR lpParameters;
    LPCWSTR lpDirectory;
    int nShow;
    HINSTANCE hInstApp;
    LPVOID lpIDList;
    LPCWSTR lpClass;
    HKEY hkeyClass;
    DWORD dwHotKey;
    HANDLE hIcon;
    HANDLE hProcess;
};

#define SEE_MASK_INVOKEIDLIST 0x0000000C

/// Runs a verb of an item (SEE_MASK_INVOKEIDLIST with its absolute list), as its context menu would.
BOOL ShellExecuteExW(SHELLEXECUTEINFOW* info);
