// Stands in for calls of popup menus, dialogs and file work until they are there.
#include "windows.h"

#include "shellapi.h"
#include "shlobj.h"
#include "shlwapi.h"

LPWSTR PathFindFileNameW(LPCWSTR path)
{
    LPCWSTR name = path;
    for (; *path != 0; ++path)
        if (*path == u'\\' && path[1] != 0)
            name = path + 1;
    return const_cast<LPWSTR>(name);
}

HRESULT SHCreateItemFromParsingName(LPCWSTR, IBindCtx*, REFIID, void** item)
{
    *item = nullptr;
    return E_FAIL;
}

BOOL ShellExecuteExW(SHELLEXECUTEINFOW*)
{
    return FALSE;
}

