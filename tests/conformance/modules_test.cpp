// Modules: handles by name, and functions looked up at run time.
#include <windows.h>

#include <gtest/gtest.h>

namespace
{

using MonitorFromPointFunction = HMONITOR(WINAPI*)(POINT, DWORD);

template <typename Function>
Function LookUp(const WCHAR* module, const char* name)
{
    const HMODULE handle = GetModuleHandleW(module);
    return handle != nullptr ? reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(handle, name)))
                             : nullptr;
}

// The launcher asks during static initialisation.
const auto g_early = LookUp<MonitorFromPointFunction>(TEXT("user32"), "MonitorFromPoint");

} // namespace

TEST(Modules, FunctionsAreFoundBeforeMainAndWork)
{
    ASSERT_NE(g_early, nullptr);
    EXPECT_EQ(g_early(POINT{0, 0}, MONITOR_DEFAULTTOPRIMARY), MonitorFromPoint(POINT{0, 0}, MONITOR_DEFAULTTOPRIMARY));
    EXPECT_NE(LookUp<void*>(TEXT("USER32.dll"), "MonitorFromWindow"), nullptr);
}

TEST(Modules, WhatIsMissingSaysSo)
{
    EXPECT_EQ(GetProcAddress(GetModuleHandleW(TEXT("user32")), "NoSuchFunction"), nullptr);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PROC_NOT_FOUND));
    EXPECT_EQ(GetModuleHandleW(TEXT("nosuchmodule")), nullptr);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    EXPECT_NE(GetModuleHandleW(nullptr), nullptr);
}
