// Files on the clipboard, in the formats that file managers read and write.
#pragma once

#include "windef.h"

#include <optional>
#include <string>
#include <vector>

namespace platform
{

struct ClipboardFiles
{
    std::vector<std::string> paths; ///< POSIX, absolute, of local files; each once
    bool cut = false;               ///< to be moved by whoever pastes
};

/// E_FAIL when the display refuses, or there is nothing to be put.
HRESULT PutFilesOnClipboard(const ClipboardFiles& files);
/// Those that are there; files on a mount that does not answer are taken for such. Nothing when the clipboard holds
/// none, or its owner does not answer within a second.
std::optional<ClipboardFiles> FilesOnClipboard();
/// Whether pasting may find files, by what the owner says it offers. Waits no longer than a frame may; an owner that
/// does not answer by then may have some.
bool ClipboardMayHoldFiles();
/// Files that were cut have been moved: empties the clipboard, unless it holds something else than FilesOnClipboard
/// last found.
void CutFilesWereMoved();

} // namespace platform
