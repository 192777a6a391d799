// Resources: looking up, strings, bitmaps and icons out of the compiled script resources.rc.
#include <windows.h>

#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace
{

using WString = std::basic_string<WCHAR>;

HMODULE Program()
{
    return GetModuleHandleW(nullptr);
}

WString LoadText(UINT id, int capacity = 100)
{
    WCHAR text[100] = {1, 1, 1};
    const int length = LoadStringW(Program(), id, text, capacity);
    EXPECT_EQ(text[length], 0) << "string " << id;
    return WString(text, static_cast<std::size_t>(length));
}

const BYTE* Data(LPCWSTR name, LPCWSTR type, DWORD* size)
{
    const HRSRC resource = FindResourceW(Program(), name, type);
    const HGLOBAL data = resource != nullptr ? LoadResource(Program(), resource) : nullptr;
    *size = resource != nullptr ? SizeofResource(Program(), resource) : 0;
    return data != nullptr ? static_cast<const BYTE*>(LockResource(data)) : nullptr;
}

/// A bitmap of the program in a memory context, which shows its pixels whatever their depth.
class Picture
{
public:
    explicit Picture(LPCWSTR name)
        : m_bitmap(static_cast<HBITMAP>(LoadImageW(Program(), name, IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION))),
          m_dc(CreateCompatibleDC(nullptr)),
          m_previous(m_bitmap != nullptr ? SelectObject(m_dc, m_bitmap) : nullptr)
    {
    }
    ~Picture()
    {
        if (m_previous != nullptr)
            SelectObject(m_dc, m_previous);
        DeleteDC(m_dc);
        DeleteObject(m_bitmap);
    }
    HBITMAP Bitmap() const { return m_bitmap; }
    COLORREF Pixel(int x, int y) const { return GetPixel(m_dc, x, y); }

private:
    HBITMAP m_bitmap;
    HDC m_dc;
    HGDIOBJ m_previous;
};

} // namespace

TEST(Resources, StringsComeWholeOrTruncated)
{
    EXPECT_EQ(LoadText(112), TEXT("Plain"));
    EXPECT_EQ(LoadText(113), TEXT("Gr\x00FC\x00DF"
                                  "e, \x03A9mega, \x5B57"));
    EXPECT_EQ(LoadText(127), TEXT("Last of its block"));
    EXPECT_EQ(LoadText(128), TEXT("First of the next"));
    EXPECT_EQ(LoadText(112, 4), TEXT("Pla"));
    EXPECT_EQ(LoadText(114), TEXT("")) << "not defined, in a block that exists";
    WCHAR text[10];
    EXPECT_EQ(LoadStringW(Program(), 5000, text, 10), 0) << "no such block";
}

TEST(Resources, AStringCanBeReadInPlace)
{
    LPCWSTR text = nullptr;
    const int length = LoadStringW(Program(), 112, reinterpret_cast<LPWSTR>(&text), 0);
    ASSERT_EQ(length, 5);
    EXPECT_EQ(WString(text, 5), TEXT("Plain"));
}

TEST(Resources, AreFoundByNumberTextOrName)
{
    DWORD size = 0;
    const BYTE* data = Data(MAKEINTRESOURCEW(7), reinterpret_cast<LPCWSTR>(RT_RCDATA), &size);
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(size, 8u);
    EXPECT_EQ(std::memcmp(data, "seven\x07\0\0", 8), 0);
    EXPECT_EQ(Data(TEXT("#7"), TEXT("#10"), &size), data);
    EXPECT_NE(Data(MAKEINTRESOURCEW(7), TEXT("WORDS"), &size), nullptr);
    EXPECT_EQ(size, 10u);
    EXPECT_NE(Data(TEXT("FLAGBYNAME"), reinterpret_cast<LPCWSTR>(RT_BITMAP), &size), nullptr);
    EXPECT_NE(Data(TEXT("flagbyname"), reinterpret_cast<LPCWSTR>(RT_BITMAP), &size), nullptr) << "in any letter case";
}

TEST(Resources, ErrorsSayWhatIsMissing)
{
    EXPECT_EQ(FindResourceW(Program(), MAKEINTRESOURCEW(9), reinterpret_cast<LPCWSTR>(RT_BITMAP)), nullptr);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_RESOURCE_NAME_NOT_FOUND));
    EXPECT_EQ(FindResourceW(Program(), MAKEINTRESOURCEW(7), MAKEINTRESOURCEW(99)), nullptr);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_RESOURCE_TYPE_NOT_FOUND));
}

TEST(Resources, BitmapsKeepTheirDepthAndPixels)
{
    const COLORREF flag[2][3] = {{RGB(255, 0, 0), RGB(0, 255, 0), RGB(0, 0, 255)},
                                 {RGB(255, 255, 255), RGB(0, 0, 0), RGB(128, 128, 128)}};
    for (const int bits : {4, 8, 24, 32})
    {
        SCOPED_TRACE(bits);
        const Picture picture(MAKEINTRESOURCEW(200 + bits));
        DIBSECTION section{};
        ASSERT_EQ(GetObjectW(picture.Bitmap(), sizeof(section), &section), static_cast<int>(sizeof(section)));
        EXPECT_EQ(section.dsBm.bmWidth, 3);
        EXPECT_EQ(section.dsBm.bmHeight, 2);
        EXPECT_EQ(section.dsBm.bmBitsPixel, bits);
        EXPECT_NE(section.dsBm.bmBits, nullptr);
        for (int y = 0; y < 2; ++y)
            for (int x = 0; x < 3; ++x)
                EXPECT_EQ(picture.Pixel(x, y), flag[y][x]) << x << "," << y;
    }
}

TEST(Resources, AOneBitBitmapIsBlackAndWhite)
{
    const Picture picture(TEXT("#201"));
    BITMAP bitmap{};
    ASSERT_NE(GetObjectW(picture.Bitmap(), sizeof(bitmap), &bitmap), 0);
    EXPECT_EQ(bitmap.bmBitsPixel, 1);
    for (int x = 0; x < 3; ++x)
    {
        EXPECT_EQ(picture.Pixel(x, 0), x == 1 ? RGB(0, 0, 0) : RGB(255, 255, 255)) << x;
        EXPECT_EQ(picture.Pixel(x, 1), x == 1 ? RGB(255, 255, 255) : RGB(0, 0, 0)) << x;
    }
}

TEST(Resources, ASectionsPixelsAreAddressable)
{
    const Picture picture(TEXT("#232"));
    BITMAP bitmap{};
    ASSERT_NE(GetObjectW(picture.Bitmap(), sizeof(bitmap), &bitmap), 0);
    ASSERT_NE(bitmap.bmBits, nullptr);
    // Rows are stored from the bottom: the first is white, black, grey with alpha 255.
    const BYTE* bytes = static_cast<const BYTE*>(bitmap.bmBits);
    const BYTE row[] = {255, 255, 255, 255, 0, 0, 0, 255, 128, 128, 128, 255, 0, 0, 255, 0x40};
    EXPECT_EQ(std::memcmp(bytes, row, sizeof(row)), 0) << "alpha is kept, nothing is premultiplied";
}

TEST(Resources, IconsAreChosenBySize)
{
    DWORD size = 0;
    const BYTE* directory = Data(MAKEINTRESOURCEW(114), reinterpret_cast<LPCWSTR>(RT_GROUP_ICON), &size);
    ASSERT_NE(directory, nullptr);
    const auto lookUp = [&](int side)
    { return LookupIconIdFromDirectoryEx(const_cast<BYTE*>(directory), TRUE, side, side, LR_DEFAULTCOLOR); };
    const int small = lookUp(16);
    const int large = lookUp(32);
    EXPECT_NE(small, 0);
    EXPECT_NE(large, 0);
    EXPECT_NE(small, large);
    EXPECT_EQ(lookUp(14), small);
    EXPECT_EQ(lookUp(48), large);
    const BYTE* picture = Data(MAKEINTRESOURCEW(small), reinterpret_cast<LPCWSTR>(RT_ICON), &size);
    ASSERT_NE(picture, nullptr);
    BITMAPINFOHEADER header;
    std::memcpy(&header, picture, sizeof(header));
    EXPECT_EQ(header.biWidth, 16);
    EXPECT_EQ(header.biHeight, 32) << "colours and mask";
    EXPECT_EQ(header.biBitCount, 32);
}

TEST(Resources, IconHandlesLoadAndGo)
{
    const HICON icon = LoadIconW(Program(), MAKEINTRESOURCEW(114));
    EXPECT_NE(icon, nullptr);
    EXPECT_EQ(LoadIconW(Program(), MAKEINTRESOURCEW(114)), icon) << "shared by all who ask";
    EXPECT_EQ(LoadIconW(Program(), MAKEINTRESOURCEW(999)), nullptr);
    const auto load = [](UINT flags)
    { return LoadImageW(Program(), MAKEINTRESOURCEW(114), IMAGE_ICON, 16, 16, flags); };
    EXPECT_EQ(load(LR_SHARED), load(LR_SHARED));
    const HANDLE first = load(LR_DEFAULTCOLOR);
    const HANDLE second = load(LR_DEFAULTCOLOR);
    EXPECT_NE(first, second);
    EXPECT_TRUE(DestroyIcon(static_cast<HICON>(first)));
    EXPECT_TRUE(DestroyIcon(static_cast<HICON>(second)));
}
