// Popup menus, used as a person uses them.
#include "platform/base/fault_points.h"
#include "platform/dialogs/menu.h"
#include "tests/layer/controls_desk.h"
#include "tests/scenarios/failing.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using platform::FindObject;
using platform::Menu;
using platform::headless::ActivateOtherApplication;
using platform::headless::MoveMouse;
using platform::headless::PressButton;
using platform::headless::ReleaseButton;
using platform::headless::TurnWheel;
using platform::screen::Button;

using Step = std::function<void()>;
using Steps = std::vector<Step>;

constexpr int kRow = 22; // of 16 pixel pictures, the metrics of the font being smaller

Step Key(BYTE key)
{
    return [key] { Desk::Tap(key); };
}

struct PopupMenus : Desk
{
    PopupMenus()
    {
        platform::headless::SetMonitors("1000x600+0+0");
        owner = ShownPopup(600, 100, 200, 300);
        menu = CreatePopupMenu();
    }

    ~PopupMenus() override
    {
        DestroyMenu(menu);
        EXPECT_EQ(platform::LiveHandles(platform::HandleKind::Menu), 0U);
        EXPECT_EQ(platform::LiveHandles(platform::HandleKind::Font), 0U);
        EXPECT_EQ(GetCapture(), nullptr);
    }

    void Fill(HMENU target, std::initializer_list<const char16_t*> texts, UINT first = 1)
    {
        for (const char16_t* text : texts)
            AppendMenuW(target, text[0] == u'-' ? MF_SEPARATOR : MF_STRING, first++, text);
    }

    HMENU AddSubMenu(const char16_t* text, std::initializer_list<const char16_t*> texts, UINT first)
    {
        const HMENU sub = CreatePopupMenu();
        Fill(sub, texts, first);
        AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(sub), text);
        return sub;
    }

    /// Tracks the menu and takes a step each time the loop waits. After the last one a menu that still waits is ended,
    /// which the test sees as −1.
    int Track(Steps steps, UINT flags = TPM_RETURNCMD, POINT at = {100, 100}, TPMPARAMS* params = nullptr)
    {
        std::size_t next = 0;
        bool stuck = false;
        platform::headless::SetIdleHandler(
            [&]
            {
                if (next < steps.size())
                {
                    steps[next++]();
                    return true;
                }
                stuck = true;
                EndMenu();
                return true;
            });
        const int result = TrackPopupMenuEx(menu, flags, at.x, at.y, owner, params);
        platform::headless::SetIdleHandler(nullptr);
        EXPECT_EQ(next, steps.size()) << "the menu closed early";
        EXPECT_EQ(Popups().size(), 0U) << "a menu is left on the screen";
        return stuck ? -1 : result;
    }

    /// Bounds of the menus that show, the first one first.
    static std::vector<RECT> Popups()
    {
        std::vector<RECT> found;
        for (const auto& window : platform::headless::Windows())
        {
            // Above the owner, which is as wide as no menu here.
            if (window.visible && window.bounds.right - window.bounds.left != 200)
                found.insert(found.begin(), window.bounds);
        }
        return found;
    }

    static POINT Row(std::size_t depth, int row)
    {
        const RECT bounds = Popups().at(depth);
        return {bounds.left + 40, bounds.top + 1 + row * kRow + kRow / 2};
    }

    static Step Hover(std::size_t depth, int row)
    {
        return [=]
        {
            const POINT at = Row(depth, row);
            MoveMouse(at.x, at.y);
        };
    }

    static Step ClickRow(std::size_t depth, int row, Button button = Button::Left)
    {
        return [=]
        {
            const POINT at = Row(depth, row);
            MoveMouse(at.x, at.y);
            PressButton(button);
            ReleaseButton(button);
        };
    }

    static Step Expect(std::size_t popups)
    {
        return [=]
        {
            EXPECT_EQ(Popups().size(), popups);
            PostMessageW(nullptr, WM_NULL, 0, 0); // no input, but the loop goes on
        };
    }

    /// Every command that the owner got.
    std::vector<WPARAM> Commands() const
    {
        std::vector<WPARAM> commands;
        for (const Record& record : m_records)
            if (record.message == WM_COMMAND)
                commands.push_back(record.wParam);
        return commands;
    }

    HWND owner = nullptr;
    HMENU menu = nullptr;
};

} // namespace

TEST_F(PopupMenus, KeysChoose)
{
    Fill(menu, {u"&Open", u"-", u"Copy", u"&Cut", u"Delete", u"D&isk", u"&Disk"});
    EXPECT_EQ(Track({Key(VK_DOWN), Key(VK_RETURN)}), 1);
    EXPECT_EQ(Track({Key(VK_DOWN), Key(VK_DOWN), Key(VK_SPACE)}), 3) << "the separator is passed over";
    EXPECT_EQ(Track({Key(VK_UP), Key(VK_RETURN)}), 7) << "from nowhere up is the last";
    EXPECT_EQ(Track({Key(VK_END), Key(VK_HOME), Key(VK_RETURN)}), 1);
    EXPECT_EQ(Track({Key(VK_ESCAPE)}), 0);
    EXPECT_EQ(Track({Key(VK_DOWN), Key(VK_TAB), Key(VK_LEFT), Key(VK_RIGHT), Key(VK_RETURN)}), 1);
    EXPECT_EQ(Track({Key('C')}), 4) << "a mark beats a first letter";
    EXPECT_EQ(Track({Key('Z'), Key('O')}), 1);
    for (const BYTE key : {VK_MENU, VK_F10, VK_APPS})
        EXPECT_EQ(Track({Key(key)}), 0) << int{key};
    EXPECT_TRUE(Commands().empty());
}

TEST_F(PopupMenus, AFirstLetterThatSeveralHaveGoesFromOneToTheNext)
{
    Fill(menu, {u"Delete", u"Rename", u"Directory"});
    EXPECT_EQ(Track({Key('D'), Key(VK_RETURN)}), 1);
    EXPECT_EQ(Track({Key('D'), Key('D'), Key(VK_RETURN)}), 3);
    EXPECT_EQ(Track({Key('D'), Key('D'), Key('D'), Key(VK_RETURN)}), 1);
    EXPECT_EQ(Track({Key('R')}), 2) << "the only one is chosen";
}

TEST_F(PopupMenus, UnderAnotherLayoutTheLetterOnTheKeyCounts)
{
    Fill(menu, {u"&Copy", u"\u0421\u0442\u0435\u0440\u0435\u0442\u044C", u"&Delete"});
    const auto type = [](BYTE key, const char16_t* text) { return [=] { platform::headless::PressKey(key, text); }; };
    EXPECT_EQ(Track({type('D', u"\u0432")}), 3);
    EXPECT_EQ(Track({type('C', u"\u0441")}), 2) << "what was typed comes first";
    EXPECT_EQ(Track({type('D', u"\u00E9"), Key(VK_ESCAPE)}), 0) << "Latin letters mean themselves";
}

TEST_F(PopupMenus, KeysGoInAndOutOfSubMenus)
{
    Fill(menu, {u"Open"});
    AddSubMenu(u"Open &with", {u"Editor", u"Viewer"}, 20);
    EXPECT_EQ(Track({Key(VK_UP), Key(VK_RIGHT), Expect(2), Key(VK_DOWN), Key(VK_RETURN)}), 21);
    EXPECT_EQ(Track({Key(VK_UP), Key(VK_RIGHT), Key(VK_LEFT), Expect(1), Key(VK_UP), Key(VK_RETURN)}), 1);
    EXPECT_EQ(Track({Key('W'), Expect(2), Key(VK_RETURN)}), 20);
    EXPECT_EQ(Track({Key('W'), Key(VK_ESCAPE), Expect(1), Key(VK_ESCAPE)}), 0) << "one level at a time";
}

TEST_F(PopupMenus, TheMouseChooses)
{
    Fill(menu, {u"Open", u"-", u"Copy", u"Delete"});
    EXPECT_EQ(Track({ClickRow(0, 0)}), 1);
    const Step stay = [] { MoveMouse(110, 110); };
    stay();
    Pump();
    EXPECT_EQ(Track({stay, Key(VK_DOWN), Key(VK_DOWN), stay, Key(VK_RETURN)}), 3)
        << "a pointer that rests under the menu chooses nothing";
    // The separator is lower than a row, so that the middle of the third row's place is in "Copy".
    EXPECT_EQ(Track({ClickRow(0, 1)}), 3);
}

TEST_F(PopupMenus, PressingDraggingAndLettingGoChooses)
{
    Fill(menu, {u"Open", u"Copy", u"Delete"});
    const Step press = [] { PressButton(Button::Right); };
    const Step release = [] { ReleaseButton(Button::Right); };
    MoveMouse(650, 150);
    press();
    Pump();
    EXPECT_EQ(Track({release, Expect(1), Key(VK_ESCAPE)}, TPM_RETURNCMD | TPM_RIGHTBUTTON, {645, 145}), 0)
        << "where it opened, a release is that of the opening press";
    press();
    Pump();
    EXPECT_EQ(Track({Hover(0, 1), release}, TPM_RETURNCMD | TPM_RIGHTBUTTON, {645, 145}), 2);
    EXPECT_EQ(Track({Hover(0, 1), press, release, Key(VK_ESCAPE)}), 0) << "the right button has to be asked for";
    const Step letGoOutside = []
    {
        MoveMouse(500, 500);
        ReleaseButton(Button::Left);
    };
    EXPECT_EQ(Track({Hover(0, 1), letGoOutside, Expect(1), Key(VK_RETURN), Key(VK_ESCAPE)}), 0)
        << "outside nothing is chosen, nor marked any more";
}

TEST_F(PopupMenus, APressOutsideEndsItAndIsNotLost)
{
    Fill(menu, {u"Open"});
    EXPECT_EQ(Track({[]
                     {
                         MoveMouse(650, 150);
                         PressButton(Button::Left);
                     }}),
              0);
    Pump();
    const auto pressed = [](const Record& record) { return record.message == WM_LBUTTONDOWN; };
    EXPECT_EQ(std::ranges::count_if(m_records, pressed), 1);
    ReleaseButton(Button::Left);
}

TEST_F(PopupMenus, RestingOnAnItemOpensAndClosesSubMenus)
{
    Fill(menu, {u"Open"});
    AddSubMenu(u"More", {u"One", u"Two"}, 10);
    AddSubMenu(u"Others", {u"Three"}, 20);
    DWORD delay = 0;
    SystemParametersInfoW(SPI_GETMENUSHOWDELAY, 0, &delay, 0);
    const Step rest = [=] { platform::AdvanceManualClock(delay); };
    const Step almost = [=] { platform::AdvanceManualClock(delay - 1); };
    EXPECT_EQ(Track({Hover(0, 1), almost, Expect(1), [] { platform::AdvanceManualClock(1); }, Expect(2),
                     // On the slanting way into the sub-menu another item may be crossed.
                     Hover(0, 2), Hover(1, 1), rest, Expect(2), ClickRow(1, 1)}),
              11);
    EXPECT_EQ(Track({Hover(0, 1), rest, Hover(0, 2), rest, Expect(2), Hover(0, 0), rest, Expect(1), ClickRow(0, 0)}),
              1);
    EXPECT_EQ(
        Track({Hover(0, 1), rest, Hover(0, 2), Hover(1, 1), Key(VK_LEFT), Expect(1), Key(VK_RIGHT), Key(VK_RETURN)}),
        10)
        << "the item that leads to where the pointer is stays the selected one";
    EXPECT_EQ(Track({ClickRow(0, 1), Expect(2), ClickRow(0, 1), Expect(2), Key(VK_LEFT), Expect(1), Key(VK_ESCAPE)}),
              0);
}

TEST_F(PopupMenus, ASubMenuIsFilledWhenItFirstShows)
{
    const HMENU sub = AddSubMenu(u"More", {}, 10);
    int filled = 0;
    FindObject<Menu>(sub)->fill = [&](HMENU handle)
    {
        ++filled;
        Fill(handle, {u"One"}, 10);
    };
    EXPECT_EQ(Track({Key(VK_DOWN), Key(VK_ESCAPE)}), 0);
    EXPECT_EQ(filled, 0) << "what nobody looks at is not made";
    EXPECT_EQ(Track({Key(VK_DOWN), Key(VK_RIGHT), Key(VK_LEFT), Key(VK_RIGHT), Key(VK_RETURN)}), 10);
    EXPECT_EQ(filled, 1);
}

TEST_F(PopupMenus, ATallMenuScrollsByKeysWheelAndArrows)
{
    for (UINT i = 1; i <= 60; ++i)
        AppendMenuW(menu, MF_STRING, i, u"Entry");
    const auto hover = [](bool bottom)
    {
        return [=]
        {
            const RECT bounds = Popups().at(0);
            EXPECT_EQ(bounds.bottom - bounds.top, 600) << "as tall as the work area";
            MoveMouse(bounds.left + 40, bottom ? bounds.bottom - 4 : bounds.top + 4);
        };
    };
    // What is under the pointer is chosen by a click: it tells what has been scrolled to.
    const int arrow = 12;
    const auto clickFirst = [=]
    {
        const RECT bounds = Popups().at(0);
        MoveMouse(bounds.left + 40, bounds.top + 1 + arrow + kRow / 2);
        PressButton(Button::Left);
        ReleaseButton(Button::Left);
    };
    const Step wheel = []
    {
        const RECT bounds = Popups().at(0);
        MoveMouse(bounds.left + 40, bounds.top + 100);
        TurnWheel(-1);
    };
    const Step tick = [] { platform::AdvanceManualClock(60); };
    EXPECT_EQ(Track({clickFirst}), 1);
    EXPECT_EQ(Track({Key(VK_END), Key(VK_RETURN)}), 60);
    EXPECT_EQ(Track({Key(VK_END), Key(VK_HOME), clickFirst}), 1);
    EXPECT_EQ(Track({wheel, clickFirst}), 2);
    EXPECT_EQ(Track({hover(true), tick, tick, clickFirst}), 3);
    EXPECT_EQ(Track({hover(true), tick, tick, hover(false), tick, clickFirst}), 2);
    EXPECT_EQ(Track({hover(true), tick, wheel, tick, tick, clickFirst}), 3) << "off the arrow it stands still";
}

TEST_F(PopupMenus, WhateverEndsItFromOutsideLeavesNothing)
{
    Fill(menu, {u"Open"});
    AddSubMenu(u"More", {u"One"}, 10);
    const Steps open = {Key(VK_UP), Key(VK_RIGHT), Expect(2)};
    const auto ends = [&](const Step& step)
    {
        Steps steps = open;
        steps.push_back(step);
        return Track(steps);
    };
    EXPECT_EQ(ends([this] { SendMessageW(owner, WM_CANCELMODE, 0, 0); }), 0);
    EXPECT_EQ(ends([] { ActivateOtherApplication(); }), 0);
    SetForegroundWindow(owner);
    EXPECT_EQ(ends([] { PostQuitMessage(7); }), 0);
    MSG quit{};
    EXPECT_TRUE(PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) << "the quit is the outer loop's";
    EXPECT_EQ(ends([this] { ShowWindow(owner, SW_HIDE); }), 0);
    ShowWindow(owner, SW_SHOW);
    EXPECT_EQ(ends([this] { DestroyMenu(menu); }), 0);
    menu = CreatePopupMenu();
    Fill(menu, {u"Open"});
    AddSubMenu(u"More", {u"One"}, 10);
    EXPECT_EQ(ends([this] { DestroyWindow(owner); }), 0);
}

TEST_F(PopupMenus, AMenuThatGoesWhileItIsPreparedIsNotShown)
{
    Fill(menu, {u"Open"});
    const HMENU sub = AddSubMenu(u"More", {u"One"}, 10);
    m_handlers[WM_INITMENUPOPUP] = [&](HWND, WPARAM wParam, LPARAM) -> std::optional<LRESULT>
    {
        if (reinterpret_cast<HMENU>(wParam) == sub)
            DestroyMenu(menu);
        return std::nullopt;
    };
    EXPECT_EQ(Track({Key(VK_UP), Key(VK_RIGHT)}), 0);
    menu = CreatePopupMenu();
    Fill(menu, {u"Open"});
    m_handlers[WM_INITMENUPOPUP] = [&](HWND, WPARAM, LPARAM) -> std::optional<LRESULT>
    {
        DestroyWindow(owner);
        return std::nullopt;
    };
    EXPECT_EQ(Track({}), 0);
}

TEST_F(PopupMenus, WhateverFailsNothingIsLeft)
{
    Fill(menu, {u"Open"});
    AddSubMenu(u"More", {u"One"}, 10);
    bool failed = true;
    for (int nth = 1; failed; ++nth)
    {
        SCOPED_TRACE(nth);
        ASSERT_LT(nth, 1000);
        const Faults faults(nth, FaultMode::Once);
        int turn = 0;
        platform::headless::SetIdleHandler(
            [&]
            {
                constexpr BYTE kKeys[] = {VK_UP, VK_RIGHT, VK_ESCAPE, VK_ESCAPE};
                Tap(kKeys[std::min<std::size_t>(static_cast<std::size_t>(turn++), 3)]);
                return true;
            });
        EXPECT_EQ(TrackPopupMenuEx(menu, TPM_RETURNCMD, 100, 100, owner, nullptr), 0);
        failed = Faults::Reached();
        platform::headless::SetIdleHandler(nullptr);
        EXPECT_EQ(Popups().size(), 0U);
        EXPECT_EQ(GetCapture(), nullptr);
        EXPECT_EQ(platform::LiveHandles(platform::HandleKind::Font), 0U);
        EXPECT_TRUE(IsWindowEnabled(owner));
        ASSERT_LT(turn, 100);
    }
}

TEST_F(PopupMenus, TheSelectedRowIsSeenAndNoOther)
{
    Fill(menu, {u"", u"", u""}); // a row without text is all background
    const auto colors = [](std::vector<int> expected)
    {
        return [=]
        {
            for (int row = 0; row < 3; ++row)
            {
                const POINT at = Row(0, row);
                const COLORREF color = GetSysColor(expected[static_cast<std::size_t>(row)]);
                const std::uint32_t pixel = RGB(GetBValue(color), GetGValue(color), GetRValue(color));
                EXPECT_EQ(platform::headless::PixelAt(at.x, at.y) & 0xFFFFFF, pixel) << row;
            }
            PostMessageW(nullptr, WM_NULL, 0, 0);
        };
    };
    const Steps steps = {Key(VK_DOWN), colors({COLOR_HIGHLIGHT, COLOR_MENU, COLOR_MENU}), Key(VK_DOWN),
                         colors({COLOR_MENU, COLOR_HIGHLIGHT, COLOR_MENU}), Key(VK_ESCAPE)};
    EXPECT_EQ(Track(steps), 0);
}
