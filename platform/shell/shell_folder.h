// The folder object: one class for every folder, the name space's root included.
//
// Items given to it may be single identifiers or longer relative lists; the last identifier is what is asked about.
// Not implemented: comparing items, storage objects, view objects other than the background's menu and the drop target.
#pragma once

#include "platform/ole/com_object.h"
#include "platform/shell/namespace.h"

namespace platform
{

class ShellFolder final : public ComObject<IShellFolder, IID_IShellFolder>
{
public:
    explicit ShellFolder(std::string path) : m_path(std::move(path)) {}

    HRESULT STDMETHODCALLTYPE ParseDisplayName(HWND owner, IBindCtx* context, LPWSTR name, ULONG* eaten,
                                               PIDLIST_RELATIVE* item, ULONG* attributes) override;
    HRESULT STDMETHODCALLTYPE EnumObjects(HWND owner, SHCONTF flags, IEnumIDList** result) override;
    HRESULT STDMETHODCALLTYPE BindToObject(PCUIDLIST_RELATIVE item, IBindCtx* context, REFIID iid,
                                           void** result) override;
    HRESULT STDMETHODCALLTYPE BindToStorage(PCUIDLIST_RELATIVE item, IBindCtx* context, REFIID iid,
                                            void** result) override;
    HRESULT STDMETHODCALLTYPE CompareIDs(LPARAM order, PCUIDLIST_RELATIVE a, PCUIDLIST_RELATIVE b) override;
    HRESULT STDMETHODCALLTYPE CreateViewObject(HWND owner, REFIID iid, void** result) override;
    HRESULT STDMETHODCALLTYPE GetAttributesOf(UINT count, PCUITEMID_CHILD_ARRAY items, SFGAOF* attributes) override;
    HRESULT STDMETHODCALLTYPE GetUIObjectOf(HWND owner, UINT count, PCUITEMID_CHILD_ARRAY items, REFIID iid,
                                            UINT* reserved, void** result) override;
    HRESULT STDMETHODCALLTYPE GetDisplayNameOf(PCUITEMID_CHILD item, SHGDNF flags, STRRET* name) override;
    HRESULT STDMETHODCALLTYPE SetNameOf(HWND owner, PCUITEMID_CHILD item, LPCWSTR name, SHGDNF flags,
                                        PITEMID_CHILD* result) override;

private:
    std::string m_path;
};

} // namespace platform
