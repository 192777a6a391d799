// What the boxes of file work say.
#pragma once

#include "platform/services/file_work_service.h"

#include <cstdint>
#include <string>
#include <vector>

namespace platform
{

struct FileChoice
{
    FileAnswer answer;
    const char16_t* label; ///< an ampersand before the mnemonic
};

struct FileQuestionTexts
{
    std::u16string text;
    std::vector<FileChoice> choices; ///< the first one loses nothing
    bool isWarning = false;          ///< of something that has failed or cannot be undone
};

FileQuestionTexts TextsOfQuestion(FileWork work, const FileQuestionFacts& facts);
const char16_t* TitleOfWork(FileWork work);

/// "3 of 120 files, 1.5 MB of 3.2 GB"; without what is not known.
std::u16string ProgressText(const FileProgress& progress);
/// Bytes as people read them, by powers of 1000: "512 bytes", "1.5 MB".
std::string SizeText(std::uint64_t bytes);
/// The last part of a path as it can be shown in a box: no control characters, the middle of a long one left out.
std::u16string ShownFileName(const std::string& path);

} // namespace platform
