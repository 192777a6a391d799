// Looking at picture files without being left hanging.
#include "platform/icons/icon_file.h"

#include "platform/base/file_stamp.h"
#include "platform/files/place_call.h"

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

std::shared_ptr<FileContent> PictureFileContent(const std::string& path)
{
    return AskPlace<FileContent>(
        path, [path] { return std::make_shared<FileContent>(path); });
}

std::vector<std::string> AnsweringFolders(std::vector<std::string> folders)
{
    std::erase_if(folders, [](const std::string& folder) { return !WitnessOf(folder); });
    return folders;
}

} // namespace platform
