// Questions, failures and progress of file work.
#include "platform/desktop/file_work_talk.h"

#include <cerrno>
#include <glib.h>

namespace platform
{

namespace
{

/// The answers to a failure that can only be taken note of.
constexpr unsigned kOnlyOk = static_cast<unsigned>(FileAnswer::Cancel);

/// Whether the same may go well a moment later, or after the user has done something about it.
bool MayPass(int error)
{
    return error != kErrorSpecial && error != kErrorIntoItself && error != kErrorMount && error != ENOENT &&
           error != ENAMETOOLONG;
}

} // namespace

std::string ReasonOf(int error)
{
    switch (error)
    {
    case kErrorChanged:
        return "It is being changed while it is copied.";
    case kErrorSpecial:
        return "It is neither a file nor a folder, but a pipe, a socket or a device.";
    case kErrorIntoItself:
        return "A folder cannot be put into itself.";
    case kErrorMount:
        return "Another file system is mounted there.";
    case ENOSPC:
        return "There is no room left.";
    case EDQUOT:
        return "There is no room left for your files.";
    case ENOENT:
        return "It is not there any more.";
    case EACCES:
    case EPERM:
        return "You may not do that there.";
    case EROFS:
        return "Nothing there may be changed.";
    case ENAMETOOLONG:
        return "The name is too long.";
    case EFBIG:
        return "It is too large for the file system that it is to go to.";
    }
    return std::string(g_strerror(error)) + ".";
}

bool FileWorkTalk::IsCancelled()
{
    m_cancelled = m_cancelled || m_client.isCancelled(m_client.context);
    return m_cancelled;
}

FileAnswer FileWorkTalk::Ask(FileQuestion question, const std::string& path, unsigned answers,
                             const std::string& reason)
{
    if (IsCancelled())
        return FileAnswer::Cancel;
    const auto told = m_forAll.find(question);
    if (told != m_forAll.end() && (answers & static_cast<unsigned>(told->second)) != 0)
        return told->second;
    const FileReply reply = m_client.ask(m_client.context, {question, path.c_str(), reason.c_str(), answers, more});
    m_cancelled = m_cancelled || (reply.answer == FileAnswer::Cancel && answers != kOnlyOk);
    if (reply.forAll && reply.answer != FileAnswer::TryAgain)
        m_forAll[question] = reply.answer;
    return reply.answer;
}

FileAnswer FileWorkTalk::AskFailure(const std::string& path, int error)
{
    return AskFailure(path, error, ReasonOf(error));
}

FileAnswer FileWorkTalk::AskFailure(const std::string& path, int error, const std::string& reason)
{
    unsigned answers = kOnlyOk;
    if (MayPass(error))
        answers = answers | FileAnswer::TryAgain;
    if (more)
        answers = answers | FileAnswer::Skip;
    const FileAnswer answer = Ask(FileQuestion::Failed, path, answers, reason);
    failed = failed || answer != FileAnswer::TryAgain;
    return answers == kOnlyOk ? FileAnswer::Skip : answer;
}

void FileWorkTalk::Finish(const std::string& name)
{
    const FileWorkEnd end = failed ? FileWorkEnd::Failed : FileWorkEnd::Done;
    m_client.finished(m_client.context, m_cancelled ? FileWorkEnd::Cancelled : end, name.c_str());
}

void FileWorkTalk::Expect(std::uint64_t files, std::uint64_t bytes)
{
    m_progress.allFiles += files;
    m_progress.allBytes += bytes;
    Tell();
}

void FileWorkTalk::Begin(const std::string& name)
{
    m_name = name;
    m_progress.bytes = m_bytesBefore;
    Tell();
}

void FileWorkTalk::Advance(std::uint64_t bytes)
{
    m_progress.bytes += bytes;
    Tell();
}

void FileWorkTalk::FileDone(std::uint64_t bytes)
{
    ++m_progress.files;
    m_bytesBefore += bytes;
    m_progress.bytes = m_bytesBefore;
    Tell();
}

void FileWorkTalk::Tell()
{
    m_progress.name = m_name.c_str();
    m_client.progress(m_client.context, m_progress);
}

} // namespace platform
