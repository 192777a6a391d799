// A home of its own for each test process, and short ways to look at folders through the shell.
#pragma once

#include "shlwapi.h"

#include "platform/base/deferred.h"
#include "platform/base/text.h"
#include "platform/shell/item_id.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <poll.h>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace shell_test
{

/// The scratch home, with every variable set that the shell reads. Removed at the process's end.
const std::filesystem::path& Home();

/// A new, empty folder below the scratch home.
std::filesystem::path NewFolder();

inline void Write(const std::filesystem::path& path, const std::string& content, mode_t mode = 0644)
{
    std::ofstream(path) << content;
    chmod(path.c_str(), mode);
}

/// "" when it is not there.
inline std::string ContentOf(const std::filesystem::path& path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// All zero when it is not there.
inline struct stat StatusOf(const std::filesystem::path& path)
{
    struct stat status = {};
    stat(path.c_str(), &status);
    return status;
}

/// Makes it so old that its time tells whether it has changed since it was read: file times are coarse.
void MakeOld(const std::filesystem::path& path);

inline void RunDeferred()
{
    while (platform::RunOneDeferred())
    {
    }
}

/// The application "Viewer" for folders, which runs "tell.sh" beside the folder with its path, and "Browser" for https,
/// which writes the address to "browsed" in the home folder. GIO looks for applications once, so they must be there
/// before the first file is opened.
void InstallFolderViewer();

/// Does something as another run would: with a memory of its own, ended by `work` or by its return.
void InAnotherProcess(const std::function<void()>& work);

template <typename T>
struct ComRelease
{
    void operator()(T* object) const { object->Release(); }
};
template <typename T>
using Com = std::unique_ptr<T, ComRelease<T>>;

/// What a call has put into `object`, to be released with the result.
template <typename T>
Com<T> Taken(void* object)
{
    return Com<T>(static_cast<T*>(object));
}

/// Null when the object is not that.
template <typename T>
Com<T> As(IUnknown& object, REFIID iid)
{
    void* other = nullptr;
    object.QueryInterface(iid, &other);
    return Taken<T>(other);
}

/// A pop-up that is not shown, for tests without a desk; null when it cannot be made.
HWND MakeWindow(WNDPROC procedure = DefWindowProcW, DWORD style = WS_POPUP);

/// Waits until the condition holds, at most ten seconds; false when it never did.
template <typename F>
bool WaitFor(F condition)
{
    for (int attempt = 0; attempt < 5000; ++attempt)
    {
        if (condition())
            return true;
        poll(nullptr, 0, 2);
    }
    return false;
}

using List = platform::ItemListPtr;

inline List Parse(const std::filesystem::path& path)
{
    LPITEMIDLIST list = nullptr;
    SHParseDisplayName(platform::ShellPathFromPosix(path.native()).c_str(), nullptr, &list, 0, nullptr);
    return List(list);
}

inline Com<IShellFolder> Bind(const ITEMIDLIST* list)
{
    IShellFolder* desktop = nullptr;
    SHGetDesktopFolder(&desktop);
    void* folder = nullptr;
    desktop->BindToObject(list, nullptr, IID_IShellFolder, &folder);
    desktop->Release();
    return Taken<IShellFolder>(folder);
}

/// An item and its folder, which is how the launcher holds one before it does anything with it.
struct Bound
{
    explicit Bound(const std::filesystem::path& path) : list(Parse(path))
    {
        void* parent = nullptr;
        if (list != nullptr && SUCCEEDED(SHBindToParent(list.get(), IID_IShellFolder, &parent, &item)))
            folder.reset(static_cast<IShellFolder*>(parent));
    }

    /// Null when there is none.
    Com<IContextMenu> Menu() const
    {
        void* menu = nullptr;
        if (folder != nullptr)
            folder->GetUIObjectOf(nullptr, 1, &item, IID_IContextMenu, nullptr, &menu);
        return Taken<IContextMenu>(menu);
    }
    HRESULT Rename(LPCWSTR name, LPITEMIDLIST* renamed = nullptr,
                   SHGDNF flags = SHGDN_INFOLDER | SHGDN_FOREDITING) const
    {
        return folder != nullptr ? folder->SetNameOf(nullptr, item, name, flags, renamed) : E_FAIL;
    }

    List list;
    LPCITEMIDLIST item = nullptr;
    Com<IShellFolder> folder;
};

inline HRESULT Invoke(IContextMenu& menu, LPCSTR verb)
{
    CMINVOKECOMMANDINFO info{};
    info.cbSize = sizeof info;
    info.lpVerb = verb;
    return menu.InvokeCommand(&info);
}

inline std::u16string NameOf(IShellFolder& folder, const ITEMIDLIST* item, SHGDNF flags)
{
    STRRET name;
    LPWSTR text = nullptr;
    if (FAILED(folder.GetDisplayNameOf(item, flags, &name)) || FAILED(StrRetToStrW(&name, item, &text)))
        return u"(no name)";
    std::u16string result(text);
    CoTaskMemFree(text);
    return result;
}

struct Item
{
    List absolute;
    std::string fileName; ///< from the in-folder parsing name
    std::string display;  ///< UTF-8
    SFGAOF attributes;
    SHFILEINFOW info;
};

/// What a menu would show of the folder; asserts nothing.
std::vector<Item> Items(const std::filesystem::path& path, SHCONTF flags = SHCONTF_FOLDERS | SHCONTF_NONFOLDERS);
/// The item of a file name, null when it is not listed.
const Item* Find(const std::vector<Item>& items, const std::string& fileName);

} // namespace shell_test
