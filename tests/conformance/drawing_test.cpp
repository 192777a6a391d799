// Drawing: what the launcher relies on of contexts, blits, shapes, clipping and text rectangles.
#include <windows.h>

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace
{

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kGreen = RGB(0, 255, 0);
constexpr COLORREF kBlack = RGB(0, 0, 0);

/// A 32-bit top-down section in a memory context of its own.
class Sheet
{
public:
    Sheet(int width, int height, bool bottomUp = false) : m_width(width), m_height(height)
    {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof(info.bmiHeader);
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = bottomUp ? height : -height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        m_dc = CreateCompatibleDC(nullptr);
        void* bits = nullptr;
        m_bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        m_bits = static_cast<std::uint32_t*>(bits);
        m_previous = SelectObject(m_dc, m_bitmap);
    }
    ~Sheet()
    {
        SelectObject(m_dc, m_previous);
        DeleteObject(m_bitmap);
        DeleteDC(m_dc);
    }
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;

    HDC Dc() const { return m_dc; }
    HBITMAP Bitmap() const { return m_bitmap; }
    /// 0xAARRGGBB of a top-down sheet, row after row.
    std::uint32_t& operator()(int x, int y) { return m_bits[y * m_width + x]; }
    void Fill(std::uint32_t pixel)
    {
        for (int i = 0; i < m_width * m_height; ++i)
            m_bits[i] = pixel;
    }
    /// One character a pixel: '#' for the given colour, '.' for anything else.
    std::vector<std::string> Map(COLORREF color) const
    {
        std::vector<std::string> rows;
        for (int y = 0; y < m_height; ++y)
        {
            std::string row;
            for (int x = 0; x < m_width; ++x)
                row += GetPixel(m_dc, x, y) == color ? '#' : '.';
            rows.push_back(row);
        }
        return rows;
    }

private:
    int m_width;
    int m_height;
    HDC m_dc;
    HBITMAP m_bitmap;
    std::uint32_t* m_bits;
    HGDIOBJ m_previous;
};

/// Selects an object and deletes it at the end.
class With
{
public:
    With(HDC dc, HGDIOBJ object) : m_dc(dc), m_object(object), m_previous(SelectObject(dc, object)) {}
    ~With()
    {
        SelectObject(m_dc, m_previous);
        DeleteObject(m_object);
    }
    With(const With&) = delete;
    With& operator=(const With&) = delete;

private:
    HDC m_dc;
    HGDIOBJ m_object;
    HGDIOBJ m_previous;
};

void FillSolid(HDC dc, RECT rect, COLORREF color)
{
    const HBRUSH brush = CreateSolidBrush(color);
    EXPECT_NE(FillRect(dc, &rect, brush), 0);
    DeleteObject(brush);
}

using Rows = std::vector<std::string>;

HFONT TestFont(int height)
{
    return CreateFontW(height, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, DEFAULT_QUALITY, 0, TEXT("Tahoma"));
}

SIZE ExtentOf(HDC dc, const std::basic_string<WCHAR>& text)
{
    SIZE size{};
    EXPECT_TRUE(GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size));
    return size;
}

RECT CalcRect(HDC dc, LPCWSTR text, UINT format, RECT rect = {10, 20, 10, 20})
{
    DrawTextW(dc, text, -1, &rect, format | DT_CALCRECT);
    return rect;
}

} // namespace

TEST(Objects, SelectingReturnsThePreviousOne)
{
    const HDC dc = CreateCompatibleDC(nullptr);
    const HBRUSH brush = CreateSolidBrush(kRed);
    const HGDIOBJ previous = SelectObject(dc, brush);
    EXPECT_EQ(previous, GetStockObject(WHITE_BRUSH));
    EXPECT_EQ(SelectObject(dc, previous), brush);
    EXPECT_TRUE(DeleteObject(brush));
    EXPECT_TRUE(DeleteDC(dc));
    EXPECT_FALSE(DeleteDC(dc));
}

TEST(Objects, ABitmapIsInOneContextAtATime)
{
    const Sheet sheet(4, 4);
    const HDC other = CreateCompatibleDC(nullptr);
    EXPECT_EQ(SelectObject(other, sheet.Bitmap()), nullptr);
    DeleteDC(other);
}

TEST(Objects, SectionsOfBadSizesAreRefused)
{
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    for (const auto& [width, height] : {std::pair{0, 5}, std::pair{5, 0}, std::pair{-1, 5}})
    {
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = height;
        EXPECT_EQ(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, nullptr, nullptr, 0), nullptr) << width << height;
    }
}

TEST(Objects, SavedStateComesBack)
{
    const Sheet sheet(8, 8);
    SetTextColor(sheet.Dc(), kRed);
    const int saved = SaveDC(sheet.Dc());
    SetTextColor(sheet.Dc(), kGreen);
    SetViewportOrgEx(sheet.Dc(), 3, 3, nullptr);
    ExcludeClipRect(sheet.Dc(), 1, 0, 8, 8);
    SaveDC(sheet.Dc());
    EXPECT_TRUE(RestoreDC(sheet.Dc(), saved));
    EXPECT_EQ(SetTextColor(sheet.Dc(), kGreen), kRed);
    RECT box{};
    EXPECT_EQ(GetClipBox(sheet.Dc(), &box), SIMPLEREGION);
    EXPECT_EQ(box.right, 8);
    EXPECT_FALSE(RestoreDC(sheet.Dc(), 2)) << "the later state is gone with the earlier one";
}

TEST(Pixels, SectionsAreAddressedDirectly)
{
    Sheet sheet(3, 2);
    FillSolid(sheet.Dc(), {1, 0, 2, 1}, RGB(0x11, 0x22, 0x33));
    GdiFlush();
    EXPECT_EQ(sheet(1, 0) & 0xFFFFFF, 0x112233u);
    sheet(2, 1) = 0x445566;
    EXPECT_EQ(GetPixel(sheet.Dc(), 2, 1), RGB(0x44, 0x55, 0x66));
    EXPECT_EQ(GetPixel(sheet.Dc(), 3, 0), CLR_INVALID);
}

TEST(Pixels, BottomUpSectionsBeginWithTheLastRow)
{
    Sheet sheet(2, 2, true);
    FillSolid(sheet.Dc(), {0, 0, 1, 1}, kRed);
    GdiFlush();
    EXPECT_EQ(sheet(0, 1) & 0xFFFFFF, 0xFF0000u) << "row 1 in memory is row 0 of the picture";
    FillSolid(sheet.Dc(), {0, 1, 2, 2}, kGreen);
    EXPECT_EQ(sheet(1, 0) & 0xFFFFFF, 0x00FF00u);
}

TEST(Shapes, FillingLeavesRightAndBottomOutAndAlphaZero)
{
    Sheet sheet(4, 3);
    sheet.Fill(0xFF000000);
    FillSolid(sheet.Dc(), {1, 1, 3, 2}, kRed);
    EXPECT_EQ(sheet.Map(kRed), (Rows{"....", ".##.", "...."}));
    EXPECT_EQ(sheet(1, 1), 0x00FF0000u);
    EXPECT_EQ(sheet(0, 0), 0xFF000000u);
}

TEST(Shapes, Frames)
{
    const Sheet sheet(5, 4);
    const HBRUSH brush = CreateSolidBrush(kRed);
    const RECT whole{0, 0, 5, 4};
    FrameRect(sheet.Dc(), &whole, brush);
    DeleteObject(brush);
    EXPECT_EQ(sheet.Map(kRed), (Rows{"#####", "#...#", "#...#", "#####"}));
}

// The mark of an item with a sub-menu: a wide and 2a high.
TEST(Shapes, AnArrowWithoutOutline)
{
    const Sheet sheet(6, 10);
    const With pen(sheet.Dc(), GetStockObject(NULL_PEN));
    const With brush(sheet.Dc(), CreateSolidBrush(kRed));
    const POINT corners[] = {{1, 1}, {1, 9}, {5, 5}};
    EXPECT_TRUE(Polygon(sheet.Dc(), corners, 3));
    EXPECT_EQ(sheet.Map(kRed), (Rows{"......", "......", ".#....", ".##...", ".###..", ".####.", ".###..", ".##...",
                                     ".#....", "......"}));
}

TEST(Shapes, PolygonsFillAlternately)
{
    const Sheet sheet(8, 8);
    const With pen(sheet.Dc(), GetStockObject(NULL_PEN));
    const With brush(sheet.Dc(), CreateSolidBrush(kRed));
    // An outer square and, without leaving the path, an inner one: the inside is a hole.
    const POINT corners[] = {{0, 0}, {8, 0}, {8, 8}, {0, 8}, {0, 0}, {2, 2}, {6, 2}, {6, 6}, {2, 6}, {2, 2}};
    EXPECT_TRUE(Polygon(sheet.Dc(), corners, 10));
    EXPECT_EQ(GetPixel(sheet.Dc(), 1, 4), kRed);
    EXPECT_EQ(GetPixel(sheet.Dc(), 4, 4), kBlack);
    EXPECT_EQ(GetPixel(sheet.Dc(), 7, 7), kRed);
}

TEST(Shapes, AFocusRectangleDrawnTwiceIsGone)
{
    Sheet sheet(6, 5);
    sheet.Fill(0x00808080);
    const RECT rect{0, 0, 6, 5};
    DrawFocusRect(sheet.Dc(), &rect);
    int changed = 0;
    for (int x = 0; x < 6; ++x)
        changed += GetPixel(sheet.Dc(), x, 0) != RGB(0x80, 0x80, 0x80);
    EXPECT_EQ(changed, 3) << "every second pixel";
    EXPECT_EQ(GetPixel(sheet.Dc(), 2, 2), RGB(0x80, 0x80, 0x80));
    DrawFocusRect(sheet.Dc(), &rect);
    EXPECT_EQ(sheet.Map(RGB(0x80, 0x80, 0x80)), Rows(5, "######"));
}

TEST(Blits, CopyWithTheFourthByte)
{
    Sheet from(4, 4);
    Sheet to(4, 4);
    from(1, 1) = 0x7F102030;
    from(2, 1) = 0x01020304;
    EXPECT_TRUE(BitBlt(to.Dc(), 2, 3, 2, 1, from.Dc(), 1, 1, SRCCOPY));
    EXPECT_EQ(to(2, 3), 0x7F102030u);
    EXPECT_EQ(to(3, 3), 0x01020304u);
    EXPECT_EQ(to(2, 2), 0u);
}

TEST(Blits, AlphaBlendIsPremultipliedSourceOver)
{
    Sheet from(3, 1);
    from(0, 0) = 0x00000000;
    from(1, 0) = 0x80800000;
    from(2, 0) = 0xFF00FF00;
    Sheet to(3, 1);
    to.Fill(0xFF0000FF);
    const BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    EXPECT_TRUE(AlphaBlend(to.Dc(), 0, 0, 3, 1, from.Dc(), 0, 0, 3, 1, blend));
    EXPECT_EQ(to(0, 0), 0xFF0000FFu);
    EXPECT_EQ(to(1, 0) & 0xFFFFFF00, 0xFF800000u);
    EXPECT_NEAR(static_cast<int>(to(1, 0) & 0xFF), 0x7F, 1);
    EXPECT_EQ(to(2, 0), 0xFF00FF00u);
}

TEST(Blits, AlphaBlendStretchesAndScalesByTheConstant)
{
    Sheet from(2, 1);
    from(0, 0) = 0xFFFF0000;
    const Sheet to(6, 1);
    const BLENDFUNCTION plain{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    SetStretchBltMode(to.Dc(), COLORONCOLOR);
    EXPECT_TRUE(AlphaBlend(to.Dc(), 0, 0, 6, 1, from.Dc(), 0, 0, 2, 1, plain));
    EXPECT_EQ(to.Map(kRed), Rows{"###..."});

    Sheet half(1, 1);
    const BLENDFUNCTION constant{AC_SRC_OVER, 0, 128, 0};
    EXPECT_TRUE(AlphaBlend(half.Dc(), 0, 0, 1, 1, from.Dc(), 0, 0, 1, 1, constant));
    EXPECT_NEAR(static_cast<int>(half(0, 0) >> 16 & 0xFF), 128, 1);
}

TEST(Blits, AlphaBlendRefusesASourceOutsideItsBitmap)
{
    const Sheet from(2, 2);
    const Sheet to(4, 4);
    const BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    EXPECT_FALSE(AlphaBlend(to.Dc(), 0, 0, 3, 3, from.Dc(), 0, 0, 3, 3, blend));
    EXPECT_FALSE(AlphaBlend(to.Dc(), 0, 0, 1, 1, from.Dc(), -1, 0, 1, 1, blend));
}

TEST(Clipping, NarrowsWhatIsDrawn)
{
    const Sheet sheet(5, 5);
    const int all = SaveDC(sheet.Dc());
    ExcludeClipRect(sheet.Dc(), 4, 0, 5, 5);
    EXPECT_EQ(ExcludeClipRect(sheet.Dc(), 0, 4, 5, 5), SIMPLEREGION);
    EXPECT_EQ(ExcludeClipRect(sheet.Dc(), 1, 1, 3, 3), COMPLEXREGION);
    FillSolid(sheet.Dc(), {0, 0, 5, 5}, kRed);
    EXPECT_EQ(sheet.Map(kRed), (Rows{"####.", "#..#.", "#..#.", "####.", "....."}))
        << "GetPixel outside the clip answers that there is no colour";
    RECT box{};
    EXPECT_EQ(GetClipBox(sheet.Dc(), &box), COMPLEXREGION);
    EXPECT_EQ(box.right, 4);
    RestoreDC(sheet.Dc(), all);
    FillSolid(sheet.Dc(), {0, 0, 5, 5}, kGreen);
    EXPECT_EQ(sheet.Map(kGreen), Rows(5, "#####"));
}

TEST(Clipping, TheViewportMovesDrawingAndClip)
{
    const Sheet sheet(4, 4);
    POINT previous{};
    EXPECT_TRUE(OffsetViewportOrgEx(sheet.Dc(), 1, 2, &previous));
    EXPECT_EQ(previous.x, 0);
    ExcludeClipRect(sheet.Dc(), -1, -2, 0, 2);
    ExcludeClipRect(sheet.Dc(), -1, -2, 3, 0);
    FillSolid(sheet.Dc(), {-9, -9, 2, 9}, kRed);
    RECT box{};
    GetClipBox(sheet.Dc(), &box);
    EXPECT_EQ(box.left, 0) << "the box is in the moved coordinates";
    EXPECT_TRUE(SetViewportOrgEx(sheet.Dc(), 0, 0, &previous));
    EXPECT_EQ(previous.y, 2);
    EXPECT_EQ(sheet.Map(kRed), (Rows{"....", "....", ".##.", ".##."}));
}

TEST(Text, HeightsFollowTheFont)
{
    const HDC dc = CreateCompatibleDC(nullptr);
    TEXTMETRICW metrics{};
    {
        const With font(dc, TestFont(-20));
        ASSERT_TRUE(GetTextMetricsW(dc, &metrics));
        EXPECT_NEAR(metrics.tmHeight - metrics.tmInternalLeading, 20, 1) << "negative: the em";
        EXPECT_EQ(metrics.tmHeight, metrics.tmAscent + metrics.tmDescent);
        EXPECT_EQ(ExtentOf(dc, TEXT("x")).cy, metrics.tmHeight);
    }
    {
        const With font(dc, TestFont(20));
        ASSERT_TRUE(GetTextMetricsW(dc, &metrics));
        EXPECT_NEAR(metrics.tmHeight, 20, 1) << "positive: the cell";
    }
    DeleteDC(dc);
}

TEST(Text, ExtentsAddUp)
{
    const HDC dc = CreateCompatibleDC(nullptr);
    const With font(dc, TestFont(-16));
    EXPECT_EQ(ExtentOf(dc, TEXT("")).cx, 0);
    const LONG one = ExtentOf(dc, TEXT("n")).cx;
    EXPECT_GT(one, 0);
    EXPECT_EQ(ExtentOf(dc, TEXT("nnnn")).cx, 4 * one);
    DeleteDC(dc);
}

TEST(Text, CalculatedRectanglesMatchTheExtent)
{
    const HDC dc = CreateCompatibleDC(nullptr);
    const With font(dc, TestFont(-16));
    const SIZE size = ExtentOf(dc, TEXT("File name"));
    const RECT single = CalcRect(dc, TEXT("File name"), DT_SINGLELINE | DT_NOPREFIX);
    EXPECT_EQ(single.left, 10);
    EXPECT_EQ(single.top, 20);
    EXPECT_EQ(single.right - single.left, size.cx);
    EXPECT_EQ(single.bottom - single.top, size.cy);

    const RECT two = CalcRect(dc, TEXT("File name\r\nx"), DT_NOPREFIX);
    EXPECT_EQ(two.right, single.right);
    EXPECT_EQ(two.bottom - two.top, 2 * size.cy);
    DeleteDC(dc);
}

TEST(Text, PrefixesTakeNoRoomUnlessSwitchedOff)
{
    const HDC dc = CreateCompatibleDC(nullptr);
    const With font(dc, TestFont(-16));
    const LONG plain = CalcRect(dc, TEXT("Open"), DT_SINGLELINE).right;
    EXPECT_EQ(CalcRect(dc, TEXT("&Open"), DT_SINGLELINE).right, plain);
    EXPECT_GT(CalcRect(dc, TEXT("&Open"), DT_SINGLELINE | DT_NOPREFIX).right, plain);
    EXPECT_EQ(CalcRect(dc, TEXT("A&&B"), DT_SINGLELINE).right,
              CalcRect(dc, TEXT("A&B"), DT_SINGLELINE | DT_NOPREFIX).right);
    DeleteDC(dc);
}

TEST(Text, WordsWrapAtTheRectanglesWidth)
{
    const HDC dc = CreateCompatibleDC(nullptr);
    const With font(dc, TestFont(-16));
    const SIZE word = ExtentOf(dc, TEXT("mmmm"));
    const RECT narrow = CalcRect(dc, TEXT("mmmm mmmm mmmm"), DT_WORDBREAK | DT_NOPREFIX, {0, 0, word.cx + 2, 0});
    EXPECT_EQ(narrow.bottom, 3 * word.cy);
    EXPECT_EQ(narrow.right, word.cx);
    const LONG blank = ExtentOf(dc, TEXT(" ")).cx;
    const RECT wide =
        CalcRect(dc, TEXT("mmmm mmmm mmmm"), DT_WORDBREAK | DT_NOPREFIX, {0, 0, 2 * word.cx + blank + 2, 0});
    EXPECT_EQ(wide.bottom, 2 * word.cy);
    const RECT broken =
        CalcRect(dc, TEXT("mm mmmmmmmmmmmm"), DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX, {0, 0, word.cx + 2, 0});
    EXPECT_EQ(broken.bottom, 4 * word.cy) << "a word that is too wide is broken where that is asked for";
    EXPECT_EQ(broken.right, word.cx);
    DeleteDC(dc);
}

TEST(Text, AlignmentPlacesTheInk)
{
    // The columns and rows with any ink, of one letter in a box with room on all sides.
    const auto ink = [](UINT format)
    {
        const Sheet sheet(80, 60);
        const With font(sheet.Dc(), TestFont(-16));
        SetTextColor(sheet.Dc(), RGB(255, 255, 255));
        SetBkMode(sheet.Dc(), TRANSPARENT);
        RECT rect{10, 10, 70, 50};
        EXPECT_GT(DrawTextW(sheet.Dc(), TEXT("H"), 1, &rect, format | DT_SINGLELINE | DT_NOPREFIX), 0);
        RECT found{80, 60, 0, 0};
        for (int y = 0; y < 60; ++y)
        {
            for (int x = 0; x < 80; ++x)
                if (GetPixel(sheet.Dc(), x, y) != kBlack)
                    found = {x < found.left ? x : found.left, y < found.top ? y : found.top,
                             x + 1 > found.right ? x + 1 : found.right, y + 1 > found.bottom ? y + 1 : found.bottom};
        }
        EXPECT_GT(found.right, found.left) << "nothing drawn";
        return found;
    };
    const RECT base = ink(DT_LEFT | DT_TOP);
    EXPECT_LE(base.left, 13);
    const RECT center = ink(DT_CENTER | DT_VCENTER);
    EXPECT_NEAR(center.left + center.right, 80, 2);
    EXPECT_NEAR(center.top - base.top, base.top - 10 >= 0 ? 11 : 0, 4);
    EXPECT_GE(ink(DT_RIGHT).right, 67);
    EXPECT_GT(ink(DT_BOTTOM).bottom, center.bottom);
}

TEST(Text, IsClippedToItsRectangleUnlessSwitchedOff)
{
    for (const bool clipped : {true, false})
    {
        const Sheet sheet(100, 30);
        const With font(sheet.Dc(), TestFont(-20));
        SetTextColor(sheet.Dc(), RGB(255, 255, 255));
        SetBkMode(sheet.Dc(), TRANSPARENT);
        RECT rect{0, 0, 10, 30};
        DrawTextW(sheet.Dc(), TEXT("MMMM"), 4, &rect, DT_SINGLELINE | (clipped ? 0u : UINT{DT_NOCLIP}));
        bool outside = false;
        for (int y = 0; y < 30; ++y)
            for (int x = 10; x < 100; ++x)
                outside = outside || GetPixel(sheet.Dc(), x, y) != kBlack;
        EXPECT_EQ(outside, !clipped);
    }
}

TEST(Text, AnEllipsisShortensWhatDoesNotFit)
{
    const HDC dc = CreateCompatibleDC(nullptr);
    const With font(dc, TestFont(-16));
    const LONG full = ExtentOf(dc, TEXT("A rather long file name")).cx;
    const UINT format = DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS;
    const RECT shortened = CalcRect(dc, TEXT("A rather long file name"), format, {0, 0, full / 2, 20});
    EXPECT_LE(shortened.right, full / 2);
    EXPECT_GT(shortened.right, full / 4);
    EXPECT_EQ(CalcRect(dc, TEXT("A rather long file name"), format, {0, 0, full + 1, 20}).right, full);
    DeleteDC(dc);
}
