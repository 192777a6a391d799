// What file work says to whoever wants it done, and hears from them.
#pragma once

#include "platform/services/file_work_service.h"

#include <map>
#include <string>

namespace platform
{

/// Failures are errno values, or these.
enum FileWorkError : int
{
    kErrorChanged = -1,    ///< the file changed while it was copied
    kErrorSpecial = -2,    ///< a pipe, socket or device
    kErrorIntoItself = -3, ///< a folder that holds the place where it is to go
    kErrorMount = -4,      ///< another file system is mounted within what is to be deleted
    kErrorPartly = -5,     ///< done but for what the user has been told or has skipped
};

/// A sentence.
std::string ReasonOf(int error);

class FileWorkTalk
{
public:
    explicit FileWorkTalk(FileWorkClient client) : m_client(client) {}

    /// The user has cancelled, by the progress box or as an answer.
    bool IsCancelled();
    FileAnswer Ask(FileQuestion question, const std::string& path, unsigned answers, const std::string& reason = "");
    /// TryAgain, Skip or Cancel. Nothing is skipped where nothing follows.
    FileAnswer AskFailure(const std::string& path, int error);
    FileAnswer AskFailure(const std::string& path, int error, const std::string& reason);

    void Finish(const std::string& name);

    /// Whether other files follow the one at hand.
    bool more = false;
    bool failed = false;

    void Expect(std::uint64_t files, std::uint64_t bytes);
    /// What is told from here on is of this file.
    void Begin(const std::string& name);
    void Advance(std::uint64_t bytes);
    /// The file at hand is done with, whatever became of it; `bytes` of it were expected.
    void FileDone(std::uint64_t bytes);

private:
    void Tell();

    FileWorkClient m_client;
    bool m_cancelled = false;
    std::map<FileQuestion, FileAnswer> m_forAll;
    std::string m_name;
    FileProgress m_progress{};
    std::uint64_t m_bytesBefore = 0; ///< the file at hand
};

constexpr unsigned operator|(FileAnswer a, FileAnswer b)
{
    return static_cast<unsigned>(a) | static_cast<unsigned>(b);
}
constexpr unsigned operator|(unsigned a, FileAnswer b)
{
    return a | static_cast<unsigned>(b);
}

} // namespace platform
