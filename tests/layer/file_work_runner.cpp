// Does one piece of file work, to be killed in the middle: layer_file_work_runner KIND [unnamed|named] SOURCE...
// FOLDER. It writes a byte when it begins. Names that are taken are replaced. With "named" the file system has no
// unnamed files, as many have not, and cannot rename without replacing.
#include "platform/services/desktop_module.h"
#include "platform/services/file_work_service.h"
#include "tests/layer/without_unnamed_files.h"

#include <condition_variable>
#include <cstring>
#include <map>
#include <mutex>
#include <string>
#include <unistd.h>

namespace
{

std::mutex g_mutex;
std::condition_variable g_changed;
bool g_finished = false;
platform::FileWorkEnd g_end;

platform::FileReply Ask(void*, const platform::FileQuestionFacts& facts)
{
    const auto replace = static_cast<unsigned>(platform::FileAnswer::Replace);
    return {(facts.answers & replace) != 0 ? platform::FileAnswer::Replace : platform::FileAnswer::Cancel, true};
}

void Finished(void*, platform::FileWorkEnd end, const char*)
{
    const std::lock_guard lock(g_mutex);
    g_finished = true;
    g_end = end;
    g_changed.notify_all();
}

} // namespace

int main(int argc, char** argv)
{
    using platform::FileWork;
    const std::map<std::string, FileWork> kinds = {
        {"copy", FileWork::Copy}, {"move", FileWork::Move}, {"trash", FileWork::Trash}};
    const auto* service =
        static_cast<const platform::FileWorkService*>(platform::DesktopModuleSymbol("orb_files_service"));
    if (argc < 5 || service == nullptr || (std::strcmp(argv[2], "named") == 0 && !ForbidUnnamedFiles()))
        return 2;
    const platform::FileWorkClient client{nullptr, [](void*, const platform::FileProgress&) {},
                                          [](void*) { return false; }, Ask, Finished};
    if (write(STDOUT_FILENO, "*", 1) != 1)
        return 2;
    service->start({kinds.at(argv[1]), argv + 3, static_cast<std::size_t>(argc) - 4, argv[argc - 1]}, client);
    std::unique_lock lock(g_mutex);
    g_changed.wait(lock, [] { return g_finished; });
    return g_end == platform::FileWorkEnd::Done ? 0 : 1;
}
