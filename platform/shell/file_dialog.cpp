// The file picker. It is another program's, so of what can be set only what such programs know has an effect.
//
// Taken but without effect: file types, the default extension and the name to begin with, since only what exists is
// picked.
#include "platform/shell/create_instance.h"

#include "windows.h"

#include "platform/base/fault_points.h"
#include "platform/base/text.h"
#include "platform/screen/screen.h"
#include "platform/services/desktop_module.h"
#include "platform/services/peer_service.h"
#include "platform/ole/com_object.h"
#include "platform/shell/failure_report.h"
#include "platform/shell/native_parent.h"
#include "platform/shell/pumped_call.h"
#include "platform/shell/shell_item.h"

#include <atomic>
#include <climits>

namespace platform
{

namespace
{

struct Pick
{
    std::string title;
    std::string okLabel;
    std::string folder;
    bool pickFolder = false;
    std::uint32_t parent = 0;
    std::atomic<bool> givenUp = false;

    PickResult result = PickResult::Unavailable;
    std::string path;
};

/// With the mnemonic marked as other desktops' programs do.
std::string Label(std::u16string_view text)
{
    std::u16string label;
    for (const char16_t unit : text)
        label.append(unit == u'_' ? 2 : 1, unit == u'&' ? u'_' : unit);
    return Utf8FromUtf16(label);
}

/// On a thread of its own.
std::shared_ptr<Pick> RunPick(std::shared_ptr<Pick> pick)
{
    const auto* service = static_cast<const PeerService*>(DesktopModuleSymbol("orb_peer_service"));
    if (service == nullptr)
        return pick;
    const auto givenUp = [](void* context) { return static_cast<Pick*>(context)->givenUp.load(); };
    char path[PATH_MAX] = "";
    pick->result = service->pick({pick->title.c_str(), pick->okLabel.c_str(), pick->folder.c_str(), pick->pickFolder,
                                  pick->parent, givenUp, pick.get()},
                                 path, sizeof path);
    pick->path = path;
    return pick;
}

/// The owner does not take input while it lives.
class DisabledOwner
{
public:
    explicit DisabledOwner(HWND owner) : m_owner(owner != nullptr && IsWindowEnabled(owner) ? owner : nullptr)
    {
        if (m_owner != nullptr)
            EnableWindow(m_owner, FALSE);
    }
    ~DisabledOwner()
    {
        if (m_owner != nullptr)
            EnableWindow(m_owner, TRUE);
    }
    DisabledOwner(const DisabledOwner&) = delete;
    DisabledOwner& operator=(const DisabledOwner&) = delete;

private:
    HWND m_owner;
};

/// Another program's window comes before the menu while it lives.
class YieldingScreen
{
public:
    YieldingScreen() { screen::YieldToForeignDialog(true); }
    ~YieldingScreen() { screen::YieldToForeignDialog(false); }
    YieldingScreen(const YieldingScreen&) = delete;
    YieldingScreen& operator=(const YieldingScreen&) = delete;
};

class FileDialog final : public ComObject<IFileDialog, IID_IFileDialog>
{
public:
    ~FileDialog() override
    {
        if (m_result != nullptr)
            m_result->Release();
    }

    HRESULT STDMETHODCALLTYPE Show(HWND owner) override;
    HRESULT STDMETHODCALLTYPE SetFileTypes(UINT, const COMDLG_FILTERSPEC*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SetFileTypeIndex(UINT) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SetOptions(FILEOPENDIALOGOPTIONS options) override;
    HRESULT STDMETHODCALLTYPE GetOptions(FILEOPENDIALOGOPTIONS* options) override;
    HRESULT STDMETHODCALLTYPE SetDefaultFolder(IShellItem* folder) override;
    HRESULT STDMETHODCALLTYPE SetFileName(LPCWSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SetTitle(LPCWSTR title) override;
    HRESULT STDMETHODCALLTYPE SetOkButtonLabel(LPCWSTR label) override;
    HRESULT STDMETHODCALLTYPE GetResult(IShellItem** item) override;
    HRESULT STDMETHODCALLTYPE SetDefaultExtension(LPCWSTR) override { return S_OK; }

private:
    HRESULT TakeResult(const Pick& pick, HWND owner);

    FILEOPENDIALOGOPTIONS m_options = FOS_PATHMUSTEXIST | FOS_FILEMUSTEXIST;
    std::string m_title;
    std::string m_okLabel;
    std::string m_folder;
    IShellItem* m_result = nullptr;
};

HRESULT FileDialog::SetOptions(FILEOPENDIALOGOPTIONS options)
{
    if (FaultPoint("IFileDialog::SetOptions"))
        return E_OUTOFMEMORY;
    m_options = options;
    return S_OK;
}

HRESULT FileDialog::GetOptions(FILEOPENDIALOGOPTIONS* options)
{
    if (options == nullptr)
        return E_POINTER;
    if (FaultPoint("IFileDialog::GetOptions"))
        return E_OUTOFMEMORY;
    *options = m_options;
    return S_OK;
}

HRESULT FileDialog::SetDefaultFolder(IShellItem* folder)
{
    LPWSTR path = nullptr;
    if (folder == nullptr || FAILED(folder->GetDisplayName(SIGDN_FILESYSPATH, &path)))
        return E_INVALIDARG;
    m_folder = PosixFromShellPath(path);
    CoTaskMemFree(path);
    return S_OK;
}

HRESULT FileDialog::SetTitle(LPCWSTR title)
{
    m_title = title != nullptr ? Utf8FromUtf16(title) : "";
    return S_OK;
}

HRESULT FileDialog::SetOkButtonLabel(LPCWSTR label)
{
    m_okLabel = label != nullptr ? Label(label) : "";
    return S_OK;
}

HRESULT FileDialog::GetResult(IShellItem** item)
{
    if (item == nullptr)
        return E_POINTER;
    *item = nullptr;
    if (FaultPoint("IFileDialog::GetResult"))
        return E_OUTOFMEMORY;
    if (m_result == nullptr)
        return E_UNEXPECTED;
    m_result->AddRef();
    *item = m_result;
    return S_OK;
}

HRESULT FileDialog::TakeResult(const Pick& pick, HWND owner)
{
    switch (pick.result)
    {
    case PickResult::Picked:
        m_result = MakeShellItem(pick.path);
        return S_OK;
    case PickResult::Cancelled:
        return HRESULT_FROM_WIN32(ERROR_CANCELLED);
    case PickResult::Unavailable:
        ReportFailure(owner, u"There is nothing to pick a file with: neither the desktop's portal answers, nor is "
                             u"zenity or kdialog installed.");
        return HRESULT_FROM_WIN32(ERROR_NOT_SUPPORTED);
    case PickResult::Failed:
        break;
    }
    ReportFailure(owner, u"The file picker has ended without a file that can be used.");
    return E_FAIL;
}

HRESULT FileDialog::Show(HWND owner)
{
    if (FaultPoint("IFileDialog::Show"))
        return E_OUTOFMEMORY;
    if (m_result != nullptr)
        m_result->Release();
    m_result = nullptr;
    const auto pick = std::make_shared<Pick>();
    pick->title = m_title;
    pick->okLabel = m_okLabel;
    pick->folder = m_folder;
    pick->pickFolder = (m_options & FOS_PICKFOLDERS) != 0;
    pick->parent = NativeParent(owner);
    const DisabledOwner disabled(owner);
    const YieldingScreen yielding;
    // The keyboard is the picker's as soon as it shows. While it is still ours, Escape gives up one that never does.
    const auto giveUp = [&](const MSG& message)
    {
        const bool escape = message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE;
        if (escape || message.message == WM_QUIT)
            pick->givenUp = true;
        return escape;
    };
    CallPumped<Pick>([pick] { return RunPick(pick); }, giveUp);
    return TakeResult(*pick, owner);
}

} // namespace

IUnknown* MakeFileDialog()
{
    return new FileDialog;
}

} // namespace platform
