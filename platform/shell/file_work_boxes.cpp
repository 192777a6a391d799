// The boxes of file work.
#include "platform/shell/file_work_boxes.h"

#include "platform/base/product.h"
#include "platform/base/text.h"

#include "windows.h"

namespace platform
{

FileReply AskAboutFile(HWND owner, FileWork, const FileQuestionFacts& facts)
{
    const std::u16string text = Utf16FromUtf8(std::string(facts.path) + "\n" + facts.reason);
    const UINT type = facts.answers == static_cast<unsigned>(FileAnswer::Cancel) ? MB_OK : MB_OKCANCEL;
    const int answer = MessageBoxW(owner, text.c_str(), u"" ORB_PRODUCT_TITLE, type);
    for (const FileAnswer possible : {FileAnswer::Delete, FileAnswer::KeepBoth, FileAnswer::TryAgain})
        if (answer == IDOK && (facts.answers & static_cast<unsigned>(possible)) != 0)
            return {possible, false};
    return {};
}

} // namespace platform
