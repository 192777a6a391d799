// Preparing the file picker and reading what was picked.
#include "commands/open_dialog.h"

#include "support/com_ptr.h"
#include "support/item_list.h"
#include "support/wstring.h"

#include <algorithm>

namespace CustomMenu
{

namespace
{

constexpr LPCWSTR kDesktop = TEXT("shell:Desktop");

HRESULT SetTypes(IFileDialog& dialog, const OpenDialogParams& params)
{
    const HRESULT result = dialog.SetFileTypes(params.typeCount, params.types);
    return FAILED(result) ? result : dialog.SetFileTypeIndex(params.typeIndex);
}

HRESULT SetUp(IFileDialog& dialog, const OpenDialogParams& params)
{
    FILEOPENDIALOGOPTIONS options = 0;
    HRESULT result = dialog.GetOptions(&options);
    if (SUCCEEDED(result))
        result = dialog.SetOptions(options | params.options);
    if (SUCCEEDED(result) && params.types != nullptr)
        result = SetTypes(dialog, params);
    if (SUCCEEDED(result) && params.defaultExtension != nullptr)
        result = dialog.SetDefaultExtension(params.defaultExtension);
    return result;
}

/// Texts that the picker also works without.
void SetTexts(IFileDialog& dialog, const OpenDialogParams& params)
{
    if (params.title != nullptr)
        dialog.SetTitle(params.title);
    if (params.okLabel != nullptr)
        dialog.SetOkButtonLabel(params.okLabel);
    dialog.SetFileName(params.buffer);
    params.buffer[0] = 0;
}

HRESULT SetStartFolder(IFileDialog& dialog, LPCWSTR name)
{
    ComPtr<IShellItem> folder;
    const HRESULT result =
        SHCreateItemFromParsingName(name != nullptr ? name : kDesktop, nullptr, IID_IShellItem, folder.ReceiveVoid());
    if (SUCCEEDED(result))
        dialog.SetDefaultFolder(folder.Get());
    return result;
}

HRESULT ReadPath(IFileDialog& dialog, const OpenDialogParams& params)
{
    ComPtr<IShellItem> picked;
    HRESULT result = dialog.GetResult(picked.Receive());
    if (FAILED(result))
        return result;
    ShellString path;
    result = picked->GetDisplayName(SIGDN_FILESYSPATH, path.Receive());
    if (FAILED(result))
        return result;
    const WStringView text(path.Get());
    const std::size_t length = std::min<std::size_t>(text.size(), params.bufferSize - 1);
    *std::copy_n(text.begin(), length, params.buffer) = 0;
    return result;
}

} // namespace

HRESULT ShowOpenDialog(const OpenDialogParams& params)
{
    ComPtr<IFileDialog> dialog;
    HRESULT result =
        CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_INPROC_SERVER, IID_IFileDialog, dialog.ReceiveVoid());
    if (SUCCEEDED(result))
        result = SetUp(*dialog.Get(), params);
    if (FAILED(result))
        return result;
    SetTexts(*dialog.Get(), params);
    result = SetStartFolder(*dialog.Get(), params.defaultFolder);
    if (SUCCEEDED(result))
        result = dialog->Show(params.owner);
    return SUCCEEDED(result) ? ReadPath(*dialog.Get(), params) : result;
}

} // namespace CustomMenu
