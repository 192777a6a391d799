// The shell namespace: item identifier lists, folders, context menus, known folders, change notices.
#pragma once

#include "ole2.h"
#include "shellapi.h"

#pragma pack(push, 1)
struct SHITEMID
{
    USHORT cb;
    BYTE abID[1];
};
struct ITEMIDLIST
{
    SHITEMID mkid;
};
#pragma pack(pop)
using LPITEMIDLIST = ITEMIDLIST*;
using LPCITEMIDLIST = const ITEMIDLIST*;
using PIDLIST_ABSOLUTE = ITEMIDLIST*;
using PCIDLIST_ABSOLUTE = const ITEMIDLIST*;
using PIDLIST_RELATIVE = ITEMIDLIST*;
using PCUIDLIST_RELATIVE = const ITEMIDLIST*;
using PITEMID_CHILD = ITEMIDLIST*;
using PCUITEMID_CHILD = const ITEMIDLIST*;
using PCUITEMID_CHILD_ARRAY = const ITEMIDLIST* const*;

#define STRRET_WSTR 0
struct STRRET
{
    UINT uType;
    LPWSTR pOleStr; ///< CoTaskMemFree by whoever converts it
};

using SHGDNF = DWORD;
using SHCONTF = DWORD;
using SFGAOF = ULONG;
#define SHGDN_INFOLDER 0x1
#define SHGDN_FOREDITING 0x1000
#define SHGDN_FORPARSING 0x8000
#define SHCONTF_FOLDERS 0x20
#define SHCONTF_NONFOLDERS 0x40
#define SHCONTF_INCLUDEHIDDEN 0x80
#define SFGAO_LINK 0x00010000
#define SFGAO_STREAM 0x00400000
#define SFGAO_FOLDER 0x20000000
#define SFGAO_FILESYSTEM 0x40000000

struct IBindCtx;

struct IEnumIDList : IUnknown
{
    /// Each returned identifier is freed by the caller with ILFree.
    virtual HRESULT STDMETHODCALLTYPE Next(ULONG count, LPITEMIDLIST* items, ULONG* fetched) = 0;
    virtual HRESULT STDMETHODCALLTYPE Skip(ULONG count) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IEnumIDList** clone) = 0;

protected:
    ~IEnumIDList() = default;
};

struct IShellFolder : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE ParseDisplayName(HWND owner, IBindCtx* context, LPWSTR name, ULONG* eaten,
                                                       PIDLIST_RELATIVE* item, ULONG* attributes) = 0;
    virtual HRESULT STDMETHODCALLTYPE EnumObjects(HWND owner, SHCONTF flags, IEnumIDList** result) = 0;
    virtual HRESULT STDMETHODCALLTYPE BindToObject(PCUIDLIST_RELATIVE item, IBindCtx* context, REFIID iid,
                                                   void** result) = 0;
    virtual HRESULT STDMETHODCALLTYPE BindToStorage(PCUIDLIST_RELATIVE item, IBindCtx* context, REFIID iid,
                                                    void** result) = 0;
    virtual HRESULT STDMETHODCALLTYPE CompareIDs(LPARAM order, PCUIDLIST_RELATIVE a, PCUIDLIST_RELATIVE b) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateViewObject(HWND owner, REFIID iid, void** result) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetAttributesOf(UINT count, PCUITEMID_CHILD_ARRAY items, SFGAOF* attributes) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetUIObjectOf(HWND owner, UINT count, PCUITEMID_CHILD_ARRAY items, REFIID iid,
                                                    UINT* reserved, void** result) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDisplayNameOf(PCUITEMID_CHILD item, SHGDNF flags, STRRET* name) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetNameOf(HWND owner, PCUITEMID_CHILD item, LPCWSTR name, SHGDNF flags,
                                                PITEMID_CHILD* result) = 0;

protected:
    ~IShellFolder() = default;
};

struct CMINVOKECOMMANDINFO
{
    DWORD cbSize;
    DWORD fMask;
    HWND hwnd;
    LPCSTR lpVerb;
    LPCSTR lpParameters;
    LPCSTR lpDirectory;
    int nShow;
    DWORD dwHotKey;
    HANDLE hIcon;
};

struct CMINVOKECOMMANDINFOEX
{
    DWORD cbSize;
    DWORD fMask;
    HWND hwnd;
    LPCSTR lpVerb;
    LPCSTR lpParameters;
    LPCSTR lpDirectory;
    int nShow;
    DWORD dwHotKey;
    HANDLE hIcon;
    LPCSTR lpTitle;
    LPCWSTR lpVerbW;
    LPCWSTR lpParametersW;
    LPCWSTR lpDirectoryW;
    LPCWSTR lpTitleW;
    POINT ptInvoke; ///< screen coordinates
};

#define CMF_NORMAL 0x00000000
#define CMF_DEFAULTONLY 0x00000001
#define CMF_CANRENAME 0x00000010
#define CMIC_MASK_NOASYNC 0x00000100
#define CMIC_MASK_PTINVOKE 0x20000000
#define GCS_VERBA 0x00000000

struct IContextMenu : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE QueryContextMenu(HMENU menu, UINT position, UINT first, UINT last,
                                                       UINT flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE InvokeCommand(CMINVOKECOMMANDINFO* info) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetCommandString(UINT_PTR command, UINT type, UINT* reserved, LPSTR name,
                                                       UINT capacity) = 0;

protected:
    ~IContextMenu() = default;
};

struct IShellLinkW : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE SetPath(LPCWSTR path) = 0;

protected:
    ~IShellLinkW() = default;
};

struct IPersistFile : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE Save(LPCWSTR path, BOOL remember) = 0;

protected:
    ~IPersistFile() = default;
};

enum SIGDN : std::uint32_t
{
    SIGDN_FILESYSPATH = 0x80058000,
};

struct IShellItem : IUnknown
{
    /// *name is freed with CoTaskMemFree.
    virtual HRESULT STDMETHODCALLTYPE GetDisplayName(SIGDN form, LPWSTR* name) = 0;

protected:
    ~IShellItem() = default;
};

using FILEOPENDIALOGOPTIONS = DWORD;
#define FOS_PICKFOLDERS 0x00000020
#define FOS_FORCEFILESYSTEM 0x00000040
#define FOS_PATHMUSTEXIST 0x00000800
#define FOS_FILEMUSTEXIST 0x00001000
#define FOS_NOREADONLYRETURN 0x00008000
#define FOS_DONTADDTORECENT 0x02000000

struct COMDLG_FILTERSPEC
{
    LPCWSTR pszName;
    LPCWSTR pszSpec;
};

/// The file picker. Show returns HRESULT_FROM_WIN32(ERROR_CANCELLED) when the user picks nothing.
struct IFileDialog : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE Show(HWND owner) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFileTypes(UINT count, const COMDLG_FILTERSPEC* types) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFileTypeIndex(UINT index) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetOptions(FILEOPENDIALOGOPTIONS options) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetOptions(FILEOPENDIALOGOPTIONS* options) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetDefaultFolder(IShellItem* folder) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFileName(LPCWSTR name) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetTitle(LPCWSTR title) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetOkButtonLabel(LPCWSTR label) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetResult(IShellItem** item) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetDefaultExtension(LPCWSTR extension) = 0;

protected:
    ~IFileDialog() = default;
};

enum SIIGBF : int
{
    SIIGBF_RESIZETOFIT = 0,
};

struct IShellItemImageFactory : IUnknown
{
    /// A bitmap of 32 bits, premultiplied, of at most this size; DeleteObject by the caller.
    virtual HRESULT STDMETHODCALLTYPE GetImage(SIZE size, SIIGBF flags, HBITMAP* bitmap) = 0;

protected:
    ~IShellItemImageFactory() = default;
};

/// Of a data object whose content may be taken on another thread after the drop.
struct IDataObjectAsyncCapability : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE SetAsyncMode(BOOL async) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetAsyncMode(BOOL* async) = 0;

protected:
    ~IDataObjectAsyncCapability() = default;
};

/// "Shell IDList Array": the folder and then its items, each by its offset from the structure's begin in bytes.
#define CFSTR_SHELLIDLIST u"Shell IDList Array"
#pragma pack(push, 1)
struct CIDA
{
    UINT cidl; ///< items, the folder not counted
    UINT aoffset[1];
};
#pragma pack(pop)

/// A drag's picture; the helper that is given it owns the bitmap from then on.
struct SHDRAGIMAGE
{
    SIZE sizeDragImage;
    POINT ptOffset; ///< of the pointer, from the picture's top left corner
    HBITMAP hbmpDragImage;
    COLORREF crColorKey;
};
#define DSH_ALLOWDROPDESCRIPTIONTEXT 0x0001

struct IDropTargetHelper : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE DragEnter(HWND target, IDataObject* data, POINT* point, DWORD effect) = 0;
    virtual HRESULT STDMETHODCALLTYPE DragLeave() = 0;
    virtual HRESULT STDMETHODCALLTYPE DragOver(POINT* point, DWORD effect) = 0;
    virtual HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, POINT* point, DWORD effect) = 0;
    virtual HRESULT STDMETHODCALLTYPE Show(BOOL show) = 0;

protected:
    ~IDropTargetHelper() = default;
};

struct IDragSourceHelper : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE InitializeFromBitmap(SHDRAGIMAGE* image, IDataObject* data) = 0;
    virtual HRESULT STDMETHODCALLTYPE InitializeFromWindow(HWND window, POINT* point, IDataObject* data) = 0;

protected:
    ~IDragSourceHelper() = default;
};

struct IDragSourceHelper2 : IDragSourceHelper
{
    virtual HRESULT STDMETHODCALLTYPE SetFlags(DWORD flags) = 0;

protected:
    ~IDragSourceHelper2() = default;
};

extern const IID IID_IShellFolder;
extern const IID IID_IEnumIDList;
extern const IID IID_IContextMenu;
extern const IID IID_IShellLinkW;
extern const IID IID_IPersistFile;
extern const IID IID_IShellItem;
extern const IID IID_IShellItemImageFactory;
extern const IID IID_IDataObjectAsyncCapability;
extern const IID IID_IFileDialog;
extern const IID IID_IDropTargetHelper;
extern const IID IID_IDragSourceHelper2;
extern const CLSID CLSID_DragDropHelper;
extern const CLSID CLSID_ShellLink;
extern const CLSID CLSID_FileOpenDialog;
extern const KNOWNFOLDERID FOLDERID_RoamingAppData;

#define CSIDL_STARTMENU 0x000b
#define CSIDL_DESKTOPDIRECTORY 0x0010
#define CSIDL_COMMON_STARTMENU 0x0016

#define SHCNE_RENAMEITEM 0x00000001L
#define SHCNE_CREATE 0x00000002L
#define SHCNE_DELETE 0x00000004L
#define SHCNE_MKDIR 0x00000008L
#define SHCNE_RMDIR 0x00000010L
#define SHCNE_RENAMEFOLDER 0x00020000L
#define SHCNRF_InterruptLevel 0x0001
#define SHCNRF_ShellLevel 0x0002
#define SHCNRF_NewDelivery 0x8000

struct SHChangeNotifyEntry
{
    LPCITEMIDLIST pidl;
    BOOL fRecursive;
};

// --- item identifier lists (absolute ones start at the desktop; freed with ILFree)
LPITEMIDLIST ILClone(LPCITEMIDLIST list);
LPITEMIDLIST ILCombine(LPCITEMIDLIST first, LPCITEMIDLIST second);
void ILFree(LPITEMIDLIST list);
LPITEMIDLIST ILFindLastID(LPCITEMIDLIST list);

// --- folders
HRESULT SHGetDesktopFolder(IShellFolder** folder);
HRESULT SHParseDisplayName(LPCWSTR name, IBindCtx* context, LPITEMIDLIST* list, SFGAOF attributesIn,
                           SFGAOF* attributesOut);
/// *last points into list.
HRESULT SHBindToParent(LPCITEMIDLIST list, REFIID iid, void** parent, LPCITEMIDLIST* last);
BOOL SHGetPathFromIDListW(LPCITEMIDLIST list, LPWSTR path);
HRESULT SHGetKnownFolderPath(REFKNOWNFOLDERID id, DWORD flags, HANDLE token, LPWSTR* path);
/// An item of an existing file or folder; "shell:Desktop" names the user's desktop folder.
HRESULT SHCreateItemFromParsingName(LPCWSTR name, IBindCtx* context, REFIID iid, void** item);
/// Of an absolute list.
HRESULT SHCreateItemFromIDList(LPCITEMIDLIST list, REFIID iid, void** item);
HRESULT SHGetFolderLocation(HWND owner, int csidl, HANDLE token, DWORD reserved, LPITEMIDLIST* list);

// --- change notices and the process reference
/// Posts `message` to `window` after a change of the entry's folder; the new delivery's wParam and lParam are opaque.
ULONG SHChangeNotifyRegister(HWND window, int sources, LONG events, UINT message, int entries,
                             const SHChangeNotifyEntry* entry);
BOOL SHChangeNotifyDeregister(ULONG id);
/// The object that shell components reference to keep the process alive; null to withdraw it. Not owned.
void SHSetInstanceExplorer(IUnknown* reference);

/// DoDragDrop with a drop source of the shell's own where `source` is null: Escape, or the other button, cancels.
HRESULT SHDoDragDrop(HWND window, IDataObject* data, IDropSource* source, DWORD allowed, DWORD* effect);
