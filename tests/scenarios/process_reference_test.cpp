// The process reference: work that outlives the menu keeps the process, and nothing else does.
#include "tests/scenarios/desk.h"
#include "tests/scenarios/shell_spy.h"

#include "commands/process_reference.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include <thread>

namespace
{

/// Nothing that these stories do may be left to a wait without an end: the headless screen ends the program then.
class ProcessReference : public testing::Test
{
protected:
    ~ProcessReference() override
    {
        platform::headless::SetIdleHandler(nullptr);
        SHSetInstanceExplorer(m_programs); // the story's has been withdrawn
    }

    IUnknown* const m_programs = InstanceExplorer();
    ShellProcessReference m_reference;
};

TEST_F(ProcessReference, WithoutOutstandingWorkTheProcessEndsAtOnce)
{
    bool waited = false;
    platform::headless::SetIdleHandler([&] { return waited = true; });
    m_reference.Drain();
    EXPECT_FALSE(waited);
}

TEST_F(ProcessReference, TheLastReleaseEndsTheWaitFromWhateverThread)
{
    EXPECT_EQ(m_reference.AddRef(), 2u);
    EXPECT_EQ(m_reference.AddRef(), 3u);
    int waits = 0;
    std::thread worker;
    platform::headless::SetIdleHandler(
        [&]
        {
            if (++waits == 1)
                m_reference.Release();
            else if (waits == 2)
                worker = std::thread([this] { m_reference.Release(); });
            return waits == 1;
        });
    m_reference.Drain();
    worker.join();
    EXPECT_GE(waits, 2) << "the first release left one outstanding";
}

TEST_F(ProcessReference, QuittingEndsTheWaitAllTheSame)
{
    m_reference.AddRef();
    platform::headless::SetIdleHandler(
        []
        {
            PostQuitMessage(0);
            return true;
        });
    m_reference.Drain();
    EXPECT_EQ(m_reference.Release(), 0u);
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);
}

TEST_F(ProcessReference, WindowsGoOnWorkingMeanwhile)
{
    static int timers;
    timers = 0;
    platform::headless::SetIdleHandler(nullptr);
    m_reference.AddRef();
    const HWND window =
        CreateWindowExW(0, TEXT("Static"), TEXT(""), WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    static ShellProcessReference* held;
    held = &m_reference;
    SetTimer(window, 7, 10,
             [](HWND, UINT, UINT_PTR, DWORD)
             {
                 if (++timers == 3)
                     held->Release();
             });
    m_reference.Drain();
    EXPECT_EQ(timers, 3);
    KillTimer(window, 7);
    DestroyWindow(window);
}

TEST_F(ProcessReference, OffersIUnknownAlone)
{
    void* object = &object;
    EXPECT_EQ(m_reference.QueryInterface(IID_IDropTarget, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(m_reference.QueryInterface(IID_IUnknown, &object), S_OK);
    EXPECT_EQ(object, &m_reference);
    EXPECT_EQ(m_reference.Release(), 1u);
}

TEST(ProcessReferenceOfTheProgram, IsHandedToTheShellBeforeTheProgramBegins)
{
    ASSERT_NE(InstanceExplorer(), nullptr);
    void* object = nullptr;
    EXPECT_EQ(InstanceExplorer()->QueryInterface(IID_IUnknown, &object), S_OK);
    ASSERT_EQ(object, InstanceExplorer());
    InstanceExplorer()->Release();
}

TEST(ProcessReferenceOfTheProgram, IsWithdrawnAtTheEndWhichWaitsForWhoHoldsIt)
{
    // In a process of its own, since it ends.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto end = []
    {
        static IUnknown* held;
        held = InstanceExplorer();
        held->AddRef();
        platform::headless::SetIdleHandler(
            []
            {
                std::fputs(InstanceExplorer() == nullptr ? "withdrawn, waited" : "waited", stderr);
                held->Release();
                return true;
            });
        std::exit(0);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(0), "^withdrawn, waited$");
}

} // namespace
