// What the user sees of file work: questions and failures.
#pragma once

#include "platform/services/file_work_service.h"

#include "windef.h"

namespace platform
{

/// Asks, and returns when there is an answer; Cancel when the question cannot be shown.
FileReply AskAboutFile(HWND owner, FileWork work, const FileQuestionFacts& facts);

} // namespace platform
