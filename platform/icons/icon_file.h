// The files that pictures are made from, wherever a desktop entry says they are. User-interface thread only.
#pragma once

#include "platform/base/file_content.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform
{

/// A file that a picture depends on, as it was when the picture was made; all 0 when there was none.
struct FileWitness
{
    std::string path;
    std::int64_t modified = 0; ///< nanoseconds
    std::uint64_t size = 0;
};

/// The file as it is now; nothing when its place does not answer.
std::optional<FileWitness> WitnessOf(const std::string& path);
/// The content of a picture file; null when its place does not answer.
std::shared_ptr<FileContent> PictureFileContent(const std::string& path);
/// Those of the folders that can be searched without being left hanging.
std::vector<std::string> AnsweringFolders(std::vector<std::string> folders);

} // namespace platform
