// The chain of levels as it is walked, enabled and made active.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/failing.h"

#include <gtest/gtest.h>

#include <utility>

using CustomMenu::CustomBar;

namespace
{

/// Does something when a window is destroyed: its level is closing by then, and the window still there.
class AtDestruction
{
public:
    AtDestruction(HWND window, std::function<void()> action) : m_action(std::move(action))
    {
        SetWindowSubclass(window, Procedure, reinterpret_cast<UINT_PTR>(this), reinterpret_cast<DWORD_PTR>(this));
    }
    ~AtDestruction() { EXPECT_FALSE(m_action) << "the window is still there"; }
    AtDestruction(const AtDestruction&) = delete;
    AtDestruction& operator=(const AtDestruction&) = delete;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR data)
    {
        const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
        if (message == WM_DESTROY)
            std::exchange(reinterpret_cast<AtDestruction*>(data)->m_action, nullptr)();
        return result;
    }

    std::function<void()> m_action;
};

class Chain : public testing::Test
{
protected:
    Chain()
    {
        m_desk.MakeFile("Games/Arcade/pong");
        m_desk.MakeFolder("Office");
        m_desk.Launch("100,700,0");
        m_desk.Click("Games");
    }

    CustomBar& Root() { return m_desk.Level(0); }

    Desk m_desk;
};

TEST_F(Chain, AWalkGoesOnThoughALevelTakesOthersAlong)
{
    m_desk.Click("Arcade", 1);
    const AtDestruction arcade(m_desk.Level(2).m_hWnd, [&] { DestroyWindow(m_desk.Level(1).m_hWnd); });
    CustomMenu::DestroyLevelsAfter(Root());
    EXPECT_EQ(m_desk.Levels(), 1);
    EXPECT_TRUE(IsWindow(Root().m_hWnd));
}

TEST_F(Chain, ALevelHeldElsewhereMayOutliveItsOpener)
{
    m_desk.Click("Arcade", 1);
    CustomBar& arcade = m_desk.Level(2);
    arcade.AddRef();
    CustomMenu::DestroyAllLevels();
    EXPECT_EQ(m_desk.Levels(), 1);
    arcade.Release();
    EXPECT_EQ(m_desk.Levels(), 0);
}

TEST_F(Chain, TheKeyboardPassesOverALevelThatIsClosing)
{
    const AtDestruction games(m_desk.Level(1).m_hWnd,
                              [&]
                              {
                                  CustomMenu::FocusDeepestLevel();
                                  EXPECT_EQ(GetFocus(), Root().m_toolbar);
                              });
    DestroyWindow(m_desk.Level(1).m_hWnd);
}

TEST_F(Chain, TheKeyboardPassesOverALevelThatHasNoToolbarYet)
{
    auto* const coming = new CustomBar(&Root(), 0, {nullptr, nullptr}, WString(), false);
    SetFocus(nullptr);
    CustomMenu::FocusDeepestLevel();
    EXPECT_EQ(GetFocus(), m_desk.Level(1).m_toolbar);
    coming->Release();
}

TEST_F(Chain, ALevelThatIsClosingIsNotBroughtToTheForeground)
{
    CustomBar& child = m_desk.Level(1);
    const AtDestruction games(child.m_hWnd,
                              [&]
                              {
                                  SetActiveWindow(Root().m_hWnd);
                                  const MessageCounter activations(child.m_hWnd, WM_ACTIVATE);
                                  child.EnableMenu(true);
                                  EXPECT_EQ(activations.Count(), 0);
                              });
    DestroyWindow(child.m_hWnd);
}

TEST_F(Chain, AnEnabledLevelBecomesActiveThoughTheForegroundIsRefused)
{
    const MessageCounter activations(Root().m_hWnd, WM_ACTIVATE);
    const Failing refused("SetForegroundWindow");
    Root().EnableMenu(true);
    EXPECT_EQ(activations.Count(), 2) << "it comes, and goes as the deepest level takes the keyboard";
}

TEST_F(Chain, AltIsLeftAloneWhereNobodyKnowsWhetherItIsDown)
{
    const MessageCounter presses(m_desk.Level(1).m_toolbar, WM_SYSKEYDOWN);
    platform::SetFaultHook(
        [](const char* asked)
        { return asked == std::string_view("SetForegroundWindow") || asked == std::string_view("GetKeyboardState"); });
    Root().EnableMenu(true);
    platform::SetFaultHook(nullptr);
    m_desk.Settle();
    EXPECT_EQ(presses.Count(), 0);
}

TEST_F(Chain, TheOpenerIsActiveBeforeTheOldSubLevelGoes)
{
    const HWND other = CreateWindowExW(0, TEXT("Static"), nullptr, WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr,
                                       nullptr, nullptr);
    SetActiveWindow(other);
    {
        const AtDestruction games(m_desk.Level(1).m_hWnd, [&] { EXPECT_EQ(GetActiveWindow(), Root().m_hWnd); });
        Root().OnItemCommand(ItemCommandMode::OpenSubmenu, m_desk.IndexOf("Office", 0));
    }
    DestroyWindow(other);
}

TEST_F(Chain, TheOpenersHighlightIsPaintedAtOnce)
{
    m_desk.Idle();
    const MessageCounter paints(Root().m_toolbar, WM_PAINT);
    Root().OnItemCommand(ItemCommandMode::OpenSubmenu, m_desk.IndexOf("Office", 0));
    EXPECT_EQ(paints.Count(), 1) << "before anything is dispatched";
}

} // namespace
