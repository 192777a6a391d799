// What the launcher relies on in image lists.
#include <windows.h>
#include <commctrl.h>

#include <gtest/gtest.h>

namespace
{

/// A black bitmap of 32 × 32 pixels to draw on.
class Picture
{
public:
    Picture()
    {
        BITMAPINFO info = {};
        info.bmiHeader.biSize = sizeof(info.bmiHeader);
        info.bmiHeader.biWidth = 32;
        info.bmiHeader.biHeight = -32;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        m_bitmap = CreateDIBSection(m_dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        m_previous = SelectObject(m_dc, m_bitmap);
    }
    ~Picture()
    {
        SelectObject(m_dc, m_previous);
        DeleteObject(m_bitmap);
        DeleteDC(m_dc);
    }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;
    HDC Context() const { return m_dc; }

private:
    HDC m_dc = CreateCompatibleDC(nullptr);
    HBITMAP m_bitmap = nullptr;
    HGDIOBJ m_previous = nullptr;
};

class ImageListTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_icon = LoadPicture(16);
        ASSERT_NE(m_icon, nullptr);
    }
    void TearDown() override
    {
        DestroyIcon(m_icon);
        ImageList_Destroy(m_list);
    }

    /// Half-transparent green.
    static HICON LoadPicture(int size)
    {
        return static_cast<HICON>(
            LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(114), IMAGE_ICON, size, size, LR_DEFAULTCOLOR));
    }

    HIMAGELIST m_list = ImageList_Create(16, 16, ILC_COLOR32 | ILC_MASK, 1, 16);
    HICON m_icon = nullptr;
};

} // namespace

TEST_F(ImageListTest, IconsAreAppendedAndReplaced)
{
    EXPECT_EQ(ImageList_GetImageCount(m_list), 0) << "the initial size is room, not images";
    EXPECT_EQ(ImageList_ReplaceIcon(m_list, -1, m_icon), 0);
    EXPECT_EQ(ImageList_ReplaceIcon(m_list, -1, m_icon), 1);
    EXPECT_EQ(ImageList_ReplaceIcon(m_list, 0, m_icon), 0);
    EXPECT_EQ(ImageList_ReplaceIcon(m_list, -1, nullptr), -1);
    EXPECT_EQ(ImageList_ReplaceIcon(m_list, -2, m_icon), -1);
    EXPECT_EQ(ImageList_ReplaceIcon(nullptr, -1, m_icon), -1);
    EXPECT_EQ(ImageList_GetImageCount(m_list), 2);
}

TEST_F(ImageListTest, SizeIsTheListsWhateverTheIcons)
{
    ImageList_ReplaceIcon(m_list, -1, m_icon);
    int width = 0;
    int height = 0;
    EXPECT_TRUE(ImageList_GetIconSize(m_list, &width, &height));
    EXPECT_EQ(width, 16);
    EXPECT_EQ(height, 16);
}

TEST_F(ImageListTest, OnlyImagesThereAreAreDrawn)
{
    const Picture picture;
    ImageList_ReplaceIcon(m_list, -1, m_icon);
    EXPECT_TRUE(ImageList_Draw(m_list, 0, picture.Context(), 8, 4, ILD_NORMAL));
    EXPECT_FALSE(ImageList_Draw(m_list, 1, picture.Context(), 0, 0, ILD_NORMAL));
    EXPECT_FALSE(ImageList_Draw(m_list, I_IMAGENONE, picture.Context(), 0, 0, ILD_NORMAL));
    for (const POINT inside : {POINT{8, 4}, POINT{23, 19}})
    {
        const COLORREF color = GetPixel(picture.Context(), inside.x, inside.y);
        EXPECT_NEAR(GetGValue(color), 128, 2);
        EXPECT_EQ(GetRValue(color), 0);
    }
    EXPECT_EQ(GetPixel(picture.Context(), 7, 4), RGB(0, 0, 0));
    EXPECT_EQ(GetPixel(picture.Context(), 24, 19), RGB(0, 0, 0));
}

TEST(StockIcons, SayByColourWhatKindTheyAreAtTheSizeAskedFor)
{
    constexpr int kRed = 0;
    constexpr int kGreen = 1;
    constexpr int kBlue = 2;
    struct Stock
    {
        LPCWSTR name;
        POINT probe;
        int strongest; ///< colour channel
        int weakest;
    };
    for (const Stock& stock : {Stock{IDI_ERROR, {8, 16}, kRed, kBlue}, Stock{IDI_WARNING, {10, 27}, kRed, kBlue},
                               Stock{IDI_INFORMATION, {8, 20}, kBlue, kRed}, Stock{IDI_QUESTION, {8, 20}, kBlue, kRed}})
    {
        const Picture picture;
        HIMAGELIST list = ImageList_Create(32, 32, ILC_COLOR32 | ILC_MASK, 1, 1);
        auto* icon = static_cast<HICON>(LoadImageW(nullptr, stock.name, IMAGE_ICON, 32, 32, LR_DEFAULTCOLOR));
        ASSERT_NE(icon, nullptr);
        ImageList_ReplaceIcon(list, -1, icon);
        ImageList_Draw(list, 0, picture.Context(), 0, 0, ILD_NORMAL);
        const COLORREF color = GetPixel(picture.Context(), stock.probe.x, stock.probe.y);
        const int channels[] = {GetRValue(color), GetGValue(color), GetBValue(color)};
        EXPECT_GT(channels[stock.strongest], channels[stock.weakest] + 60) << std::hex << color;
        EXPECT_GE(channels[stock.strongest], channels[kGreen]) << std::hex << color;
        DestroyIcon(icon);
        ImageList_Destroy(list);
    }
    EXPECT_EQ(LoadImageW(nullptr, MAKEINTRESOURCEW(32599), IMAGE_ICON, 32, 32, LR_DEFAULTCOLOR), nullptr);
}

TEST(ImageList, BadSizesAndDeadListsAreRefused)
{
    EXPECT_EQ(ImageList_Create(-1, 16, ILC_COLOR32, 1, 1), nullptr);
    EXPECT_EQ(ImageList_Create(0, 16, ILC_COLOR32, 1, 1), nullptr);
    HIMAGELIST list = ImageList_Create(16, 16, ILC_COLOR32, 1, 1);
    EXPECT_TRUE(ImageList_Destroy(list));
    EXPECT_FALSE(ImageList_Destroy(list));
    EXPECT_FALSE(ImageList_Destroy(nullptr));
    int size = 0;
    EXPECT_FALSE(ImageList_GetIconSize(list, &size, &size));
}
