// File work done to its end, its questions answered as a test has planned.
#pragma once

#include "platform/services/desktop_module.h"
#include "platform/services/file_work_service.h"
#include "tests/layer/shell_scratch.h"

#include <condition_variable>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <map>
#include <mutex>
#include <set>
#include <unistd.h>

namespace shell_test
{

using platform::FileAnswer;
using platform::FileQuestion;
using platform::FileWork;
using platform::FileWorkEnd;

/// What is in a folder: paths seen from there, with the files' contents, links as "-> target", folders as "/".
inline std::map<std::string, std::string> Tree(const std::filesystem::path& folder)
{
    std::map<std::string, std::string> tree;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
    {
        const std::string name = entry.path().lexically_relative(folder);
        if (entry.is_symlink())
            tree[name] = "-> " + std::filesystem::read_symlink(entry).native();
        else
            tree[name] = entry.is_directory() ? "/" : entry.is_regular_file() ? ContentOf(entry.path()) : "special";
    }
    return tree;
}
using Files = std::map<std::string, std::string>;

/// Wants work done, and waits for it.
class Worker
{
public:
    struct Asked
    {
        FileQuestion question;
        std::string path;
        std::string reason;
        unsigned answers;
        bool more;
        bool operator==(const Asked&) const = default;
    };

    FileWorkEnd Do(FileWork work, const std::vector<std::filesystem::path>& sources,
                   const std::filesystem::path& folder = "")
    {
        EXPECT_TRUE(DoUnlessBusy(work, sources, folder)) << "other work is under way";
        return m_end;
    }

    /// The same; false when other work is under way.
    bool DoUnlessBusy(FileWork work, const std::vector<std::filesystem::path>& sources,
                      const std::filesystem::path& folder)
    {
        asked.clear();
        m_finished = false;
        m_cancelled = false;
        std::vector<const char*> paths;
        for (const auto& source : sources)
            paths.push_back(source.c_str());
        const auto* service =
            static_cast<const platform::FileWorkService*>(platform::DesktopModuleSymbol("orb_files_service"));
        const platform::FileWorkClient client{this, Progress, IsCancelled, Ask, Finished};
        if (!service->start({work, paths.data(), paths.size(), folder.c_str()}, client))
            return false;
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_finished; });
        return true;
    }

    /// The questions, in short.
    std::vector<FileQuestion> Questions() const
    {
        std::vector<FileQuestion> questions;
        for (const Asked& one : asked)
            questions.push_back(one.question);
        return questions;
    }

    std::map<FileQuestion, platform::FileReply> answers; ///< Cancel where none is planned
    std::function<void(const Asked&)> whenAsked;
    std::function<bool(const platform::FileProgress&)> cancelWhen;
    std::vector<Asked> asked;
    platform::FileProgress last{};
    std::string name;

private:
    static Worker& Of(void* context) { return *static_cast<Worker*>(context); }
    static void Progress(void* context, const platform::FileProgress& progress)
    {
        Worker& worker = Of(context);
        worker.last = progress;
        worker.m_cancelled = worker.m_cancelled || (worker.cancelWhen && worker.cancelWhen(progress));
    }
    static bool IsCancelled(void* context) { return Of(context).m_cancelled; }
    static platform::FileReply Ask(void* context, const platform::FileQuestionFacts& facts)
    {
        Worker& worker = Of(context);
        worker.asked.push_back({facts.question, facts.path, facts.reason, facts.answers, facts.more});
        if (worker.whenAsked)
            worker.whenAsked(worker.asked.back());
        const auto planned = worker.answers.find(facts.question);
        return planned != worker.answers.end() ? planned->second : platform::FileReply{};
    }
    static void Finished(void* context, FileWorkEnd end, const char* name)
    {
        Worker& worker = Of(context);
        const std::lock_guard lock(worker.m_mutex);
        worker.m_end = end;
        worker.name = name;
        worker.m_finished = true;
        worker.m_changed.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_finished = false;
    bool m_cancelled = false;
    FileWorkEnd m_end = FileWorkEnd::Failed;
};

/// A folder on another file system than the scratch home's; gone with the object.
class ElsewhereFolder
{
public:
    ElsewhereFolder()
    {
        std::string name = "/dev/shm/orb-test-XXXXXX";
        if (mkdtemp(name.data()) != nullptr)
            m_path = name;
    }
    ~ElsewhereFolder() { std::filesystem::remove_all(m_path); }
    ElsewhereFolder(const ElsewhereFolder&) = delete;
    ElsewhereFolder& operator=(const ElsewhereFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }
    bool IsElsewhere() const { return !m_path.empty() && StatusOf(Home()).st_dev != StatusOf(m_path).st_dev; }

private:
    std::filesystem::path m_path;
};

} // namespace shell_test
