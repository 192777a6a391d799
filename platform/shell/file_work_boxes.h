// What the user sees of file work: how far it is, questions, failures.
#pragma once

#include "platform/services/file_work_service.h"

#include "windows.h"

#include <functional>

namespace platform
{

/// Asks, and returns when there is an answer; Cancel when the question cannot be shown.
FileReply AskAboutFile(HWND owner, FileWork work, const FileQuestionFacts& facts);

/// A box that tells how far the work is, with a button to cancel it.
class FileProgressBox
{
public:
    FileProgressBox(FileWork work, std::function<void()> cancel) : m_work(work), m_cancel(std::move(cancel)) {}
    FileProgressBox(const FileProgressBox&) = delete;
    FileProgressBox& operator=(const FileProgressBox&) = delete;

    /// Dispatches messages until `End`, or until the box is destroyed with its owner. False when it cannot be shown.
    bool Run(HWND owner, const FileProgress& progress);
    void Show(const FileProgress& progress);
    void End();
    /// Null while it does not run.
    HWND Window() const { return m_window; }

private:
    static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
    void Cancel();

    const FileWork m_work;
    const std::function<void()> m_cancel;
    const FileProgress* m_first = nullptr;
    HWND m_window = nullptr;
    bool m_cancelled = false;
};

} // namespace platform
