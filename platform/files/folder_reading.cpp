// Reading folders that may not answer.
#include "platform/files/folder_reading.h"

#include "platform/files/bounded_call.h"
#include "platform/files/trusted_place.h"

#include <cerrno>
#include <map>

namespace platform
{

namespace
{

struct WaitingFolders
{
    std::mutex mutex;
    std::map<std::string, bool> paths; ///< whether the reader has given up
};

/// Folders that owe an answer.
WaitingFolders& Waiting()
{
    static auto& waiting = *new WaitingFolders;
    return waiting;
}

std::shared_ptr<FolderListing> FailedListing(const std::string& path, int error)
{
    auto listing = std::make_shared<FolderListing>();
    listing->path = path;
    listing->error = error;
    return listing;
}

} // namespace

std::shared_ptr<FolderListing> ReadFolderWithin(const std::string& path, FolderCallback answersLate)
{
    if (InTrustedPlace(path))
        return ReadFolder(path);
    constexpr std::chrono::milliseconds kPatience{1000};
    WaitingFolders& waiting = Waiting();
    {
        const std::lock_guard lock(waiting.mutex);
        if (!waiting.paths.try_emplace(path, false).second)
            return FailedListing(path, ETIMEDOUT);
    }
    auto listing = CallWithin<FolderListing>(kPatience,
                                             [path, answersLate, &waiting]
                                             {
                                                 auto answer = ReadFolder(path);
                                                 std::unique_lock lock(waiting.mutex);
                                                 const bool late = waiting.paths.extract(path).mapped();
                                                 lock.unlock();
                                                 if (late)
                                                     answersLate(path);
                                                 return answer;
                                             });
    if (listing == nullptr)
    {
        const std::lock_guard lock(waiting.mutex);
        const auto owed = waiting.paths.find(path);
        if (owed != waiting.paths.end())
            owed->second = true;
        listing = FailedListing(path, ETIMEDOUT);
    }
    return listing;
}

bool StillHolds(const FolderListing& shown, FolderCallback answersLate)
{
    const std::shared_ptr<FolderListing> now = ReadFolderWithin(shown.path, answersLate);
    if (now->error == 0 && SameFiles(shown, *now))
        return true;
    if (now->error == 0)
        SaveSnapshot(*now);
    return false;
}

} // namespace platform
