// A program that does one thing with the clipboard by the layer's means, for tests with real programs at the other end.
// It ends as the launcher does.
//
//   copy PATH...    puts files there, to be copied
//   cut PATH...     likewise, to be moved
//   text TEXT       puts text there
//   copy-many N     puts N files there that need not exist
//   paste           prints "copy" or "cut" and each path; "nothing" when there are no files
//   moved           pastes, and says that what was cut has been moved
//   get-text, get-marked   prints the text on the clipboard, or what is marked
//   may-hold        prints whether there may be files
#include "platform/shell/clipboard_files.h"
#include "platform/base/text.h"
#include "platform/windowing/clipboard.h"

#include "windows.h"

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace
{

using namespace platform;

/// Bytes, which the command line of Windows would not keep.
std::vector<std::string> Arguments()
{
    std::ifstream file("/proc/self/cmdline");
    std::vector<std::string> arguments;
    for (std::string argument; std::getline(file, argument, '\0');)
        arguments.push_back(argument);
    arguments.erase(arguments.begin());
    return arguments;
}

bool PutMany(int count)
{
    CopiedFiles files;
    for (int i = 0; i < count; ++i)
        files.paths.push_back("/tmp/a folder of many files/file number " + std::to_string(i));
    return PutFilesOnClipboard(files) == S_OK;
}

void PrintFiles(const std::optional<CopiedFiles>& files)
{
    std::puts(!files ? "nothing" : files->cut ? "cut" : "copy");
    for (const std::string& path : files.value_or(CopiedFiles{}).paths)
        std::puts(path.c_str());
}

void PrintText(const std::optional<std::u16string>& text)
{
    std::puts(text ? Utf8FromUtf16(*text).c_str() : "nothing");
}

bool Run(const std::string& command, const std::vector<std::string>& rest)
{
    if (command == "copy" || command == "cut")
        return PutFilesOnClipboard({rest, command == "cut"}) == S_OK;
    if (command == "copy-many")
        return PutMany(std::atoi(rest.at(0).c_str()));
    if (command == "text")
        return PutTextOnClipboard(Utf16FromUtf8(rest.at(0)));
    if (command == "get-text" || command == "get-marked")
        PrintText(ClipboardText(command == "get-text" ? screen::Selection::Clipboard : screen::Selection::Primary));
    else if (command == "may-hold")
        std::puts(ClipboardMayHoldFiles() ? "yes" : "no");
    else
        PrintFiles(FilesOnClipboard());
    if (command == "moved")
        CutFilesWereMoved();
    return true;
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int)
{
    const std::vector<std::string> arguments = Arguments();
    if (arguments.empty())
        return 2;
    const bool done = Run(arguments[0], {arguments.begin() + 1, arguments.end()});
    std::fflush(stdout);
    return done ? 0 : 1;
}
