// What a program's own message box calls beside the dialog manager: system menu, icons, memory, formatting.
#include "dialog_desk.h"

#include <strsafe.h>

#include <cstdarg>
#include <cstring>
#include <string>

namespace
{

using WString = std::basic_string<WCHAR>;

class BoxCalls : public conformance::DialogTest
{
};

TEST_F(BoxCalls, TheSystemMenuTellsWhetherClosingIsGreyed)
{
    Run(
        [](HWND dialog)
        {
            const HMENU menu = GetSystemMenu(dialog, FALSE);
            ASSERT_NE(menu, nullptr);
            EXPECT_EQ(GetSystemMenu(dialog, FALSE), menu);
            EXPECT_EQ(EnableMenuItem(menu, SC_CLOSE, MF_GRAYED), MF_ENABLED);
            EXPECT_EQ(EnableMenuItem(menu, SC_CLOSE, MF_ENABLED), MF_GRAYED);
            EXPECT_EQ(EnableMenuItem(menu, 12345, MF_GRAYED), -1);
            EXPECT_EQ(GetSystemMenu(dialog, TRUE), nullptr);
        });
}

LRESULT CALLBACK Silent(HWND window, UINT message, WPARAM, LPARAM)
{
    if (message == WM_PAINT)
        ValidateRect(window, nullptr);
    return 0;
}

TEST_F(BoxCalls, AControlMayGetAProcedureThatPassesNothingOn)
{
    Run(
        [](HWND dialog)
        {
            const HWND label = Control(dialog, kLabel);
            SetWindowLongPtrW(label, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Silent));
            EXPECT_EQ(SendMessageW(label, WM_GETTEXTLENGTH, 0, 0), 0);
            InvalidateRect(label, nullptr, TRUE);
            UpdateWindow(label);
        });
}

TEST(Icons, TellTheirSizeByTheirBitmaps)
{
    const HICON icon = LoadIconW(nullptr, IDI_WARNING);
    ICONINFO info{};
    ASSERT_TRUE(GetIconInfo(icon, &info));
    for (const HBITMAP bitmap : {info.hbmColor, info.hbmMask})
    {
        BITMAP size{};
        EXPECT_NE(GetObjectW(bitmap, sizeof(size), &size), 0);
        EXPECT_EQ(size.bmWidth, 32);
        EXPECT_EQ(size.bmHeight, 32);
        EXPECT_TRUE(DeleteObject(bitmap));
    }
    EXPECT_FALSE(GetIconInfo(nullptr, &info));
}

TEST(LocalMemory, IsZeroedAndWritable)
{
    const HLOCAL memory = LocalAlloc(LMEM_MOVEABLE | LMEM_ZEROINIT, 100);
    ASSERT_NE(memory, nullptr);
    auto* bytes = static_cast<unsigned char*>(LocalLock(memory));
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(bytes[99], 0);
    std::memset(bytes, 1, 100);
    EXPECT_FALSE(LocalUnlock(memory));
    EXPECT_EQ(LocalFree(memory), nullptr);
}

TEST(TheProgramsFile, IsNamedByItsPath)
{
    WCHAR path[520] = {};
    const DWORD length = GetModuleFileNameW(nullptr, path, 520);
    const WString name(path);
    EXPECT_EQ(name.size(), length);
    EXPECT_NE(name.find(TEXT("\\conformance_dialogs_tests")), WString::npos);
    WCHAR cut[4] = {};
    EXPECT_EQ(GetModuleFileNameW(nullptr, cut, 4), 4u);
    EXPECT_EQ(WString(cut, 3), name.substr(0, 3));
}

WString Format(std::size_t capacity, HRESULT result, LPCWSTR format, ...)
{
    WCHAR text[100];
    va_list arguments;
    va_start(arguments, format);
    EXPECT_EQ(StringCchVPrintfW(text, capacity, format, arguments), result);
    va_end(arguments);
    return text;
}

TEST(Formatting, FollowsTheRulesOfWidePrintf)
{
    EXPECT_EQ(Format(100, S_OK, TEXT("no arguments, 100%%")), TEXT("no arguments, 100%"));
    EXPECT_EQ(Format(100, S_OK, TEXT("%s is %d and %u"), TEXT("it"), -5, 7u), TEXT("it is -5 and 7"));
    EXPECT_EQ(Format(100, S_OK, TEXT("%hs %c|%4c|%-3c|"), "narrow", 'x', 'y', 'z'), TEXT("narrow x|   y|z  |"));
    EXPECT_EQ(Format(100, S_OK, TEXT("%08.3f %+d %#x"), 3.14159, 4, 255), TEXT("0003.142 +4 0xff"));
    EXPECT_EQ(Format(100, S_OK, TEXT("%.2s|%5s|%-5s|"), TEXT("abc"), TEXT("abc"), TEXT("abc")),
              TEXT("ab|  abc|abc  |"));
    EXPECT_EQ(Format(100, S_OK, TEXT("%*d|%-*d|%.*d"), 4, 1, 4, 2, 3, 3), TEXT("   1|2   |003"));
    EXPECT_EQ(Format(100, S_OK, TEXT("%lld %ld %s"), 1LL << 40, 9L, TEXT("behind")), TEXT("1099511627776 9 behind"));
    EXPECT_EQ(Format(4, STRSAFE_E_INSUFFICIENT_BUFFER, TEXT("%s"), TEXT("abcdef")), TEXT("abc"));
    EXPECT_EQ(Format(4, S_OK, TEXT("abc")), TEXT("abc"));
}

} // namespace
