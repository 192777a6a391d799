// Modules, resources, errors, directories, time, text casing.
#pragma once

#include "windef.h"

/// Handle of the running program for a null name. For the names of system modules that the layer stands for ("user32",
/// "shcore", "shell32", "comctl32", "gdi32"; ".dll" and letter case ignored) a pseudo handle; null and
/// ERROR_MOD_NOT_FOUND otherwise. Nothing is loaded.
HMODULE GetModuleHandleW(LPCWSTR moduleName);
/// Address of one of the layer's functions by its exported name, null and ERROR_PROC_NOT_FOUND for others.
FARPROC GetProcAddress(HMODULE module, LPCSTR procName);

DWORD GetLastError();
void SetLastError(DWORD error);

DWORD GetCurrentThreadId();
/// Milliseconds of the layer's clock; wraps after 49.7 days.
DWORD GetTickCount();

/// number * numerator / denominator in 64 bits, rounded to nearest with halves away from zero; −1 when denominator is 0
/// or the result does not fit.
int MulDiv(int number, int numerator, int denominator);

struct SECURITY_ATTRIBUTES;
/// Creates one directory (parents must exist). False with ERROR_ALREADY_EXISTS when anything of that name exists.
BOOL CreateDirectoryW(LPCWSTR pathName, SECURITY_ATTRIBUTES* attributes);

/// Upper-cases in place, character by character without changing the length, and returns its argument. A "pointer"
/// whose high bits are zero is one character, returned upper-cased.
LPWSTR CharUpperW(LPWSTR text);

int lstrcmpiW(LPCWSTR a, LPCWSTR b);

#define MAKEINTRESOURCEW(i) (reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(static_cast<WORD>(i))))
#define MAKEINTRESOURCEA(i) (reinterpret_cast<LPSTR>(static_cast<ULONG_PTR>(static_cast<WORD>(i))))
#define IS_INTRESOURCE(r) ((reinterpret_cast<ULONG_PTR>(r) >> 16) == 0)

#define RT_BITMAP MAKEINTRESOURCEW(2)
#define RT_ICON MAKEINTRESOURCEW(3)
#define RT_DIALOG MAKEINTRESOURCEW(5)
#define RT_STRING MAKEINTRESOURCEW(6)
#define RT_RCDATA MAKEINTRESOURCEW(10)
#define RT_GROUP_ICON MAKEINTRESOURCEW(14)

/// Finds a resource of the program: name and type are integer resources or strings; a string "#n" names the integer n.
HRSRC FindResourceW(HMODULE module, LPCWSTR name, LPCWSTR type);
HGLOBAL LoadResource(HMODULE module, HRSRC resource);
LPVOID LockResource(HGLOBAL data);
DWORD SizeofResource(HMODULE module, HRSRC resource);

/// Allocates / frees memory that COM interfaces hand over.
void CoTaskMemFree(LPVOID memory);
LPVOID CoTaskMemAlloc(SIZE_T size);

#define LMEM_MOVEABLE 0x0002
#define LMEM_ZEROINIT 0x0040
/// Memory by handle, null without it. Nothing ever moves here; locking counts no locks.
HLOCAL LocalAlloc(UINT flags, SIZE_T size);
LPVOID LocalLock(HLOCAL memory);
BOOL LocalUnlock(HLOCAL memory);
/// Null when it is freed.
HLOCAL LocalFree(HLOCAL memory);

#define GMEM_MOVEABLE 0x0002
#define GMEM_ZEROINIT 0x0040
/// Likewise; GlobalSize is the number of bytes asked for.
HGLOBAL GlobalAlloc(UINT flags, SIZE_T size);
LPVOID GlobalLock(HGLOBAL memory);
BOOL GlobalUnlock(HGLOBAL memory);
SIZE_T GlobalSize(HGLOBAL memory);
HGLOBAL GlobalFree(HGLOBAL memory);

/// The program's file (for any module), as a shell path. Length of what was copied; a longer path is cut, with
/// ERROR_INSUFFICIENT_BUFFER.
DWORD GetModuleFileNameW(HMODULE module, LPWSTR path, DWORD capacity);
