// The linker sends the calls named here to the stage first (see CMakeLists.txt).
#include "tests/scenarios/staged_ui.h"

#include "tests/scenarios/desk.h"

#include "platform/base/text.h"
#include "platform/dialogs/menu.h"
#include "platform/ole/com_object.h"

#include <shlwapi.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace
{

StagedPopup*& g_popup = StagedPopup::current;
StagedDialog*& g_dialog = StagedDialog::current;
StagedFiles*& g_files = StagedFiles::current;

constexpr int kEdit = 102;
constexpr LPCWSTR kDialogClass = TEXT("a staged dialog");
HWND g_dialogWindow = nullptr;
std::u16string g_editText;
INT_PTR g_dialogResult = -1;

using platform::Utf16FromUtf8;
using platform::Utf8FromUtf16;

std::string PosixPath(LPCWSTR path)
{
    std::string text = Utf8FromUtf16(path);
    std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

StagedPopup::Entry Describe(HMENU menu, int position)
{
    const platform::MenuItem& item = platform::FindMenuItem(menu, static_cast<UINT>(position), true).Item();
    BITMAP picture{};
    if (item.bitmap != nullptr)
        GetObjectW(item.bitmap, sizeof(picture), &picture);
    return {item.IsSeparator() ? 0 : static_cast<int>(item.id),
            Utf8FromUtf16(item.text),
            (item.state & MFS_CHECKED) != 0,
            {picture.bmWidth, picture.bmHeight}};
}

LRESULT CALLBACK DialogWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == DM_REPOSITION)
        ++g_dialog->repositioned;
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND MakeDialogWindow()
{
    WNDCLASSEXW info{};
    info.cbSize = sizeof(info);
    info.lpfnWndProc = DialogWindowProc;
    info.lpszClassName = kDialogClass;
    RegisterClassExW(&info);
    return CreateWindowExW(0, kDialogClass, nullptr, WS_POPUP, 0, 0, 100, 50, nullptr, nullptr, nullptr, nullptr);
}

class FakeItem final : public platform::ComObject<IShellItem, IID_IShellItem>
{
public:
    HRESULT STDMETHODCALLTYPE GetDisplayName(SIGDN form, LPWSTR* name) override
    {
        if (form != SIGDN_FILESYSPATH || g_files->failing == "GetDisplayName")
            return E_FAIL;
        std::u16string path = Utf16FromUtf8(g_files->pick);
        std::replace(path.begin(), path.end(), u'/', u'\\');
        return SHStrDupW(path.c_str(), name);
    }
};

class FakePicker final : public platform::ComObject<IFileDialog, IID_IFileDialog>
{
public:
    HRESULT STDMETHODCALLTYPE Show(HWND owner) override
    {
        EXPECT_EQ(owner, nullptr);
        ++g_files->pickers;
        if (g_files->onPick)
            g_files->onPick();
        return g_files->pick.empty() ? HRESULT_FROM_WIN32(ERROR_CANCELLED) : S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetOptions(FILEOPENDIALOGOPTIONS options) override
    {
        g_files->options = options;
        return Result("SetOptions");
    }
    HRESULT STDMETHODCALLTYPE GetOptions(FILEOPENDIALOGOPTIONS* options) override
    {
        *options = kOwnOptions;
        return Result("GetOptions");
    }
    HRESULT STDMETHODCALLTYPE SetTitle(LPCWSTR title) override
    {
        g_files->title = Utf8FromUtf16(title);
        return Result("SetTitle");
    }
    HRESULT STDMETHODCALLTYPE SetOkButtonLabel(LPCWSTR label) override
    {
        g_files->okLabel = Utf8FromUtf16(label);
        return Result("SetOkButtonLabel");
    }
    HRESULT STDMETHODCALLTYPE GetResult(IShellItem** item) override
    {
        if (g_files->failing == "GetResult")
            return E_FAIL;
        *item = new FakeItem;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetDefaultFolder(IShellItem*) override { return Result("SetDefaultFolder"); }
    HRESULT STDMETHODCALLTYPE SetFileName(LPCWSTR) override { return Result("SetFileName"); }
    HRESULT STDMETHODCALLTYPE SetFileTypes(UINT, const COMDLG_FILTERSPEC*) override { return Unexpected(); }
    HRESULT STDMETHODCALLTYPE SetFileTypeIndex(UINT) override { return Unexpected(); }
    HRESULT STDMETHODCALLTYPE SetDefaultExtension(LPCWSTR) override { return Unexpected(); }

private:
    static constexpr FILEOPENDIALOGOPTIONS kOwnOptions = 0x2;

    static HRESULT Result(const char* call) { return g_files->failing == call ? E_FAIL : S_OK; }
    static HRESULT Unexpected()
    {
        ADD_FAILURE() << "nobody chose types";
        return E_NOTIMPL;
    }
};

class FakeLinkFile final : public platform::ComObject<IPersistFile, IID_IPersistFile>
{
public:
    HRESULT STDMETHODCALLTYPE Save(LPCWSTR path, BOOL remember) override
    {
        EXPECT_TRUE(remember);
        g_files->shortcuts.push_back(PosixPath(path));
        if (g_files->failing != "Save")
            std::ofstream(g_files->shortcuts.back()) << "a shortcut";
        return g_files->failing == "Save" ? E_FAIL : S_OK;
    }
};

class FakeLink final : public platform::ComObject<IShellLinkW, IID_IShellLinkW>
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        if (!IsEqualIID(iid, IID_IPersistFile) || g_files->failing == "QueryInterface")
            return ComObjectOf::QueryInterface(iid, object);
        *object = static_cast<IPersistFile*>(new FakeLinkFile);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetPath(LPCWSTR path) override
    {
        g_files->targets.push_back(PosixPath(path));
        return g_files->failing == "SetPath" ? E_FAIL : S_OK;
    }
};

} // namespace

std::vector<int> StagedPopup::Identifiers() const
{
    std::vector<int> identifiers;
    for (const Entry& entry : entries)
        identifiers.push_back(entry.identifier);
    return identifiers;
}

void ChooseInMenu(Desk& desk, int identifier, int item, int level)
{
    StagedPopup popup;
    popup.answer = identifier;
    desk.Level(level).OnItemCommand(ItemCommandMode::ContextMenu, item, 50, 60);
    desk.Settle();
}

// --- popup menus

STAGED_CALL(BOOL, Track, "16TrackPopupMenuExP7HMENU__jiiP6HWND__P9TPMPARAMS", HMENU menu, UINT flags, int x, int y,
            HWND owner, TPMPARAMS* params)
{
    if (g_popup == nullptr)
        return RealTrack(menu, flags, x, y, owner, params);
    ++g_popup->shown;
    g_popup->entries.clear();
    for (int i = 0; i < GetMenuItemCount(menu); ++i)
        g_popup->entries.push_back(Describe(menu, i));
    g_popup->flags = flags;
    g_popup->point = {x, y};
    g_popup->owner = owner;
    g_popup->hasExclusion = params != nullptr;
    g_popup->exclusion = params != nullptr ? *params : TPMPARAMS{};
    if (g_popup->onShow)
        g_popup->onShow();
    return g_popup->answer;
}

// --- dialogs

STAGED_CALL(INT_PTR, Dialog, "15DialogBoxParamWP11HINSTANCE__PKDsP6HWND__PFlS4_jmlEl", HINSTANCE instance, LPCWSTR name,
            HWND owner, DLGPROC procedure, LPARAM parameter)
{
    if (g_dialog == nullptr)
        return RealDialog(instance, name, owner, procedure, parameter);
    if (g_dialog->cannotShow)
        return -1;
    ++g_dialog->shown;
    g_dialog->resource = reinterpret_cast<UINT_PTR>(name);
    g_dialog->owner = owner;
    g_dialogResult = -1;
    g_editText.clear();
    const HWND window = MakeDialogWindow();
    g_dialogWindow = window;
    g_dialog->takesDefaultFocus = procedure(window, WM_INITDIALOG, 0, parameter) != FALSE;
    g_dialog->text = Utf8FromUtf16(g_editText);
    RECT place{};
    GetWindowRect(window, &place);
    g_dialog->place = {place.left, place.top};
    if (g_dialog->onShow)
        g_dialog->onShow();
    EXPECT_FALSE(procedure(window, WM_COMMAND, MAKEWPARAM(kEdit, 0x300), 0)) << "not its message";
    for (std::size_t i = 0; i < g_dialog->answers.size() && g_dialogResult < 0; ++i)
    {
        g_editText = Utf16FromUtf8(g_dialog->answers[i]);
        procedure(window, WM_COMMAND, IDOK, 0);
    }
    if (g_dialogResult < 0)
        procedure(window, WM_COMMAND, IDCANCEL, 0);
    g_dialogWindow = nullptr;
    DestroyWindow(window);
    return g_dialogResult;
}

STAGED_CALL(BOOL, SetText, "15SetDlgItemTextWP6HWND__iPKDs", HWND dialog, int id, LPCWSTR text)
{
    if (dialog != g_dialogWindow)
        return RealSetText(dialog, id, text);
    EXPECT_EQ(id, kEdit);
    g_editText = text;
    return TRUE;
}

STAGED_CALL(UINT, GetText, "15GetDlgItemTextWP6HWND__iPDsi", HWND dialog, int id, LPWSTR text, int capacity)
{
    if (dialog != g_dialogWindow)
        return RealGetText(dialog, id, text, capacity);
    EXPECT_EQ(id, kEdit);
    const std::size_t length = std::min(g_editText.size(), static_cast<std::size_t>(capacity) - 1);
    *std::copy_n(g_editText.begin(), length, text) = 0;
    return static_cast<UINT>(length);
}

STAGED_CALL(BOOL, EndDialog, "9EndDialogP6HWND__l", HWND dialog, INT_PTR result)
{
    if (dialog != g_dialogWindow)
        return RealEndDialog(dialog, result);
    g_dialogResult = result;
    return TRUE;
}

// --- files

STAGED_CALL(HRESULT, Create, "16CoCreateInstanceRK4GUIDP8IUnknownjS1_PPv", REFCLSID cls, IUnknown* outer, DWORD context,
            REFIID iid, LPVOID* object)
{
    const bool link = IsEqualIID(cls, CLSID_ShellLink);
    if (g_files == nullptr || (!link && !IsEqualIID(cls, CLSID_FileOpenDialog)))
        return RealCreate(cls, outer, context, iid, object);
    EXPECT_EQ(context, static_cast<DWORD>(CLSCTX_INPROC_SERVER));
    *object = nullptr;
    if (g_files->failing == (link ? "CoCreateInstance of a link" : "CoCreateInstance"))
        return E_FAIL;
    if (link)
        *object = static_cast<IShellLinkW*>(new FakeLink);
    else
        *object = static_cast<IFileDialog*>(new FakePicker);
    return S_OK;
}

STAGED_CALL(HRESULT, CreateItem, "27SHCreateItemFromParsingNamePKDsP8IBindCtxRK4GUIDPPv", LPCWSTR name,
            IBindCtx* context, REFIID iid, void** item)
{
    if (g_files == nullptr)
        return RealCreateItem(name, context, iid, item);
    g_files->startFolder = Utf8FromUtf16(name);
    if (g_files->failing == "SHCreateItemFromParsingName")
        return E_FAIL;
    *item = static_cast<IShellItem*>(new FakeItem);
    return S_OK;
}

STAGED_CALL(SHORT, AsyncKey, "16GetAsyncKeyStatei", int key)
{
    if (g_files == nullptr)
        return RealAsyncKey(key);
    return static_cast<SHORT>(key == VK_CONTROL && g_files->controlIsDown ? 0x8000 : 0);
}

STAGED_CALL(int, FileOperation, "16SHFileOperationWP15SHFILEOPSTRUCTW", SHFILEOPSTRUCTW* operation)
{
    if (g_files == nullptr)
        return RealFileOperation(operation);
    g_files->deletions.push_back(*operation);
    for (LPCWSTR path = operation->pFrom; *path != 0; path += std::u16string_view(path).size() + 1)
    {
        g_files->deleted.push_back(PosixPath(path));
        if (g_files->failing != "SHFileOperationW")
            std::filesystem::remove_all(g_files->deleted.back());
    }
    if (g_files->onDelete)
        g_files->onDelete();
    return g_files->failing == "SHFileOperationW" ? 1 : 0;
}

STAGED_CALL(BOOL, Execute, "15ShellExecuteExWP17SHELLEXECUTEINFOW", SHELLEXECUTEINFOW* info)
{
    if (g_files == nullptr)
        return RealExecute(info);
    g_files->executed.push_back(*info);
    WCHAR path[MAX_PATH] = {};
    SHGetPathFromIDListW(static_cast<LPCITEMIDLIST>(info->lpIDList), path);
    g_files->executedPaths.push_back(PosixPath(path));
    return TRUE;
}
