// Files on the clipboard, in the formats that file managers read and write.
#pragma once

#include "windef.h"

#include "platform/shell/file_formats.h"

namespace platform
{

/// E_FAIL when the display refuses, or there is nothing to be put.
HRESULT PutFilesOnClipboard(const CopiedFiles& files);
/// Those that are there, each once; files on a mount that does not answer are taken for such. Nothing when the
/// clipboard holds none, or its owner does not answer within a second.
std::optional<CopiedFiles> FilesOnClipboard();
/// Whether pasting may find files, by what the owner says it offers. Waits no longer than a frame may; an owner that
/// does not answer by then may have some.
bool ClipboardMayHoldFiles();
/// Files that were cut have been moved: empties the clipboard, unless it holds something else than FilesOnClipboard
/// last found.
void CutFilesWereMoved();

} // namespace platform
