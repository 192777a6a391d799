// Copying, moving, linking and deleting files, with what the user sees of it: progress, questions, failures.
#pragma once

#include "windef.h"

#include <string>
#include <vector>

namespace platform
{

enum class FileOperation
{
    Copy,
    Move,
    Link,  ///< a symbolic link to each
    Trash, ///< where a file system has no trash, deletes after asking
};

struct FileOperationRequest
{
    FileOperation operation = FileOperation::Copy;
    std::vector<std::string> sources; ///< POSIX, absolute
    std::string folder;               ///< where to; nothing for Trash
    HWND owner = nullptr;             ///< of the boxes shown; may be null
};

/// Returns when all is done or given up; messages are dispatched meanwhile, and the process is kept. S_OK, E_ABORT when
/// the user has cancelled, E_FAIL after a failure that the user has been told.
HRESULT RunFileOperation(const FileOperationRequest& request);

/// Makes "New folder", or the first of "New folder (2)" and so on that is free. Its name; empty after a failure, which
/// the user has been told.
std::string MakeNewFolder(const std::string& folder, HWND owner);

} // namespace platform
