// Owners of shell memory: item identifier lists and strings.
#pragma once

#include "support/unique_handle.h"

#include <shlobj.h>

struct FreeItemList
{
    void operator()(LPITEMIDLIST list) const { ILFree(list); }
};
struct FreeShellString
{
    void operator()(LPWSTR text) const { CoTaskMemFree(text); }
};

/// Owns an absolute item identifier list (or a single identifier), freed with ILFree.
using ItemList = UniqueHandle<LPITEMIDLIST, FreeItemList>;

/// Owns a string that the shell allocated, freed with CoTaskMemFree.
using ShellString = UniqueHandle<LPWSTR, FreeShellString>;
