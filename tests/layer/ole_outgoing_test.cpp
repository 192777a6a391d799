// This program's drags: over its own windows, over another program's, and how they end.
#include "tests/layer/ole_desk.h"

#include "platform/base/fault_points.h"
#include "platform/ole/drag_picture.h"
#include "platform/ole/outgoing_drag.h"

namespace
{

using namespace platform;
using namespace ole_test;
using headless::MoveMouse;
using headless::PressButton;
using headless::PressKey;
using headless::ReleaseButton;
using headless::ReleaseKey;
using screen::kDragAsk;
using screen::kDragCopy;
using screen::kDragLink;
using screen::kDragMove;

class Source final : public ComObject<IDropSource, IID_IDropSource>
{
public:
    HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escape, DWORD keys) override
    {
        if (escape)
            return DRAGDROP_S_CANCEL;
        return (keys & (MK_LBUTTON | MK_RBUTTON)) != 0 ? S_OK : DRAGDROP_S_DROP;
    }
    HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD effect) override
    {
        feedback = effect;
        return DRAGDROP_S_USEDEFAULTCURSORS;
    }
    DWORD feedback = 0;
};

constexpr DWORD kAll = DROPEFFECT_COPY | DROPEFFECT_MOVE | DROPEFFECT_LINK;
constexpr RECT kElsewhere{1000, 0, 1200, 200};

struct OutgoingDragTest : OleDesk
{
    using Script = std::vector<std::function<void()>>;

    OutgoingDragTest()
    {
        m_window = ShownPopup(0, 0, 200, 100);
        m_data = Held<MemoryDataObject>::Adopt(new MemoryDataObject);
        m_data->Offer(Format(u"Shell IDList Array"), "private");
        m_data->Offer(Format(u"text/uri-list"), "file:///a\r\n");
    }
    ~OutgoingDragTest() override
    {
        screen::WithdrawSelection(screen::Selection::Drag); // which the screen would hold until the next offer
        m_data.Reset();
        m_source.Reset();
    }

    /// Each step is taken when the program waits after the one before.
    HRESULT Drag(Script script, screen::Button button = screen::Button::Left)
    {
        MoveMouse(10, 10);
        PressButton(button);
        Pump();
        Take();
        std::size_t next = 0;
        headless::SetIdleHandler(
            [&]
            {
                if (next < script.size())
                    script[next++]();
                else
                    PressKey(VK_ESCAPE);
                return true;
            });
        m_effect = 99;
        const HRESULT result = DoDragDrop(m_data.Get(), m_source.Get(), kAll, &m_effect);
        EXPECT_TRUE(next == script.size() || FAILED(result)) << next;
        headless::SetIdleHandler(nullptr);
        EXPECT_EQ(headless::ShownDragAction(), std::nullopt) << "pointer and keyboard were not given back";
        EXPECT_EQ(GetCapture(), nullptr);
        ReleaseButton(button);
        ReleaseKey(VK_ESCAPE);
        Pump();
        return result;
    }
    static std::function<void()> To(int x, int y)
    {
        return [=] { MoveMouse(x, y); };
    }
    static std::function<void()> Release(screen::Button button = screen::Button::Left)
    {
        return [=] { ReleaseButton(button); };
    }
    static std::function<void()> Expect(screen::DragActions shown)
    {
        return [=] { EXPECT_EQ(headless::ShownDragAction(), shown); };
    }

    HWND m_window;
    Held<MemoryDataObject> m_data;
    Held<Source> m_source = Held<Source>::Adopt(new Source);
    DWORD m_effect = 0;
};

TEST_F(OutgoingDragTest, OverItsOwnWindowsTheTargetsGetTheVeryObject)
{
    const HWND other = ShownPopup(300, 0, 100, 100);
    Target& first = Register(m_window, "w");
    Target& second = Register(other, "o");
    second.takes = DROPEFFECT_COPY;
    m_records.clear();
    EXPECT_EQ(Drag({Expect(kDragMove), To(20, 10), To(310, 10), Expect(kDragCopy), Release()}), DRAGDROP_S_DROP);
    EXPECT_EQ(m_effect, DWORD{DROPEFFECT_COPY});
    EXPECT_EQ(Take(), (Log{"w.Enter", "w.Over", "w.Over", "w.Leave", "o.Enter", "o.Over", "o.Over", "o.Drop"}));
    EXPECT_EQ(second.data, m_data.Get());
    EXPECT_EQ(first.keys, DWORD{MK_LBUTTON});
    EXPECT_EQ(second.keys, 0U);
    EXPECT_EQ(Count(other, WM_MOUSEMOVE) + Count(other, WM_SETCURSOR), 1 * 2) << "only the refresh afterwards";
    EXPECT_EQ(headless::AskAsOther(screen::Selection::Drag, "text/uri-list"), std::nullopt);
}

TEST_F(OutgoingDragTest, PointerAndKeyboardAreGivenBackBeforeTheTargetMayAsk)
{
    Target& target = Register(m_window, "w");
    target.atDrop = [](DWORD* effect)
    {
        EXPECT_EQ(headless::ShownDragAction(), std::nullopt);
        EXPECT_EQ(GetCapture(), nullptr);
        *effect = DROPEFFECT_LINK;
    };
    EXPECT_EQ(Drag({Release()}), DRAGDROP_S_DROP);
    EXPECT_EQ(m_effect, DWORD{DROPEFFECT_LINK});
}

TEST_F(OutgoingDragTest, TheRightButtonAsks)
{
    Target& target = Register(m_window, "w");
    const auto right = screen::Button::Right;
    target.during = [&](const std::string& call) { EXPECT_TRUE(call != "Over" || target.keys == MK_RBUTTON); };
    // Moved and let go in one go: the last DragOver is still one by that button.
    const auto moveAndRelease = [=]
    {
        MoveMouse(30, 10);
        ReleaseButton(right);
    };
    EXPECT_EQ(Drag({Expect(kDragAsk), moveAndRelease}, right), DRAGDROP_S_DROP);
    EXPECT_EQ(Take(), (Log{"w.Enter", "w.Over", "w.Over", "w.Over", "w.Drop"}));
    EXPECT_EQ(target.at.x, 30);
}

TEST_F(OutgoingDragTest, ModifiersAreTheTargetsToReadAndTheOthersToHear)
{
    Target& target = Register(m_window, "w");
    headless::SetOtherTarget(headless::OtherTarget{kElsewhere, kAll});
    const auto shift = [] { PressKey(VK_SHIFT); };
    const auto control = [] { PressKey(VK_CONTROL); };
    const auto keys = [&] { EXPECT_EQ(target.keys, DWORD{MK_LBUTTON | MK_SHIFT}); };
    EXPECT_EQ(Drag({shift, keys, control, To(1100, 10), Expect(kDragLink), [] { ReleaseKey(VK_SHIFT); },
                    Expect(kDragCopy), [] { ReleaseKey(VK_CONTROL); }, Expect(kDragMove), [] { PressKey(VK_ESCAPE); }}),
              DRAGDROP_S_CANCEL);
    EXPECT_EQ(m_effect, DWORD{DROPEFFECT_NONE});
}

TEST_F(OutgoingDragTest, AnotherProgramTakesItAndReadsItAfterwards)
{
    headless::SetOtherTarget(headless::OtherTarget{kElsewhere, kDragCopy});
    Register(m_window, "w");
    const auto hasLeft = [&] { EXPECT_EQ(Take(), (Log{"w.Enter", "w.Over", "w.Leave"})); };
    EXPECT_EQ(Drag({Expect(kDragMove), To(1100, 10), Expect(kDragCopy), hasLeft, Release()}), DRAGDROP_S_DROP);
    EXPECT_EQ(m_effect, DWORD{DROPEFFECT_COPY});
    m_data.Reset();
    EXPECT_EQ(headless::DroppedOnOther("text/uri-list"), "file:///a\r\n");
    EXPECT_EQ(headless::DroppedOnOther("Shell IDList Array"), std::nullopt) << "is nothing for others";
    EXPECT_EQ(screen::OfferedSelection(screen::Selection::Drag)->Targets(), Log{"text/uri-list"});
}

TEST_F(OutgoingDragTest, NothingIsDoneWhereNothingIsTaken)
{
    headless::SetOtherTarget(headless::OtherTarget{kElsewhere, 0});
    EXPECT_EQ(Drag({To(1100, 10), Release()}), DRAGDROP_S_DROP);
    EXPECT_EQ(m_effect, DWORD{DROPEFFECT_NONE});
    EXPECT_EQ(headless::DroppedOnOther("text/uri-list"), std::nullopt);
    EXPECT_EQ(Drag({To(700, 700), Release()}), DRAGDROP_S_DROP);
    EXPECT_EQ(m_effect, DWORD{DROPEFFECT_NONE});

    headless::SetOtherTarget(headless::OtherTarget{kElsewhere, kDragMove, false, true});
    EXPECT_EQ(Drag({To(1100, 10), Release()}), DRAGDROP_S_DROP) << "it never answers";
    EXPECT_EQ(m_effect, DWORD{DROPEFFECT_NONE});
    headless::SetOtherTarget(headless::OtherTarget{kElsewhere, kDragMove, true, false});
    EXPECT_EQ(Drag({To(1100, 10), [] {}, Release()}), DRAGDROP_S_DROP) << "it never says that it has finished";
    EXPECT_EQ(m_effect, DWORD{DROPEFFECT_NONE});

    Register(m_window, "w").takes = 0;
    EXPECT_EQ(Drag({Release()}), DRAGDROP_S_DROP);
    EXPECT_EQ(Take(), (Log{"w.Enter", "w.Over", "w.Over", "w.Leave"}));
}

TEST_F(OutgoingDragTest, RestingRepeatsTheCall)
{
    Target& target = Register(m_window, "w");
    LONG begin = 0;
    const auto start = [&] { begin = target.time; };
    const auto wait = [] { AdvanceManualClock(60); };
    const auto look = [&] { EXPECT_GE(target.time, begin + 60); };
    EXPECT_EQ(Drag({start, wait, look, [] { PressKey(VK_ESCAPE); }}), DRAGDROP_S_CANCEL);
    EXPECT_EQ(Take(), (Log{"w.Enter", "w.Over", "w.Over", "w.Leave"}));
}

TEST_F(OutgoingDragTest, AnotherProgramsActivationDoesNotEndItAndEscapeStillDoes)
{
    headless::SetOtherTarget(headless::OtherTarget{kElsewhere, kDragCopy});
    SetForegroundWindow(m_window);
    EXPECT_EQ(Drag({[] { headless::ActivateOtherApplication(); }, To(1100, 10), Release()}), DRAGDROP_S_DROP);
    EXPECT_EQ(m_effect, DWORD{DROPEFFECT_COPY});
    const auto hasCapture = [] { EXPECT_NE(GetCapture(), nullptr); };
    EXPECT_EQ(Drag({[] { headless::ActivateOtherApplication(); }, hasCapture, [] { PressKey(VK_ESCAPE); }}),
              DRAGDROP_S_CANCEL);
}

TEST_F(OutgoingDragTest, EscapeEndsItThoughItWentUpForAnotherProgramBefore)
{
    SetForegroundWindow(m_window);
    PressKey(VK_ESCAPE);
    headless::ActivateOtherApplication();
    Pump();
    ASSERT_GE(GetKeyState(VK_ESCAPE), 0);
    EXPECT_EQ(Drag({[] { PressKey(VK_ESCAPE); }}), DRAGDROP_S_CANCEL);
}

TEST_F(OutgoingDragTest, WhoTakesTheCaptureEndsIt)
{
    const auto capture = [&] { SetCapture(m_window); };
    const auto release = [] { ReleaseCapture(); };
    MoveMouse(10, 10);
    PressButton();
    Pump();
    int step = 0;
    headless::SetIdleHandler(
        [&]
        {
            ++step == 1 ? release() : capture();
            return true;
        });
    EXPECT_EQ(DoDragDrop(m_data.Get(), m_source.Get(), kAll, &m_effect), DRAGDROP_S_CANCEL);
    EXPECT_EQ(GetCapture(), m_window);
    ReleaseCapture();
    ReleaseButton();
}

TEST_F(OutgoingDragTest, TheMenuMayGoUnderIt)
{
    Target& target = Register(m_window, "w");
    target.during = [&](const std::string& call)
    {
        if (call == "Over")
            DestroyWindow(m_window);
    };
    EXPECT_EQ(Drag({Release()}), DRAGDROP_S_DROP);
    EXPECT_EQ(m_effect, DWORD{DROPEFFECT_NONE});
    EXPECT_EQ(Take(), (Log{"w.Enter", "w.Over", "w.Leave"}));
}

TEST_F(OutgoingDragTest, WithoutTheDisplaysLeaveThereIsNone)
{
    headless::RefuseDrags(true);
    EXPECT_EQ(Drag({}), E_FAIL);
    headless::RefuseDrags(false);
    EXPECT_EQ(DoDragDrop(m_data.Get(), nullptr, kAll, &m_effect), E_INVALIDARG);
}

/// A port that only writes down what it is told.
struct NotedPort final : OutgoingDragPort
{
    HWND WindowAt(screen::NativeWindow, POINT) override { return nullptr; }
    Held<IDropTarget> TargetOf(HWND) override { return {}; }
    HRESULT QueryContinue(bool, DWORD keys) override { return keys != 0 ? S_OK : DRAGDROP_S_DROP; }
    HRESULT GiveFeedback(DWORD) override { return DRAGDROP_S_USEDEFAULTCURSORS; }
    screen::DragPlace Move(POINT, screen::DragActions) override
    {
        log.push_back("move");
        return place;
    }
    screen::DragPlace Place() override { return place; }
    void Show(screen::DragActions action) override { log.push_back("show " + std::to_string(action)); }
    bool DropOutside() override
    {
        log.push_back("drop");
        return true;
    }
    void End() override { log.push_back("end"); }

    Log log;
    screen::DragPlace place{0, false, 0};
};

TEST_F(OutgoingDragTest, LostAndDoubledAnswersChangeNothing)
{
    NotedPort port;
    OutgoingDrag drag(port, *m_data.Get(), kAll, MK_LBUTTON);
    drag.OnAnswered(); // before the drag has been anywhere
    drag.OnEnded();
    const OutgoingDrag::Input at{{5, 5}, MK_LBUTTON, false};
    drag.OnInput(at);
    drag.OnInput(at);
    port.place = {0, true, kDragCopy};
    drag.OnAnswered();
    drag.OnAnswered();
    drag.OnInput({{5, 5}, 0, false});
    drag.OnInput({{9, 9}, MK_SHIFT, false});
    drag.OnAnswered();
    EXPECT_FALSE(drag.IsOver());
    drag.OnEnded();
    drag.OnEnded();
    drag.Cancel();
    EXPECT_EQ(port.log, (Log{"move", "show 1", "drop", "end"}));
    EXPECT_EQ(drag.Result(), DRAGDROP_S_DROP);
    EXPECT_EQ(drag.Effect(), DWORD{DROPEFFECT_COPY});
}

TEST_F(OutgoingDragTest, WhoGoesOnHereNoLongerWaitsForTheOtherProgram)
{
    const OutgoingDrag::Input endings[] = {{{5, 5}, 0, true}, {{9, 9}, MK_LBUTTON, false}};
    for (const OutgoingDrag::Input& ending : endings)
    {
        NotedPort port;
        OutgoingDrag drag(port, *m_data.Get(), kAll, MK_LBUTTON);
        drag.OnInput({{5, 5}, MK_LBUTTON, false});
        drag.OnInput({{5, 5}, 0, false});
        drag.OnInput({{7, 7}, MK_CONTROL, false});
        EXPECT_FALSE(drag.IsOver());
        drag.OnInput(ending);
        ASSERT_TRUE(drag.IsOver());
        EXPECT_EQ(drag.Result(), DRAGDROP_S_DROP) << "which it may still do";
        EXPECT_EQ(drag.Effect(), DWORD{DROPEFFECT_NONE});
        EXPECT_EQ(port.log.back(), "end");
    }
}

TEST_F(OutgoingDragTest, TheButtonMayBeUpBeforeItBegins)
{
    NotedPort port;
    OutgoingDrag drag(port, *m_data.Get(), kAll, 0);
    drag.OnInput({{5, 5}, 0, false});
    drag.OnEnded();
    EXPECT_TRUE(drag.IsOver());
    EXPECT_EQ(drag.Result(), DRAGDROP_S_DROP);
}

int g_countdown = 0;

TEST_F(OutgoingDragTest, WhicheverCallFailsEverythingIsGivenBack)
{
    headless::SetOtherTarget(headless::OtherTarget{kElsewhere, kDragCopy});
    Register(m_window, "w");
    bool failed = true;
    for (int n = 1; failed; ++n)
    {
        ASSERT_LT(n, 1000);
        g_countdown = n;
        SetFaultHook([](const char*) { return --g_countdown == 0; });
        Drag({To(20, 10), To(1100, 10), [] {}, Release()});
        SetFaultHook(nullptr);
        failed = g_countdown <= 0;
        screen::WithdrawSelection(screen::Selection::Drag);
    }
}

TEST_F(OutgoingDragTest, ThePictureGoesWithTheData)
{
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), 2, 2, 1, 32, BI_RGB, 0, 0, 0, 0, 0}; // from the lowest row up
    void* bits = nullptr;
    const HBITMAP original = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const std::uint32_t pixels[] = {0xFF000003, 0x80000004, 0xFF000001, 0x00000000};
    std::copy_n(pixels, 4, static_cast<std::uint32_t*>(bits));
    const auto copy = static_cast<HBITMAP>(CopyImage(original, IMAGE_BITMAP, 0, 0, 0));
    DeleteObject(original);
    const auto helper = Held<IUnknown>::Adopt(MakeDragDropHelper());
    IDragSourceHelper2* source = nullptr;
    ASSERT_EQ(helper->QueryInterface(IID_IDragSourceHelper2, reinterpret_cast<void**>(&source)), S_OK);
    SHDRAGIMAGE image{{2, 2}, {1, 2}, copy, 0xFFFFFFFF};
    EXPECT_EQ(source->InitializeFromBitmap(&image, m_data.Get()), S_OK);
    EXPECT_EQ(source->InitializeFromBitmap(&image, m_data.Get()), E_INVALIDARG) << "the bitmap is the helper's";
    source->Release();

    const auto look = []
    {
        const auto shown = headless::ShownDragImage();
        EXPECT_EQ(shown->hotSpot.y, 2);
        EXPECT_EQ(shown->pixels, (std::vector<std::uint32_t>{0xFF000001, 0, 0xFF000003, 0x80000004}));
    };
    EXPECT_EQ(Drag({look, [] { PressKey(VK_ESCAPE); }}), DRAGDROP_S_CANCEL);
}

} // namespace
