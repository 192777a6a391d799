// Looking at picture files without being left hanging.
#include "platform/icons/icon_file.h"

#include "platform/base/file_stamp.h"
#include "platform/files/place_call.h"
#include "platform/files/regular_file.h"

namespace platform
{

namespace
{

std::shared_ptr<FileWitness> LookAt(const std::string& path)
{
    struct stat status;
    if (stat(path.c_str(), &status) != 0)
        return std::make_shared<FileWitness>(FileWitness{path});
    return std::make_shared<FileWitness>(
        FileWitness{path, ModifiedAt(status), static_cast<std::uint64_t>(status.st_size)});
}

} // namespace

std::optional<FileWitness> WitnessOf(const std::string& path)
{
    const auto witness = AskPlace<FileWitness>(path, [path] { return LookAt(path); });
    return witness != nullptr ? std::optional(*witness) : std::nullopt;
}

std::optional<std::string> PictureFileContent(const std::string& path)
{
    constexpr std::size_t kLargestFile = 64 * 1024 * 1024;
    using Content = std::optional<std::string>;
    const auto content =
        AskPlace<Content>(path, [path] { return std::make_shared<Content>(ReadRegularFile(path, kLargestFile)); });
    return content != nullptr ? std::move(*content) : std::nullopt;
}

std::vector<std::string> AnsweringFolders(std::vector<std::string> folders)
{
    std::erase_if(folders, [](const std::string& folder) { return !WitnessOf(folder); });
    return folders;
}

} // namespace platform
