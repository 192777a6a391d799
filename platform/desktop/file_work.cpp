// File work: the thread that does it, and what is done by itself: new folders, links, the trash.
#include "platform/services/file_work_service.h"

#include "platform/desktop/file_transfer.h"
#include "platform/desktop/glib_owner.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace platform
{

namespace
{

constexpr const char* kNewFolder = "New folder";

struct Work
{
    FileWork work;
    std::vector<std::string> sources;
    std::string folder;
    FileWorkClient client;
};

std::atomic<bool> g_busy = false;

/// The new folder's name, "" when the user has been told that there is none.
std::string MakeFolder(FileWorkTalk& talk, const std::string& path)
{
    for (;;)
    {
        OpenFolder folder;
        int error = folder.Open(path);
        std::string name = kNewFolder;
        while (error == 0)
        {
            if (mkdirat(folder.fd.Get(), name.c_str(), 0777) == 0)
                return name;
            if (errno == EEXIST)
                name = FreeName(folder, kNewFolder, true, "");
            else
                error = errno;
        }
        if (talk.AskFailure(path, error) != FileAnswer::TryAgain)
            return "";
    }
}

int MakeLink(const std::string& source, const std::string& folderPath)
{
    OpenFolder parent;
    FilePlace from;
    struct stat status;
    OpenFolder folder;
    int error = PlaceOf(source, parent, from);
    if (error == 0)
        error = from.Status(status);
    if (error == 0)
        error = folder.Open(folderPath);
    if (error == 0 && S_ISDIR(status.st_mode) && LiesWithin(folder, status))
        error = kErrorIntoItself; // a menu would have no end
    std::string name = from.name;
    while (error == 0)
    {
        if (symlinkat(from.path.c_str(), folder.fd.Get(), name.c_str()) == 0)
            return 0;
        if (errno == EEXIST)
            name = FreeName(folder, from.name, S_ISDIR(status.st_mode), "link");
        else
            error = errno;
    }
    return error;
}

void Link(FileWorkTalk& talk, const std::string& source, const std::string& folder)
{
    while (const int error = MakeLink(source, folder))
        if (talk.AskFailure(source, error) != FileAnswer::TryAgain)
            return;
}

/// Deletes a file or a folder with what is in it, never following a link nor into another file system.
int Delete(const FilePlace& place, dev_t device, FileWorkTalk& talk)
{
    if (talk.IsCancelled())
        return ECANCELED;
    struct stat status;
    if (const int error = place.Status(status))
        return error;
    if (!S_ISDIR(status.st_mode))
        return unlinkat(place.folder, place.name.c_str(), 0) == 0 ? 0 : errno;
    if (status.st_dev != device)
        return kErrorMount;
    OpenFolder folder;
    std::vector<std::string> names;
    if (const int error = folder.Open(place))
        return error;
    if (const int error = folder.List(names))
        return error;
    for (const std::string& name : names)
        if (const int error = Delete(folder.At(name), device, talk))
            return error;
    return unlinkat(place.folder, place.name.c_str(), AT_REMOVEDIR) == 0 ? 0 : errno;
}

void DeleteForGood(FileWorkTalk& talk, const std::string& path)
{
    for (;;)
    {
        OpenFolder parent;
        FilePlace place;
        struct stat status;
        int error = PlaceOf(path, parent, place);
        if (error == 0)
            error = place.Status(status);
        if (error == 0)
            error = Delete(place, status.st_dev, talk);
        if (error == 0 || talk.AskFailure(path, error) != FileAnswer::TryAgain)
            return;
    }
}

/// What GIO says of a failure, in our words where we have some.
FileAnswer AskTrashFailure(FileWorkTalk& talk, const std::string& path, const GError& error)
{
    constexpr struct
    {
        int code;
        int error;
    } kKnown[] = {{G_IO_ERROR_NOT_FOUND, ENOENT},
                  {G_IO_ERROR_PERMISSION_DENIED, EACCES},
                  {G_IO_ERROR_READ_ONLY, EROFS},
                  {G_IO_ERROR_NO_SPACE, ENOSPC}};
    for (const auto& known : kKnown)
        if (g_error_matches(&error, G_IO_ERROR, known.code))
            return talk.AskFailure(path, known.error);
    return talk.AskFailure(path, EIO, std::string(error.message) + ".");
}

void Trash(FileWorkTalk& talk, const std::string& path)
{
    const GObjectOwner<GFile> file(g_vfs_get_file_for_path(g_vfs_get_local(), path.c_str()));
    for (;;)
    {
        OpenFolder parent;
        FilePlace place;
        FileAnswer answer = FileAnswer::TryAgain;
        GError* error = nullptr;
        // GIO leaks when it may not take the file out of its folder.
        if (PlaceOf(path, parent, place) == 0 && faccessat(place.folder, ".", W_OK | X_OK, AT_EACCESS) != 0)
            answer = talk.AskFailure(path, errno);
        else if (g_file_trash(file.get(), nullptr, &error))
            return;
        const GErrorOwner owner(error);
        if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_NOT_SUPPORTED))
        {
            constexpr unsigned kAnswers = FileAnswer::Cancel | FileAnswer::Skip | FileAnswer::Delete;
            if (talk.Ask(FileQuestion::NoTrash, path, kAnswers) == FileAnswer::Delete)
                DeleteForGood(talk, path);
            return;
        }
        if (error != nullptr)
            answer = AskTrashFailure(talk, path, *error);
        if (answer != FileAnswer::TryAgain)
            return;
    }
}

void DoEach(FileWorkTalk& talk, const Work& work)
{
    talk.Expect(work.sources.size(), 0);
    for (std::size_t i = 0; i < work.sources.size() && !talk.IsCancelled(); ++i)
    {
        const std::string& source = work.sources[i];
        talk.more = i + 1 < work.sources.size();
        talk.Begin(source.substr(source.rfind('/') + 1));
        if (work.work == FileWork::Link)
            Link(talk, source, work.folder);
        else
            Trash(talk, source);
        talk.FileDone(0);
    }
}

void Do(const Work& work)
{
    FileWorkTalk talk(work.client);
    std::string name;
    switch (work.work)
    {
    case FileWork::NewFolder:
        name = MakeFolder(talk, work.folder);
        break;
    case FileWork::Copy:
    case FileWork::Move:
        FileTransfer(talk, work.work == FileWork::Move).Run(work.sources, work.folder);
        break;
    case FileWork::Link:
    case FileWork::Trash:
        DoEach(talk, work);
        break;
    }
    g_busy = false; // whoever is told the end may begin again
    talk.Finish(name);
}

bool Start(const FileWorkRequest& request, FileWorkClient client)
{
    if (g_busy.exchange(true))
        return false;
    Work work{request.work, {request.sources, request.sources + request.count}, "", client};
    work.folder = request.folder != nullptr ? request.folder : "";
    try
    {
        std::thread([work = std::move(work)] { Do(work); }).detach();
        return true;
    }
    catch (const std::system_error&)
    {
        g_busy = false;
        return false;
    }
}

} // namespace

} // namespace platform

extern "C" __attribute__((visibility("default"))) const platform::FileWorkService orb_files_service = {platform::Start};
