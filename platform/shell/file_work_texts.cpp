// Wording of questions, failures and progress.
#include "platform/shell/file_work_texts.h"

#include "platform/base/text.h"

#include <array>
#include <cstdio>

namespace platform
{

namespace
{

std::u16string Quoted(const std::u16string& name)
{
    return u"\u201C" + name + u"\u201D";
}

std::u16string FolderOf(const std::string& path)
{
    const std::string folder = path.substr(0, path.rfind('/'));
    return ShownFileName(folder.empty() ? "/" : folder);
}

/// East Asian letters and pictures take twice the room of others; of a pair each half takes one.
std::size_t ColumnsOf(char16_t unit)
{
    return unit >= 0x1100 && (unit & 0xF800) != 0xD800 ? 2 : 1;
}

/// What cannot be said of a file after "could not be".
const char16_t* PastOf(FileWork work)
{
    switch (work)
    {
    case FileWork::Copy:
        return u" could not be copied";
    case FileWork::Move:
        return u" could not be moved";
    case FileWork::Link:
        return u" could not be linked to";
    case FileWork::Trash:
        return u" could not be deleted";
    default:
        return u": no folder could be made there";
    }
}

std::u16string Sentence(FileWork work, const FileQuestionFacts& facts)
{
    const std::u16string name = Quoted(ShownFileName(facts.path));
    const std::u16string there = name + u" is already in " + Quoted(FolderOf(facts.path)) + u".\n\n";
    switch (facts.question)
    {
    case FileQuestion::NameTaken:
        return there + u"Replace it with the one that is being put there?";
    case FileQuestion::FolderTaken:
        return there +
               u"Put the content of the one folder into the other? You will be asked about each file whose name "
               u"is taken.";
    case FileQuestion::KindsDiffer:
        return there + u"One of the two is a folder and the other is not, so neither can replace the other.";
    case FileQuestion::NoTrash:
        return name + u" cannot be put into the trash: there is none where it lies.\n\nDelete it for good? This cannot "
                      u"be undone.";
    case FileQuestion::Failed:
        break;
    }
    return name + PastOf(work) + u".\n\n" + Utf16FromUtf8(facts.reason);
}

} // namespace

FileQuestionTexts TextsOfQuestion(FileWork work, const FileQuestionFacts& facts)
{
    const FileChoice possible[] = {
        {FileAnswer::TryAgain, u"&Try again"},
        {FileAnswer::Delete, u"&Delete"},
        {FileAnswer::Replace, facts.question == FileQuestion::FolderTaken ? u"&Merge" : u"&Replace"},
        {FileAnswer::Skip, u"&Skip"},
        {FileAnswer::KeepBoth, u"&Keep both"},
    };
    FileQuestionTexts texts;
    texts.text = Sentence(work, facts);
    texts.isWarning = facts.question == FileQuestion::Failed || facts.question == FileQuestion::NoTrash;
    for (const FileChoice& choice : possible)
    {
        // Skipping the last one is cancelling.
        const bool makesSense = facts.more || choice.answer != FileAnswer::Skip;
        if ((facts.answers & static_cast<unsigned>(choice.answer)) != 0 && makesSense)
            texts.choices.push_back(choice);
    }
    texts.choices.push_back({FileAnswer::Cancel, texts.choices.empty() ? u"OK" : u"Cancel"});
    return texts;
}

const char16_t* TitleOfWork(FileWork work)
{
    switch (work)
    {
    case FileWork::Copy:
        return u"Copy";
    case FileWork::Move:
        return u"Move";
    case FileWork::Link:
        return u"Create shortcut";
    case FileWork::Trash:
        return u"Delete";
    default:
        return u"New folder";
    }
}

std::string SizeText(std::uint64_t bytes)
{
    if (bytes < 1000)
        return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
    constexpr std::array kUnits = {"kB", "MB", "GB", "TB", "PB", "EB"};
    double size = static_cast<double>(bytes) / 1000;
    std::size_t unit = 0;
    for (; size >= 999.95 && unit + 1 < kUnits.size(); ++unit)
        size /= 1000;
    char text[32];
    std::snprintf(text, sizeof text, "%.1f %s", size, kUnits[unit]);
    return text;
}

std::u16string ProgressText(const FileProgress& progress)
{
    std::string text = std::to_string(progress.files);
    if (progress.allFiles > 0)
        text += " of " + std::to_string(progress.allFiles);
    text += progress.allFiles == 1 ? " file" : " files";
    if (progress.allBytes > 0)
        text += ", " + SizeText(progress.bytes) + " of " + SizeText(progress.allBytes);
    return Utf16FromUtf8(text);
}

std::u16string ShownFileName(const std::string& path)
{
    constexpr std::size_t kWidest = 44; ///< columns
    const std::size_t slash = path.rfind('/');
    std::u16string name = Utf16FromUtf8(slash == path.npos || path.size() == 1 ? path : path.substr(slash + 1));
    for (char16_t& unit : name)
        if (unit < 0x20 || unit == 0x7F)
            unit = 0xFFFD;
    std::size_t columns = 0;
    for (const char16_t unit : name)
        columns += ColumnsOf(unit);
    if (columns <= kWidest)
        return name;
    std::size_t start = 0;
    std::size_t end = name.size();
    for (columns = 0; columns < kWidest / 2; ++start)
        columns += ColumnsOf(name[start]);
    for (columns = 0; columns < kWidest / 2;)
        columns += ColumnsOf(name[--end]);
    start -= (name[start - 1] & 0xFC00) == 0xD800; // no half of a surrogate pair
    end += (name[end] & 0xFC00) == 0xDC00;
    return name.substr(0, start) + u"\u2026" + name.substr(end);
}

} // namespace platform
