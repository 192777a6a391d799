// Owner of a handle, whose closing call is part of its type.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <type_traits>
#include <utility>

/// Owns a handle of type H, closed by the function object Close; null is the invalid value. Move-only.
template <typename H, typename Close>
class UniqueHandle
{
public:
    UniqueHandle() = default;
    explicit UniqueHandle(H handle) : m_handle(handle) {}
    ~UniqueHandle() { Reset(); }
    UniqueHandle(UniqueHandle&& other) noexcept : m_handle(other.Release()) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept
    {
        if (this != &other)
            Reset(other.Release());
        return *this;
    }

    H Get() const { return m_handle; }
    explicit operator bool() const { return m_handle != nullptr; }
    H Release() { return std::exchange(m_handle, nullptr); }
    void Reset(H handle = nullptr)
    {
        if (H old = std::exchange(m_handle, handle))
            Close{}(old);
    }
    /// For out-parameters: closes what is held and gives the place to write the new handle to.
    H* Receive()
    {
        Reset();
        return &m_handle;
    }

private:
    H m_handle = nullptr;
};

// Types of their own rather than lambdas, which would be another type in every source file.
struct CloseGdiObject
{
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
struct CloseMemoryDC
{
    void operator()(HDC handle) const { DeleteDC(handle); }
};
struct CloseImageList
{
    void operator()(HIMAGELIST handle) const { ImageList_Destroy(handle); }
};
struct CloseIcon
{
    void operator()(HICON handle) const { DestroyIcon(handle); }
};
struct CloseMenu
{
    void operator()(HMENU handle) const { DestroyMenu(handle); }
};
struct CloseRegistryKey
{
    void operator()(HKEY handle) const { RegCloseKey(handle); }
};

using UniqueBitmap = UniqueHandle<HBITMAP, CloseGdiObject>;
using UniqueFont = UniqueHandle<HFONT, CloseGdiObject>;
using UniqueBrush = UniqueHandle<HBRUSH, CloseGdiObject>;
using UniqueMemoryDC = UniqueHandle<HDC, CloseMemoryDC>;
using UniqueImageList = UniqueHandle<HIMAGELIST, CloseImageList>;
using UniqueIcon = UniqueHandle<HICON, CloseIcon>;
using UniqueMenu = UniqueHandle<HMENU, CloseMenu>;
using UniqueRegistryKey = UniqueHandle<HKEY, CloseRegistryKey>;

static_assert(!std::is_copy_constructible_v<UniqueBitmap> && std::is_nothrow_move_constructible_v<UniqueBitmap>);

/// Selects an object into a device context and puts the previous one back at the end of the scope.
class SelectGuard
{
public:
    SelectGuard(HDC dc, HGDIOBJ object) : m_dc(dc), m_previous(SelectObject(dc, object)) {}
    ~SelectGuard()
    {
        if (m_previous != nullptr)
            SelectObject(m_dc, m_previous);
    }
    SelectGuard(const SelectGuard&) = delete;
    SelectGuard& operator=(const SelectGuard&) = delete;

private:
    HDC m_dc;
    HGDIOBJ m_previous;
};

/// A window's device context (of the screen for a null window), released at the end of the scope.
class WindowDC
{
public:
    explicit WindowDC(HWND window) : m_window(window), m_dc(GetDC(window)) {}
    ~WindowDC()
    {
        if (m_dc != nullptr)
            ReleaseDC(m_window, m_dc);
    }
    WindowDC(const WindowDC&) = delete;
    WindowDC& operator=(const WindowDC&) = delete;
    HDC Get() const { return m_dc; }

private:
    HWND m_window;
    HDC m_dc;
};
