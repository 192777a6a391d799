// What a menu level costs the toolbar: filling, sizing and reading back, and one highlight move.
#include "platform/base/clock.h"
#include "tests/headless/headless.h"

#include "commctrl.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace
{

struct Level
{
    Level()
    {
        WNDCLASSEXW windowClass{};
        windowClass.cbSize = sizeof(windowClass);
        windowClass.lpfnWndProc = DefWindowProcW;
        windowClass.lpszClassName = TEXT("BenchLevel");
        RegisterClassExW(&windowClass);
        window = CreateWindowExW(0, TEXT("BenchLevel"), nullptr, WS_POPUP, 0, 0, 300, 900, nullptr, nullptr, nullptr,
                                 nullptr);
        toolbar = CreateWindowExW(WS_EX_TOOLWINDOW, TOOLBARCLASSNAMEW, nullptr, 0x5000D8CC, 0, 0, 10, 10, window,
                                  reinterpret_cast<HMENU>(static_cast<UINT_PTR>(2)), nullptr, nullptr);
    }
    ~Level() { DestroyWindow(window); }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;

    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return SendMessageW(toolbar, message, wParam, lParam);
    }

    void Fill(const std::vector<std::u16string>& names) const
    {
        for (std::size_t i = 0; i < names.size(); ++i)
        {
            TBBUTTON button{};
            button.iBitmap = I_IMAGENONE;
            button.idCommand = static_cast<int>(1000 + i);
            button.fsState = TBSTATE_ENABLED | TBSTATE_WRAP;
            button.dwData = 1000 + i;
            button.iString = reinterpret_cast<INT_PTR>(names[i].c_str());
            Send(TB_INSERTBUTTONW, i, reinterpret_cast<LPARAM>(&button));
        }
    }

    HWND window = nullptr;
    HWND toolbar = nullptr;
};

std::vector<std::u16string> Names(std::int64_t count)
{
    std::vector<std::u16string> names;
    for (std::int64_t i = 0; i < count; ++i)
    {
        const std::string number = std::to_string(i);
        names.push_back(u"Shortcut number " + std::u16string(number.begin(), number.end()));
    }
    return names;
}

/// As a level does it: insert every button, size them, read each button and its rectangle back.
void BuildLevel(benchmark::State& state)
{
    const Level level;
    const std::vector<std::u16string> names = Names(state.range(0));
    for ([[maybe_unused]] auto unused : state)
    {
        level.Fill(names);
        level.Send(TB_AUTOSIZE);
        for (std::size_t i = 0; i < names.size(); ++i)
        {
            TBBUTTON button;
            RECT rect;
            level.Send(TB_GETBUTTON, i, reinterpret_cast<LPARAM>(&button));
            level.Send(TB_GETITEMRECT, i, reinterpret_cast<LPARAM>(&rect));
            benchmark::DoNotOptimize(rect);
        }
        state.PauseTiming();
        for (std::size_t i = names.size(); i-- > 0;)
            level.Send(TB_DELETEBUTTON, i);
        state.ResumeTiming();
    }
    state.SetComplexityN(state.range(0));
}

/// The highlight moves to the next item and both items are painted.
void MoveHighlight(benchmark::State& state)
{
    const Level level;
    level.Fill(Names(state.range(0)));
    level.Send(TB_AUTOSIZE);
    SetWindowPos(level.toolbar, nullptr, 0, 0, 300, 900, SWP_NOZORDER | SWP_NOACTIVATE);
    ShowWindow(level.window, SW_SHOW);
    UpdateWindow(level.window);
    WPARAM hot = 0;
    for ([[maybe_unused]] auto unused : state)
    {
        hot = (hot + 1) % 20;
        level.Send(TB_SETHOTITEM, hot);
        UpdateWindow(level.toolbar);
    }
}

} // namespace

BENCHMARK(BuildLevel)->Arg(20)->Arg(200)->Arg(2000)->Arg(10000)->Unit(benchmark::kMicrosecond)->Complexity();
BENCHMARK(MoveHighlight)->Arg(20)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK_MAIN();
