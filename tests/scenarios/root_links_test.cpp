// Linking the Desktop and the Start Menu into the root, and the notice that comes before.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/failing.h"
#include "tests/scenarios/live_handle_counts.h"
#include "tests/scenarios/notice_reader.h"
#include "tests/scenarios/staged_ui.h"

#include "app/launcher_state.h"
#include "app/options.h"
#include "commands/command_table.h"
#include "prompts/message_box.h"
#include "prompts/remembered_prompt.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace fs = std::filesystem;
using namespace CustomMenu;

namespace
{

constexpr int kMessageText = 1001;

void Type(BYTE key)
{
    platform::headless::PressKey(key);
    platform::headless::ReleaseKey(key);
}

std::string TextOf(HWND window)
{
    WCHAR text[1024] = {};
    GetWindowTextW(window, text, 1024);
    return Narrow(text);
}

bool IsRecorded()
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kRootLayout.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    const UniqueRegistryKey owned(key);
    DWORD type = 1;
    DWORD size = 1;
    const bool found = RegQueryValueExW(key, TEXT("114"), nullptr, &type, nullptr, &size) == ERROR_SUCCESS;
    EXPECT_TRUE(!found || (type == REG_NONE && size == 0));
    return found;
}

class RootLinks : public testing::Test
{
protected:
    RootLinks()
    {
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, TEXT("Software\\Quillfen"));
        fs::create_directories(m_home / "Desktop");
        fs::create_directories(m_home / "data/applications");
        m_desk.MakeFile("a");
        m_desk.MakeFile("b");
        m_desk.Launch();
    }
    ~RootLinks() override
    {
        m_desk.End();
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, TEXT("Software\\Quillfen"));
        fs::remove_all(m_home / "Desktop");
        fs::remove_all(m_home / "data/applications");
    }

    void Choose(int identifier) { ChooseInMenu(m_desk, identifier, 1); }
    std::uint32_t StoredOptions()
    {
        const std::vector<std::uint8_t> bytes = m_desk.StoredBytes(kRootLayout, TEXT("options"));
        return bytes.empty() ? 0u : bytes[0];
    }

    const fs::path m_home = std::getenv("HOME");
    Desk m_desk;
};

TEST_F(RootLinks, AreAddedOnceTheNoticeIsAccepted)
{
    const BeforeTheBox person(
        [&](HWND box)
        {
            EXPECT_EQ(TextOf(box), "Orb Launcher Notice");
            EXPECT_EQ(TextOf(GetDlgItem(box, kMessageText)).substr(0, 38), "Adding the Desktop or Start Menu to th");
            EXPECT_NE(TextOf(GetDlgItem(box, kMessageText)).find("Desktop\nand"), std::string::npos);
            EXPECT_EQ(TextOf(GetDlgItem(box, kCheckBox)), "Don't tell me again");
            EXPECT_EQ(GetDlgCtrlID(GetFocus()), IDOK);
            EXPECT_FALSE(IsWindowEnabled(m_desk.Level(0).m_hWnd)) << "the root is its owner";
            Click(box, IDOK);
        });
    Choose(IDM_ADD_DESKTOP);
    EXPECT_EQ(m_desk.Items(), (Labels{"a", "b", "Desktop"})) << "a box takes the highlight away, and the place with it";
    EXPECT_EQ(StoredOptions(), 2u);
    Choose(IDM_ADD_START_MENU);
    EXPECT_EQ(m_desk.Items(), (Labels{"a", "b", "Desktop", "Start Menu"}));
    EXPECT_EQ(person.Shown(), 2);
    EXPECT_FALSE(IsRecorded());
    Choose(IDM_ADD_DESKTOP);
    Choose(IDM_ADD_START_MENU);
    EXPECT_EQ(person.Shown(), 2) << "taking one away asks nothing";
    EXPECT_EQ(m_desk.Items(), (Labels{"a", "b"}));
    EXPECT_EQ(StoredOptions(), 0u);
}

TEST_F(RootLinks, AreNotAddedWhenTheNoticeIsRefused)
{
    const BeforeTheBox::Act refusals[] = {
        [](HWND box) { Click(box, IDCANCEL); },
        [](HWND) { Type(VK_ESCAPE); },
        [](HWND box) { SendMessageW(box, WM_CLOSE, 0, 0); },
        [](HWND box)
        {
            Click(box, kCheckBox);
            Click(box, IDCANCEL);
        },
    };
    for (const auto& refusal : refusals)
    {
        const BeforeTheBox person(refusal);
        Choose(IDM_ADD_START_MENU);
        EXPECT_GE(person.Shown(), 1);
        EXPECT_EQ(m_desk.Items(), (Labels{"a", "b"}));
        EXPECT_TRUE(IsWindowEnabled(m_desk.Level(0).m_hWnd));
        EXPECT_FALSE(IsRecorded());
        EXPECT_TRUE(m_desk.StoredBytes(kRootLayout, TEXT("options")).empty()) << "nothing is saved";
    }
}

TEST_F(RootLinks, AreAddedWithoutANoticeOnceItIsSilenced)
{
    const BeforeTheBox person(
        [](HWND box)
        {
            Click(box, kCheckBox);
            Click(box, IDOK);
        });
    Choose(IDM_ADD_START_MENU);
    EXPECT_TRUE(IsRecorded());
    Choose(IDM_ADD_DESKTOP);
    EXPECT_EQ(person.Shown(), 1) << "both share it";
    EXPECT_EQ(StoredOptions(), 3u);
    EXPECT_EQ(m_desk.Items(), (Labels{"a", "Desktop", "b", "Start Menu"})) << "at the highlighted place";
    EXPECT_EQ(m_desk.Hot(), "Desktop") << "which stays so";
}

TEST_F(RootLinks, AreNotAddedWhenTheNoticeCannotBeShown)
{
    m_desk.ExpectBoxes();
    for (const char* call : {"LocalAlloc", "LocalLock", "DialogBoxIndirectParamW"})
    {
        const HandleCounts before = CountHandles();
        const BeforeTheBox person([](HWND box) { Click(box, IDOK); });
        {
            const Failing failing(call, 1);
            Choose(IDM_ADD_DESKTOP);
        }
        EXPECT_EQ(m_desk.Items(), (Labels{"a", "b"})) << call;
        EXPECT_FALSE(IsRecorded()) << call << ": nobody has seen it";
        EXPECT_TRUE(IsWindowEnabled(m_desk.Level(0).m_hWnd)) << call;
        EXPECT_EQ(CountHandles(), before) << call;
    }
    EXPECT_EQ(m_desk.BoxTexts(), (Labels(2, "Memory allocation for dialog template failed.")));
}

TEST_F(RootLinks, AreNotAddedToAMenuThatClosesMeanwhile)
{
    const BeforeTheBox person(
        [&](HWND box)
        {
            CustomMenu::CloseAllLevels();
            Click(box, IDCANCEL);
        });
    Choose(IDM_ADD_DESKTOP);
    EXPECT_FALSE(m_desk.IsOpen());
    EXPECT_EQ(g_launcher.m_options & OPTION_DESKTOP, 0u);
}

/// The box itself, with other flags than the notice has.
class MessageBoxes : public testing::Test
{
protected:
    static int Show(DWORD flags, BeforeTheBox::Act act)
    {
        const BeforeTheBox person(std::move(act));
        return ShowMessageBox(nullptr, TEXT("text"), nullptr, flags, 0, TEXT("Ex&tra"));
    }

    Desk m_desk;
};

TEST_F(MessageBoxes, AnswerWithTheButtonAndTheTick)
{
    const auto click = [](int id) { return [id](HWND box) { Click(box, id); }; };
    const auto type = [](BYTE key) { return [key](HWND) { Type(key); }; };
    const auto expectText = [](int id, const char* text, int answer)
    {
        return [=](HWND box)
        {
            EXPECT_EQ(TextOf(id != 0 ? GetDlgItem(box, id) : box), text);
            Click(box, answer);
        };
    };
    EXPECT_EQ(Show(MB_OK, expectText(0, "Error", IDOK)), IDOK) << "without a caption";
    EXPECT_EQ(Show(MB_YESNO | MBX_YESTOALL | MBX_NOTOALL, click(IDNOTOALL)), IDNOTOALL);
    EXPECT_EQ(Show(MBX_CONTINUEABORT, click(IDCONTINUE)), IDCONTINUE);
    EXPECT_EQ(Show(MB_OK, click(IDEXTRABUTTON)), IDEXTRABUTTON);
    EXPECT_EQ(Show(MB_YESNO | MBX_DONTASK | MBX_CHECKED, click(IDNO)), IDNO | 0x01000000);
    EXPECT_EQ(Show(MB_YESNO | MBX_CUSTOMCHECK | MBX_CHECKED, expectText(kCheckBox, "Don't ask me again", IDYES)),
              IDYES | 0x20000000)
        << "as the last box had";
    EXPECT_EQ(Show(MB_OKCANCEL | MBX_DONTTELL | MBX_CHECKED, type(VK_ESCAPE)), IDCANCEL);
    EXPECT_EQ(Show(MB_OK | MBX_DONTTELL | MBX_CHECKED, type(VK_ESCAPE)), IDOK) << "Esc never counts the tick";
    EXPECT_EQ(Show(MB_YESNO | 0x100, type(VK_RETURN)), IDNO);
}

TEST_F(MessageBoxes, TakeTextsOfAnyLength)
{
    const WString much(5000, TEXT('x'));
    const BeforeTheBox person(
        [&](HWND box)
        {
            EXPECT_EQ(GetWindowTextLengthW(box), 1023);
            EXPECT_EQ(GetWindowTextLengthW(GetDlgItem(box, kMessageText)), 1023);
            EXPECT_EQ(GetWindowTextLengthW(GetDlgItem(box, IDEXTRABUTTON)), 1023);
            Click(box, IDEXTRABUTTON);
        });
    EXPECT_EQ(ShowMessageBox(nullptr, much.c_str(), much.c_str(), MB_OKCANCEL, 0, much.c_str()), IDEXTRABUTTON);
    EXPECT_EQ(person.Shown(), 1);
}

SIZE SizeOf(HWND window)
{
    RECT rect{};
    GetWindowRect(window, &rect);
    return {rect.right - rect.left, rect.bottom - rect.top};
}

TEST_F(MessageBoxes, ShowIconAndMessageFont)
{
    Show(
        MB_OK | MB_ICONEXCLAMATION | MBX_DONTTELL,
        [](HWND box)
        {
            const LRESULT font = SendDlgItemMessageW(box, kMessageText, WM_GETFONT, 0, 0);
            EXPECT_NE(font, 0);
            for (const int id : {static_cast<int>(IDOK), kCheckBox, static_cast<int>(IDEXTRABUTTON)})
                EXPECT_EQ(SendDlgItemMessageW(box, id, WM_GETFONT, 0, 0), font) << id;
            constexpr int kIconPlace = 1000;
            RECT icon{};
            GetWindowRect(GetDlgItem(box, kIconPlace), &icon);
            const auto beside = platform::headless::PixelAt(icon.left + 1, icon.top + 1);
            EXPECT_NE(platform::headless::PixelAt(icon.left + 16, icon.top + 24), beside) << "in the triangle";
            const int closing = EnableMenuItem(GetSystemMenu(box, FALSE), SC_CLOSE, MF_ENABLED);
            EXPECT_EQ(closing, MF_ENABLED) << "closing is as good as its only answer";
            Click(box, IDOK);
        });
}

TEST_F(MessageBoxes, BreakLongTextsAndFollowTheDisplaysScale)
{
    WString much;
    for (int i = 0; i < 60; ++i)
        much += TEXT("some more words ");
    struct Sizes
    {
        SIZE text{}, button{};
        LONG font = 0;
    };
    const auto sizesAt = [&](UINT dpi)
    {
        Sizes sizes;
        platform::headless::SetDpi(0, dpi);
        const BeforeTheBox person(
            [&](HWND box)
            {
                LOGFONTW font{};
                GetObjectW(reinterpret_cast<HFONT>(SendDlgItemMessageW(box, IDOK, WM_GETFONT, 0, 0)), sizeof font,
                           &font);
                sizes = {SizeOf(GetDlgItem(box, kMessageText)), SizeOf(GetDlgItem(box, IDOK)), std::abs(font.lfHeight)};
                Click(box, IDOK);
            });
        ShowMessageBox(nullptr, much.c_str(), nullptr, MB_OK, 0, nullptr);
        return sizes;
    };
    const Sizes low = sizesAt(96);
    const Sizes high = sizesAt(144);
    EXPECT_LT(low.text.cx, 1920 / 2 + 100 + 28) << "half the screen";
    EXPECT_GT(low.text.cy, 3 * low.font);
    EXPECT_NEAR(high.button.cx, low.button.cx * 1.5, 8);
    EXPECT_GT(high.font, low.font);
    EXPECT_EQ(sizesAt(96).font, low.font);
}

TEST_F(MessageBoxes, AreNotShownWithoutTheirText)
{
    const BeforeTheBox person([](HWND box) { Click(box, IDOK); });
    constexpr UINT kNoString = 64000;
    EXPECT_EQ(ShowRememberedPrompt(nullptr, MB_OKCANCEL, TEXT("caption"), g_instance, kNoString, kRootLayout.c_str()),
              IDCANCEL);
    EXPECT_EQ(person.Shown(), 0);
}

TEST_F(MessageBoxes, ThatMustBeAnsweredStay)
{
    int shown = 0;
    const auto act = [&](HWND box)
    {
        switch (++shown)
        {
        case 1:
            Type(VK_ESCAPE);
            break;
        case 2:
            SendMessageW(box, WM_CLOSE, 0, 0);
            SendMessageW(box, WM_COMMAND, IDCLOSE, 0);
            EXPECT_EQ(GetMenuItemCount(GetSystemMenu(box, FALSE)), 1);
            EXPECT_EQ(EnableMenuItem(GetSystemMenu(box, FALSE), SC_CLOSE, MF_GRAYED), MF_GRAYED);
            PostMessageW(nullptr, WM_NULL, 0, 0);
            break;
        case 3:
            Click(box, 300); // help, which there is none of
            PostMessageW(nullptr, WM_NULL, 0, 0);
            break;
        default:
            Click(box, IDYES);
        }
    };
    EXPECT_EQ(Show(MB_YESNO | MB_HELP | MB_ICONQUESTION, act), IDYES);
    EXPECT_EQ(shown, 4);
}

} // namespace
