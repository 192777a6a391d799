// Basic types of the Windows API as the launcher sees them on Linux.
//
// Sizes and signedness follow the 64-bit Windows ABI; WCHAR is one UTF-16 code unit. Handles are opaque pointers whose
// value is a small number from the layer's handle table (or, for a window that is not ours, the X window id).
#pragma once

#include <cstdint>
#include <cstddef>

#define WINAPI
#define CALLBACK
#define STDMETHODCALLTYPE
#define FALSE 0
#define TRUE 1
#define MAX_PATH 260

#ifndef NULL
#define NULL 0
#endif

using BOOL = int;
using BYTE = std::uint8_t;
using CHAR = char;
using WCHAR = char16_t;
using SHORT = std::int16_t;
using WORD = std::uint16_t;
using USHORT = std::uint16_t;
using INT = int;
using UINT = unsigned int;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using DWORD = std::uint32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using SIZE_T = std::size_t;
using WPARAM = UINT_PTR;
using LPARAM = LONG_PTR;
using LRESULT = LONG_PTR;
using HRESULT = LONG;
using ATOM = WORD;
using COLORREF = DWORD;
using LANGID = WORD;

using LPVOID = void*;
using LPCVOID = const void*;
using PVOID = void*;
using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = WCHAR*;
using PWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using PCWSTR = const WCHAR*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using PUINT = UINT*;

using HANDLE = void*;
#define DECLARE_HANDLE(name)                                                                                           \
    struct name##__                                                                                                    \
    {                                                                                                                  \
        int unused;                                                                                                    \
    };                                                                                                                 \
    using name = name##__*

DECLARE_HANDLE(HINSTANCE);
DECLARE_HANDLE(HWND);
DECLARE_HANDLE(HMENU);
DECLARE_HANDLE(HDC);
DECLARE_HANDLE(HFONT);
DECLARE_HANDLE(HBITMAP);
DECLARE_HANDLE(HBRUSH);
DECLARE_HANDLE(HPEN);
DECLARE_HANDLE(HICON);
DECLARE_HANDLE(HMONITOR);
DECLARE_HANDLE(HKEY);
DECLARE_HANDLE(HRSRC);
using HMODULE = HINSTANCE;
using HCURSOR = HICON;
using HGLOBAL = HANDLE;
using HLOCAL = HANDLE;
using HGDIOBJ = void*;

using FARPROC = INT_PTR (*)();

struct POINT
{
    LONG x;
    LONG y;
};

struct SIZE
{
    LONG cx;
    LONG cy;
};

/// left, top inclusive; right, bottom exclusive.
struct RECT
{
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using LPRECT = RECT*;
using LPCRECT = const RECT*;
using LPPOINT = POINT*;
using LPSIZE = SIZE*;

#ifndef UNICODE
#define UNICODE 1
#endif
#define TEXT(quote) u##quote

#define LOWORD(l) (static_cast<WORD>(static_cast<DWORD_PTR>(l) & 0xffff))
#define HIWORD(l) (static_cast<WORD>((static_cast<DWORD_PTR>(l) >> 16) & 0xffff))
#define MAKELONG(a, b)                                                                                                 \
    (static_cast<LONG>((static_cast<DWORD_PTR>(a) & 0xffff) | ((static_cast<DWORD_PTR>(b) & 0xffff) << 16)))
#define MAKELPARAM(l, h) (static_cast<LPARAM>(static_cast<DWORD>(MAKELONG(l, h))))
#define MAKEWPARAM(l, h) (static_cast<WPARAM>(static_cast<DWORD>(MAKELONG(l, h))))
#define MAKELRESULT(l, h) (static_cast<LRESULT>(static_cast<DWORD>(MAKELONG(l, h))))
