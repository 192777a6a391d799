// A dialog that runs a test's steps, and writes down what its procedure is told.
#pragma once

#include "control_desk.h"

#include <gtest/gtest.h>
#include <map>
#include <optional>

namespace conformance
{

class DialogTest : public testing::Test
{
protected:
    using Step = std::function<void(HWND)>;
    using Answer = std::function<std::optional<INT_PTR>(HWND, UINT, WPARAM, LPARAM)>;

    static constexpr int kExtended = 301;
    static constexpr int kPlain = 302;
    // The controls of both.
    static constexpr int kLabel = 65535;
    static constexpr int kFirst = 102;
    static constexpr int kNoTabStop = 103;
    static constexpr int kCheck = 104;
    static constexpr int kHidden = 105;
    static constexpr int kDisabled = 106;

    ~DialogTest() override { PumpMessages(); }

    /// Shows the dialog and does the step in its message loop; then it ends with 77, unless the step says End.
    INT_PTR Run(Step step, LPCWSTR name = MAKEINTRESOURCEW(kExtended), HWND owner = nullptr)
    {
        Script script{this, std::move(step), false};
        return DialogBoxParamW(GetModuleHandleW(nullptr), name, owner, Procedure, reinterpret_cast<LPARAM>(&script));
    }
    INT_PTR RunInMemory(const DLGTEMPLATE* dialogTemplate, Step step)
    {
        Script script{this, std::move(step), false};
        return DialogBoxIndirectParamW(GetModuleHandleW(nullptr), dialogTemplate, nullptr, Procedure,
                                       reinterpret_cast<LPARAM>(&script));
    }
    INT_PTR Run(int number, Step step) { return Run(std::move(step), MAKEINTRESOURCEW(number)); }

    static void End(HWND dialog, INT_PTR result)
    {
        reinterpret_cast<Script*>(GetWindowLongPtrW(dialog, DWLP_USER))->ended = true;
        EXPECT_TRUE(EndDialog(dialog, result));
    }

    static HWND Control(HWND dialog, int id) { return GetDlgItem(dialog, id); }
    static int FocusId() { return GetDlgCtrlID(GetFocus()); }

    /// A key or character as the dialog's loop sees it come, for the control with the focus.
    static void Type(HWND dialog, UINT message, WPARAM key)
    {
        MSG typed{};
        typed.hwnd = GetFocus();
        typed.message = message;
        typed.wParam = key;
        typed.lParam = 1;
        EXPECT_TRUE(IsDialogMessageW(dialog, &typed));
    }
    static void Press(HWND dialog, WPARAM key) { Type(dialog, WM_KEYDOWN, key); }

    std::vector<std::pair<int, int>> TakeCommands() { return std::exchange(m_commands, {}); }

    std::vector<std::pair<int, int>> m_commands; ///< identifier and code of each WM_COMMAND
    Answer m_answer;                             ///< asked first, for every message
    std::function<void(HWND, HWND)> m_onInit;    ///< the dialog and who would get the focus, before that is decided
    bool m_usualFocus = true;                    ///< what WM_INITDIALOG is answered with
    bool m_whenShown = false;                    ///< the step waits for that (which without a manager takes Wine long)

private:
    struct Script
    {
        DialogTest* test;
        Step step;
        bool ended;
    };

    static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (message == WM_INITDIALOG)
        {
            SetWindowLongPtrW(dialog, DWLP_USER, lParam);
            // Windows shows it when there is nothing else to do.
            if (reinterpret_cast<Script*>(lParam)->test->m_whenShown)
                SetTimer(dialog, 1, 1, nullptr);
            else
                PostMessageW(dialog, WM_TIMER, 1, 0);
        }
        auto* script = reinterpret_cast<Script*>(GetWindowLongPtrW(dialog, DWLP_USER));
        if (script == nullptr)
            return FALSE;
        DialogTest& test = *script->test;
        if (test.m_answer)
            if (const auto answer = test.m_answer(dialog, message, wParam, lParam))
                return *answer;
        switch (message)
        {
        case WM_INITDIALOG:
            if (test.m_onInit)
                test.m_onInit(dialog, reinterpret_cast<HWND>(wParam));
            return test.m_usualFocus;
        case WM_COMMAND:
            test.m_commands.emplace_back(LOWORD(wParam), HIWORD(wParam));
            return TRUE;
        case WM_TIMER:
            if (test.m_whenShown && !IsWindowVisible(dialog))
                return TRUE; // not yet
            KillTimer(dialog, 1);
            script->step(dialog);
            if (IsWindow(dialog) && !script->ended)
                EndDialog(dialog, 77);
            return TRUE;
        default:
            return FALSE;
        }
    }
};

using Commands = std::vector<std::pair<int, int>>;

} // namespace conformance
