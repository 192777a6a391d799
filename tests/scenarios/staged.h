// What a story puts in the place of the platform's own calls and objects.
#pragma once

#include <shlobj.h>

/// What lives while a story has something staged; one of a kind at a time.
template <typename Kind>
class Staged
{
public:
    Staged(const Staged&) = delete;
    Staged& operator=(const Staged&) = delete;

    static inline Kind* current = nullptr; ///< null where nothing is staged

protected:
    Staged() { current = static_cast<Kind*>(this); }
    ~Staged() { current = nullptr; }
};

/// Opens the definition of what the linker sends a call to first (see CMakeLists.txt). The call itself is Real and its
/// name; `mangled` is what the compiler makes of it, without "_Z".
#define STAGED_CALL(Result, Name, mangled, ...)                                                                        \
    Result Real##Name(__VA_ARGS__) __asm__("__real__Z" mangled);                                                       \
    Result Staged##Name(__VA_ARGS__) __asm__("__wrap__Z" mangled);                                                     \
    Result Staged##Name(__VA_ARGS__)

/// A folder that can do nothing but what a story gives it.
template <typename Object>
class IncapableFolder : public Object
{
public:
    HRESULT STDMETHODCALLTYPE ParseDisplayName(HWND, IBindCtx*, LPWSTR, ULONG*, PIDLIST_RELATIVE*, ULONG*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE EnumObjects(HWND, SHCONTF, IEnumIDList**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE BindToObject(PCUIDLIST_RELATIVE, IBindCtx*, REFIID, void**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE BindToStorage(PCUIDLIST_RELATIVE, IBindCtx*, REFIID, void**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE CompareIDs(LPARAM, PCUIDLIST_RELATIVE, PCUIDLIST_RELATIVE) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CreateViewObject(HWND, REFIID, void**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetAttributesOf(UINT, PCUITEMID_CHILD_ARRAY, SFGAOF*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetUIObjectOf(HWND, UINT, PCUITEMID_CHILD_ARRAY, REFIID, UINT*, void**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetDisplayNameOf(PCUITEMID_CHILD, SHGDNF, STRRET*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetNameOf(HWND, PCUITEMID_CHILD, LPCWSTR, SHGDNF, PITEMID_CHILD*) override
    {
        return E_NOTIMPL;
    }
};
