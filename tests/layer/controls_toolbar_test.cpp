// The toolbar as a person sees and uses it: pixels on the screen, mouse and wheel through the input queue.
#include "platform/base/fault_points.h"
#include "tests/layer/controls_desk.h"
#include "tests/scenarios/failing.h"

namespace
{

constexpr int kWidth = 180;
constexpr int kHeight = 30;
constexpr std::uint32_t kIconColor = 0xFF2040C0;
constexpr LRESULT kMenuFlags = TBCDRF_USECDCOLORS | TBCDRF_NOMARK | TBCDRF_NOOFFSET | TBCDRF_NOEDGES;

struct ToolbarDrawing : ControlsDesk
{
    ToolbarDrawing()
    {
        Add(u"Games", AddIcon(kImage, kIconColor));
        Add(u"Music", 0);
        Add(u"Work", 0);
        SizeButtons(kWidth, kHeight);
        onDraw = [](NMTBCUSTOMDRAW& draw) -> LRESULT
        {
            const bool hot = (draw.nmcd.uItemState & CDIS_HOT) != 0;
            draw.clrText = hot ? RGB(255, 255, 0) : RGB(255, 0, 0);
            draw.clrHighlightHotTrack = hot ? RGB(0, 0, 128) : RGB(0, 255, 0);
            return kMenuFlags | (hot ? TBCDRF_HILITEHOTTRACK : 0);
        };
        Send(TB_SETINSERTMARKCOLOR, 0, RGB(1, 2, 3));
    }

    void SetMark(int button, DWORD flags = 0)
    {
        const TBINSERTMARK mark = {button, flags};
        Send(TB_SETINSERTMARK, 0, reinterpret_cast<LPARAM>(&mark));
    }

    /// Lines of the mark's colour in one column of the screen.
    int MarkedRows(int x, int top, int bottom)
    {
        int rows = 0;
        for (int y = top; y < bottom; ++y)
            rows += Pixel(x, y) == 0x010203u;
        return rows;
    }
};

/// Where the label begins: the image with a gap on either side.
constexpr int kLabel = 4 + ControlsDesk::kImage + 4;

} // namespace

TEST_F(ToolbarDrawing, IconIsCentredAndTheRestShowsTheLevel)
{
    Show();
    const int top = (kHeight - kImage) / 2;
    EXPECT_EQ(Pixel(4, top), kIconColor & 0xFFFFFF);
    EXPECT_EQ(Pixel(4 + kImage - 1, top + kImage - 1), kIconColor & 0xFFFFFF);
    EXPECT_EQ(Pixel(3, top), kBackground);
    EXPECT_EQ(Pixel(4, top - 1), kBackground);
    EXPECT_EQ(Pixel(4, top + kImage), kBackground);
    EXPECT_EQ(Pixel(kWidth - 1, 5), kBackground);
    const RECT ink = InkBounds({kLabel - 2, 0, kWidth, kHeight}, kBackground);
    EXPECT_GE(ink.left, kLabel - 1);
    EXPECT_LT(std::abs((ink.top + ink.bottom) / 2 - kHeight / 2), kHeight / 4) << "the label is centred vertically";
}

TEST_F(ToolbarDrawing, TheHotItemIsFilledWithTheOwnersColourAndNothingElse)
{
    Send(TB_SETHOTITEM, 1);
    Show();
    for (const POINT corner :
         {POINT{0, kHeight}, POINT{kWidth - 1, kHeight}, POINT{0, 2 * kHeight - 1}, POINT{kWidth - 1, 2 * kHeight - 1}})
        EXPECT_EQ(Pixel(corner.x, corner.y), 0x000080u) << corner.x << ", " << corner.y;
    EXPECT_EQ(Pixel(0, kHeight - 1), kBackground);
    EXPECT_EQ(Pixel(0, 2 * kHeight), kBackground);
    EXPECT_EQ(Pixel(kWidth, kHeight + 5), kBackground);
    Send(TB_SETHOTITEM, 2);
    Pump();
    EXPECT_EQ(Pixel(0, kHeight), kBackground) << "the fill goes with the highlight";
    EXPECT_EQ(Pixel(0, 2 * kHeight), 0x000080u);
}

TEST_F(ToolbarDrawing, WithoutFlagsAHotItemGetsEdgesAndNoFill)
{
    onDraw = nullptr;
    Send(TB_SETHOTITEM, 1);
    Show();
    const COLORREF light = GetSysColor(COLOR_BTNHIGHLIGHT);
    EXPECT_EQ(Pixel(kWidth / 2, kHeight), GetRValue(light) * 0x10000u + GetGValue(light) * 0x100u + GetBValue(light));
    EXPECT_EQ(Pixel(kWidth - 3, kHeight + 3), kBackground);
}

TEST_F(ToolbarDrawing, SkippedItemsAreLeftToTheOwner)
{
    onDraw = [](NMTBCUSTOMDRAW&) -> LRESULT { return CDRF_SKIPDEFAULT; };
    Show();
    const RECT ink = InkBounds({0, 0, kWidth, 3 * kHeight}, kBackground);
    EXPECT_TRUE(IsRectEmpty(&ink));
}

TEST_F(ToolbarDrawing, AnAmpersandIsPartOfTheName)
{
    while (Send(TB_DELETEBUTTON, 0))
    {
    }
    Add(u"R&D");
    Add(u"RD");
    SizeButtons(kWidth, kHeight);
    Show();
    const RECT with = InkBounds({kLabel, 0, kWidth, kHeight}, kBackground);
    const RECT without = InkBounds({kLabel, kHeight, kWidth, 2 * kHeight}, kBackground);
    EXPECT_GT(with.right, without.right + 2);
}

TEST_F(ToolbarDrawing, ANameThatIsTooLongEndsInsideItsItem)
{
    Add(u"A name that is much longer than the button is wide, whatever the font may be", 0);
    Send(TB_AUTOSIZE);
    Send(TB_SETBUTTONSIZE, 0, MAKELPARAM(kWidth, kHeight));
    SetWindowPos(toolbar, nullptr, 0, 0, kWidth + 40, 4 * kHeight, SWP_NOZORDER | SWP_NOACTIVATE);
    Show();
    const RECT ink = InkBounds({kLabel, 3 * kHeight, kWidth + 40, 4 * kHeight}, kBackground);
    EXPECT_GT(ink.right, kWidth / 2);
    EXPECT_LE(ink.right, kWidth);
}

TEST_F(ToolbarDrawing, TheInsertionMarkIsALineBetweenTheItems)
{
    Show();
    SetMark(0, TBIMHT_AFTER);
    Pump();
    EXPECT_EQ(Pixel(kWidth / 2, kHeight - 1), 0x010203u);
    EXPECT_EQ(Pixel(kWidth / 2, kHeight), 0x010203u);
    EXPECT_EQ(Pixel(0, kHeight + 2), 0x010203u) << "its ends reach up and down";
    SetMark(0);
    Pump();
    EXPECT_EQ(Pixel(kWidth / 2, kHeight), kBackground);
    EXPECT_EQ(Pixel(kWidth - 1, 2), 0x010203u) << "above the first item it is still in view";
    SetMark(-1);
    Pump();
    EXPECT_EQ(Pixel(kWidth - 1, 2), kBackground);
}

TEST_F(ToolbarDrawing, TheInsertionMarkGrowsWithTheDisplaysScaleAndIsWholeAtTheEnd)
{
    Show();
    for (const int percent : {100, 150, 200})
    {
        platform::headless::SetDpi(0, static_cast<UINT>(96 * percent / 100));
        for (const int button : {0, 2})
        {
            SetMark(button, TBIMHT_AFTER);
            Pump();
            const int edge = (button + 1) * kHeight;
            EXPECT_EQ(MarkedRows(kWidth / 2, edge - 15, edge + 15), 2 * percent / 100) << button;
            EXPECT_EQ(MarkedRows(0, edge - 15, edge + 15), 2 * MulDiv(3, percent, 100)) << button;
            SetMark(-1);
            Pump();
        }
    }
    platform::headless::SetDpi(0, 96);
}

TEST_F(ToolbarDrawing, TheInsertionMarkLiesOverWhatTheOwnerHasClippedAway)
{
    const auto draw = onDraw;
    onDraw = [&](NMTBCUSTOMDRAW& info) -> LRESULT
    {
        ExcludeClipRect(info.nmcd.hdc, 0, 0, kWidth, kHeight + 10);
        return draw(info);
    };
    SetMark(0, TBIMHT_AFTER);
    Show();
    EXPECT_EQ(MarkedRows(kWidth / 2, 0, 2 * kHeight), 2);
}

TEST_F(ToolbarDrawing, AHighlightMoveSendsTwoItemsToTheScreen)
{
    Send(TB_SETHOTITEM, 0);
    Show();
    platform::headless::TakePresentedPixels();
    Send(TB_SETHOTITEM, 2);
    Pump();
    EXPECT_EQ(platform::headless::TakePresentedPixels(), 2u * kWidth * kHeight);
}

// Asking for the scale had the whole toolbar sent with each motion of a drag.
TEST_F(ToolbarDrawing, AnInsertionMarksMoveSendsTwoMarksToTheScreen)
{
    constexpr std::size_t kMarkHeight = 6; // pixels at 96 DPI
    SetMark(0, TBIMHT_AFTER);
    Show();
    platform::headless::TakePresentedPixels();
    SetMark(1, TBIMHT_AFTER);
    Pump();
    EXPECT_EQ(platform::headless::TakePresentedPixels(), 2u * kWidth * kMarkHeight);
}

TEST_F(ToolbarDrawing, AClickThatLosesTheMouseIsNone)
{
    Show();
    MoveTo(10, 5);
    Press();
    SetCapture(level);
    ReleaseCapture();
    Release();
    EXPECT_TRUE(clicks.empty());
}

TEST_F(ControlsDesk, TenThousandItemsCostWhatIsShown)
{
    constexpr int kCount = 10000;
    constexpr int kRow = 25;
    for (int i = 0; i < kCount; ++i)
        Add(u"Item", AddIcon(kImage, kIconColor));
    SizeButtons(kWidth, kRow);
    Page(kWidth + 20, 200, 10);
    Show();
    EXPECT_LE(drawnItems.size(), 200u / kRow + 1);
    EXPECT_LE(PlainIcon::made, 200 / kRow + 1);
    drawnItems.clear();
    SendMessageW(pager, PGM_SETPOS, 0, kCount * kRow);
    Pump();
    ASSERT_FALSE(drawnItems.empty());
    EXPECT_EQ(drawnItems.back(), 1000u + kCount - 1);
    EXPECT_LE(drawnItems.size(), 2 * (200u / kRow + 1));
    POINT point = {5, (kCount - 1) * kRow + 3};
    EXPECT_EQ(Send(TB_HITTEST, 0, reinterpret_cast<LPARAM>(&point)), kCount - 1);
}

TEST_F(ControlsDesk, AHiddenButtonTakesNoRoom)
{
    Add(u"One");
    Add(u"Two");
    TBBUTTON hidden{};
    hidden.idCommand = 5;
    hidden.fsState = TBSTATE_ENABLED | TBSTATE_HIDDEN;
    hidden.iString = reinterpret_cast<INT_PTR>(u"Hidden");
    Send(TB_INSERTBUTTONW, 1, reinterpret_cast<LPARAM>(&hidden));
    Send(TB_AUTOSIZE);
    EXPECT_EQ(Item(2).top, Item(0).bottom);
    POINT point = {5, Item(2).top + 1};
    EXPECT_EQ(Send(TB_HITTEST, 0, reinterpret_cast<LPARAM>(&point)), 2);
}

TEST_F(ControlsDesk, TheHotItemFollowsInsertionsAndDeletions)
{
    for (const char16_t* text : {u"a", u"b", u"c"})
        Add(text);
    Send(TB_SETHOTITEM, 1);
    Send(TB_DELETEBUTTON, 0);
    EXPECT_EQ(Hot(), 0);
    TBBUTTON button{};
    button.fsState = TBSTATE_ENABLED;
    Send(TB_INSERTBUTTONW, 0, reinterpret_cast<LPARAM>(&button));
    EXPECT_EQ(Hot(), 1);
    Send(TB_DELETEBUTTON, 1);
    EXPECT_EQ(Hot(), -1);
}

TEST_F(ControlsDesk, WhatCouldNotBeMeasuredIsMeasuredLater)
{
    Add(u"A name");
    {
        const Failing refused("GetDC");
        Send(TB_AUTOSIZE);
    }
    const RECT measured = Item(0);
    Add(u"A name");
    EXPECT_EQ(measured.right, Item(1).right);
    EXPECT_GT(measured.right, 40);
}
