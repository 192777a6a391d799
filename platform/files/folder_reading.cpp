// Reading folders that may not answer.
#include "platform/files/folder_reading.h"

#include "platform/files/applications_menu.h"
#include "platform/files/menu_reading.h"
#include "platform/files/place_call.h"

#include <cerrno>

namespace platform
{

namespace
{

std::shared_ptr<FolderListing> FailedListing(const std::string& path, int error)
{
    auto listing = std::make_shared<FolderListing>();
    listing->path = path;
    listing->error = error;
    return listing;
}

/// A category or program by its name in the category.
std::shared_ptr<FolderListing> ReadMenuItem(const std::string& folder, const std::string& name)
{
    const auto listing = ReadMenuFolder(folder, {});
    if (listing->error != 0)
        return listing;
    std::erase_if(listing->files, [&](const ListedFile& file) { return MenuProgramId(file.name) != name; });
    return listing->files.empty() ? FailedListing(folder, ENOENT) : listing;
}

} // namespace

std::shared_ptr<FolderListing> ReadFolderWithin(const std::string& path, FolderCallback answersLate)
{
    if (IsMenuPath(path))
        return ReadMenuFolder(path, answersLate);
    const auto listing = AskPlace<FolderListing>(
        path.empty() ? "/" : path, [path] { return ReadFolder(path); }, [path, answersLate] { answersLate(path); });
    const int error = listing != nullptr ? listing->error : ETIMEDOUT;
    if (error == 0 || IsGone(error))
        return listing;
    const auto lastSeen = FolderAsLastSeen(path);
    return lastSeen != nullptr ? lastSeen : FailedListing(path, error);
}

std::shared_ptr<FolderListing> ReadFileWithin(const std::string& folder, const std::string& name)
{
    if (IsMenuPath(folder))
        return ReadMenuItem(folder, name);
    const auto listing =
        AskPlace<FolderListing>(folder.empty() ? "/" : folder, [folder, name] { return ReadFile(folder, name); });
    const int error = listing != nullptr ? listing->error : ETIMEDOUT;
    if (error == 0 || IsGone(error))
        return listing;
    const auto lastSeen = FileAsLastSeen(folder, name);
    return lastSeen != nullptr ? lastSeen : FailedListing(folder, error);
}

bool StillHolds(const FolderListing& shown, FolderCallback answersLate)
{
    const std::shared_ptr<FolderListing> now = ReadFolderWithin(shown.path, answersLate);
    if (now->lastSeen || (now->error == 0 && SameFiles(shown, *now)))
        return true;
    if (now->error == 0)
        SaveSnapshot(*now);
    return false;
}

} // namespace platform
