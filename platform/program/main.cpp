// The program's entry on Linux: makes the command line that Windows would pass and calls the Windows entry point.
#include "platform/base/product.h"
#include "platform/base/text.h"
#include "platform/screen/screen.h"
#include "platform/windowing/clipboard.h"

#include "windows.h"

#include <cstdio>
#include <string>
#include <string_view>

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE previous, LPWSTR commandLine, int show);

namespace
{

constexpr char kUsage[] = "Usage: " ORB_PRODUCT " [fx,fy,align[,window]]\n"
                          "Pops up the menu of your shortcuts.\n"
                          "\n"
                          "  fx,fy    point on the screen, or a fraction of the window's size when one is given\n"
                          "  align    which corner of the menu sits there: 0 bottom left, 1 bottom right,\n"
                          "           2 top left, 3 top right\n"
                          "  window   X window id that fx,fy are relative to\n"
                          "\n"
                          "Without arguments the menu opens at the pointer.\n";
constexpr char kVersion[] = ORB_PRODUCT " " ORB_VERSION "\n";

/// Backslashes double before a quote and before the closing one, as Windows programs expect.
std::string Quoted(std::string_view argument)
{
    std::string quoted = "\"";
    std::size_t backslashes = 0;
    for (const char c : argument)
    {
        if (c == '"')
            quoted.append(backslashes + 1, '\\');
        backslashes = c == '\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    quoted.append(backslashes, '\\');
    quoted.push_back('"');
    return quoted;
}

std::string CommandLine(int argc, char** argv)
{
    std::string line;
    for (int i = 1; i < argc; ++i)
    {
        const std::string_view argument = argv[i];
        const bool plain = !argument.empty() && argument.find_first_of(" \t\"") == argument.npos;
        line += i > 1 ? " " : "";
        line += plain ? std::string(argument) : Quoted(argument);
    }
    return line;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string_view first = argc > 1 ? argv[1] : "";
    if (first == "-h" || first == "--help" || first == "--version")
    {
        std::fputs(first == "--version" ? kVersion : kUsage, stdout);
        return 0;
    }
    if (!platform::screen::Open())
    {
        std::fprintf(stderr, ORB_PRODUCT ": cannot open display %s\n", platform::screen::DisplayName().c_str());
        return 1;
    }
    std::u16string line = platform::Utf16FromUtf8(CommandLine(argc, argv));
    const int result = wWinMain(GetModuleHandleW(nullptr), nullptr, line.data(), SW_SHOW);
    platform::HandClipboardOver();
    platform::screen::Finish();
    return result;
}
