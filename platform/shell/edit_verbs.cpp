// Verbs that change files: by the clipboard and by file operations.
#include "platform/shell/verbs.h"

#include "windows.h"

#include "platform/shell/clipboard_files.h"
#include "platform/shell/file_operation.h"

namespace platform
{

namespace
{

std::vector<std::string> PathsOf(const VerbTarget& target)
{
    std::vector<std::string> paths;
    for (const VerbItem& item : target.items)
        paths.push_back(item.path);
    return paths;
}

std::string FolderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

} // namespace

HRESULT CutItems(const VerbTarget& target)
{
    return PutFilesOnClipboard({PathsOf(target), true});
}

HRESULT CopyItems(const VerbTarget& target)
{
    return PutFilesOnClipboard({PathsOf(target), false});
}

bool CanPaste(const VerbTarget&)
{
    return ClipboardMayHoldFiles();
}

HRESULT PasteInto(const VerbTarget& target)
{
    const VerbItem& item = target.items.front();
    const std::string folder = LeadsToFolder(item) ? item.path : FolderOf(item.path);
    const std::optional<CopiedFiles> files = FilesOnClipboard();
    if (!files || files->paths.empty())
        return S_FALSE;
    const FileOperation operation = files->cut ? FileOperation::Move : FileOperation::Copy;
    const HRESULT result = RunFileOperation({operation, files->paths, folder, target.owner});
    if (files->cut && SUCCEEDED(result))
        CutFilesWereMoved();
    return result;
}

HRESULT LinkItems(const VerbTarget& target)
{
    return RunFileOperation({FileOperation::Link, PathsOf(target), FolderOf(target.items.front().path), target.owner});
}

HRESULT DeleteItems(const VerbTarget& target)
{
    return RunFileOperation({FileOperation::Trash, PathsOf(target), {}, target.owner});
}

HRESULT NewFolderIn(const VerbTarget& target)
{
    return MakeNewFolder(target.items.front().path, target.owner).empty() ? E_FAIL : S_OK;
}

} // namespace platform
