// The walks over the chain of levels.
//
// Any window call can take levels out of the chain, so a walk goes by index and looks at the chain afresh each time.
#include "menu/custom_bar.h"

#include "app/launcher_state.h"

namespace CustomMenu
{

namespace
{

const std::vector<CustomBar*>& Levels()
{
    return g_launcher.m_levels;
}

/// Every level that is not closing, from the deepest up to `end`, which is not visited; stops when a visit says so.
template <typename Visit>
void FromDeepest(const CustomBar* end, Visit visit)
{
    for (std::size_t i = Levels().size(); i-- > 0;)
    {
        if (i >= Levels().size())
            continue;
        CustomBar* const level = Levels()[i];
        if (level == end || (!level->m_closing && visit(*level)))
            return;
    }
}

/// Every level that is not closing, from the root on.
template <typename Visit>
void FromRoot(Visit visit)
{
    for (std::size_t i = 0; i < Levels().size(); ++i)
        if (!Levels()[i]->m_closing)
            visit(*Levels()[i]);
}

/// A level whose window is yet to be made learns that it need not come (OpenSubLevel).
void Destroy(CustomBar& level)
{
    if (level.m_hWnd != nullptr)
        DestroyWindow(level.m_hWnd);
    else
        level.m_closing = true;
}

void DestroyFromDeepest(const CustomBar* end, const CustomBar* kept)
{
    FromDeepest(
        end,
        [&](CustomBar& level)
        {
            if (&level != kept)
                Destroy(level);
            return false;
        });
}

} // namespace

void FocusDeepestLevel()
{
    FromDeepest(
        nullptr,
        [](const CustomBar& level)
        {
            if (level.m_toolbar != nullptr)
                SetFocus(level.m_toolbar);
            return level.m_toolbar != nullptr;
        });
}

void ActivateDeepestLevel()
{
    HWND deepest = nullptr;
    FromDeepest(nullptr,
                [&](const CustomBar& level)
                {
                    deepest = level.m_hWnd;
                    return true;
                });
    SetForegroundWindow(deepest);
    if (GetActiveWindow() != deepest)
        SetActiveWindow(deepest);
}

void AskToClose(CustomBar& level)
{
    if (level.m_hWnd != nullptr)
        PostMessageW(level.m_hWnd, WM_CLOSE, 0, 0);
    else
        level.m_closing = true;
}

void CloseAllLevels()
{
    FromDeepest(
        nullptr,
        [](CustomBar& level)
        {
            AskToClose(level);
            return false;
        });
}

void DestroyLevelsAfter(const CustomBar& level, const CustomBar* kept)
{
    DestroyFromDeepest(&level, kept);
}

void DestroyAllLevels()
{
    DestroyFromDeepest(nullptr, nullptr);
}

void EnableLevels(bool enable)
{
    FromRoot([&](const CustomBar& level) { EnableWindow(level.m_hWnd, enable); });
}

} // namespace CustomMenu
