// Drawing by its inner interfaces: surfaces, icons, bitmaps of every depth, damaged pictures.
#include "platform/drawing/dib_file.h"
#include "platform/drawing/icon.h"
#include "platform/drawing/icon_directory.h"
#include "platform/drawing/surface_dc.h"

#include "windows.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <random>

using namespace platform;

namespace
{

using FileBytes = std::vector<unsigned char>;

FileBytes ReadPicture(const std::string& name)
{
    std::ifstream file(std::string(ORB_TEST_PICTURES) + "/" + name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

std::u16string PictureName(const std::string& name)
{
    std::string path = std::string(ORB_TEST_PICTURES) + "/" + name;
    std::replace(path.begin(), path.end(), '/', '\\');
    return {path.begin(), path.end()};
}

/// A window's pixels with a context on them.
struct Window
{
    Window(int width, int height, POINT origin, const RECT& clip)
        : pixels(static_cast<std::size_t>(width * height)),
          surface{pixels.data(), width, height, width},
          dc(CreateSurfaceDC(surface, origin, Region(clip)))
    {
    }
    ~Window() { DeleteSurfaceDC(dc); }
    std::uint32_t At(int x, int y) const { return pixels[static_cast<std::size_t>(y * surface.width + x)]; }

    std::vector<std::uint32_t> pixels;
    Surface surface;
    HDC dc;
};

HBITMAP MakeSection(int width, int height)
{
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    return CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, nullptr, nullptr, 0);
}

class CountingSource : public IconSource
{
public:
    const IconImage& Image() override
    {
        ++made;
        return image;
    }
    IconImage image{2, 1, {0xFF00FF00, 0x80800000}};
    int made = 0;
};

/// The n-th picture of an .ico file (ICONDIR with 16-byte entries).
FileBytes IconPicture(const FileBytes& file, std::size_t n)
{
    const unsigned char* entry = file.data() + 6 + 16 * n;
    std::uint32_t size = 0;
    std::uint32_t offset = 0;
    std::memcpy(&size, entry + 8, 4);
    std::memcpy(&offset, entry + 12, 4);
    return FileBytes(file.begin() + offset, file.begin() + offset + size);
}

void DamageAndRead(const FileBytes& good, void (*read)(Bytes))
{
    for (std::size_t size = 0; size < good.size(); size += 1 + good.size() / 200)
        read({good.data(), size});
    std::mt19937 random(3);
    for (int round = 0; round < 2000; ++round)
    {
        FileBytes bad = good;
        for (int hit = 0; hit < 4; ++hit)
            bad[random() % std::min<std::size_t>(bad.size(), 80)] = static_cast<unsigned char>(random());
        read(bad);
    }
}

} // namespace

TEST(SurfaceContext, DrawsAtItsOriginInsideItsClip)
{
    const Window window(6, 4, {2, 1}, {2, 1, 4, 9});
    const RECT rect{-5, 0, 5, 2};
    const HBRUSH brush = CreateSolidBrush(RGB(255, 0, 0));
    FillRect(window.dc, &rect, brush);
    DeleteObject(brush);
    EXPECT_EQ(window.At(2, 1), 0xFF0000u) << "client (0, 0)";
    EXPECT_EQ(window.At(3, 2), 0xFF0000u);
    EXPECT_EQ(window.At(1, 1), 0u) << "left of the clip";
    EXPECT_EQ(window.At(4, 1), 0u) << "right of the clip";
    EXPECT_EQ(window.At(2, 3), 0u) << "below the rectangle";
    RECT box{};
    EXPECT_EQ(GetClipBox(window.dc, &box), SIMPLEREGION);
    EXPECT_EQ(box.left, 0);
    EXPECT_EQ(box.right, 2);
    EXPECT_EQ(box.bottom, 3) << "the clip ends with the surface";
}

TEST(SurfaceContext, BelongsToWhoMadeIt)
{
    const Window window(2, 2, {0, 0}, {0, 0, 2, 2});
    EXPECT_FALSE(DeleteDC(window.dc));
    const HBITMAP bitmap = MakeSection(2, 2);
    EXPECT_EQ(SelectObject(window.dc, bitmap), nullptr) << "a window has no bitmap to exchange";
    EXPECT_TRUE(DeleteObject(bitmap));
}

TEST(SurfaceContext, SelectedObjectsOutliveTheirDeletion)
{
    const Window window(2, 2, {0, 0}, {0, 0, 2, 2});
    const HBRUSH brush = CreateSolidBrush(RGB(0, 0, 255));
    const HGDIOBJ previous = SelectObject(window.dc, brush);
    EXPECT_TRUE(DeleteObject(brush));
    const POINT corners[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    EXPECT_TRUE(Polygon(window.dc, corners, 4));
    EXPECT_EQ(window.At(0, 0), 0x0000FFu);
    SelectObject(window.dc, previous);
    EXPECT_EQ(LiveHandles(HandleKind::Brush), 0u) << "let go, and gone";
}

TEST(Bitmaps, ASelectedBitmapCannotBeDeleted)
{
    const HDC dc = CreateCompatibleDC(nullptr);
    const HBITMAP bitmap = MakeSection(3, 3);
    const HGDIOBJ previous = SelectObject(dc, bitmap);
    EXPECT_FALSE(DeleteObject(bitmap));
    SelectObject(dc, previous);
    EXPECT_TRUE(DeleteObject(bitmap));
    DeleteDC(dc);
}

// Drawing on one would have to find its nearest colours, which nothing has a use for.
TEST(Bitmaps, OfFewerBitsAreOnlyRead)
{
    const HDC dc = CreateCompatibleDC(nullptr);
    const HANDLE bitmap = LoadImageW(nullptr, PictureName("flag8.bmp").c_str(), IMAGE_BITMAP, 0, 0,
                                     LR_CREATEDIBSECTION | LR_LOADFROMFILE);
    const HGDIOBJ previous = SelectObject(dc, bitmap);
    const COLORREF color = GetPixel(dc, 1, 0);
    EXPECT_EQ(color, RGB(0, 255, 0));
    const RECT all{0, 0, 9, 9};
    FillRect(dc, &all, GetSysColorBrush(COLOR_HIGHLIGHT));
    EXPECT_EQ(GetPixel(dc, 1, 0), color);
    SelectObject(dc, previous);
    EXPECT_TRUE(DeleteObject(bitmap));
    DeleteDC(dc);
}

TEST(Pictures, DamagedBitmapsAreRefusedOrRead)
{
    for (const char* name : {"flag1.bmp", "flag8.bmp", "flag24.bmp", "flag32.bmp"})
    {
        const FileBytes good = ReadPicture(name);
        EXPECT_NE(ReadBitmapFile(good), nullptr) << name;
        DamageAndRead(good, [](Bytes bytes) { ReadBitmapFile(bytes); });
    }
}

TEST(Pictures, IconsComePremultipliedWithTheirMask)
{
    const FileBytes file = ReadPicture("two.ico");
    const auto small = ReadIconImage(IconPicture(file, 0));
    ASSERT_TRUE(small);
    EXPECT_EQ(small->width, 16);
    EXPECT_EQ(small->height, 16);
    EXPECT_EQ(small->pixels[0], 0x80008000u) << "half-transparent green";
    const auto large = ReadIconImage(IconPicture(file, 1));
    ASSERT_TRUE(large);
    EXPECT_EQ(large->pixels[0], 0u) << "masked out";
    EXPECT_EQ(large->pixels[31], 0xFFFF0000u);
    DamageAndRead(
        IconPicture(file, 0), [](Bytes bytes) { ReadIconImage(bytes); });
    DamageAndRead(IconPicture(file, 1), [](Bytes bytes) { ReadIconImage(bytes); });
}

TEST(Pictures, ADirectoryWithTooLargeACountIsReadAsFarAsItGoes)
{
    FileBytes directory{0, 0, 1, 0, 200, 0, 16, 16, 0, 0, 1, 0, 32, 0, 0, 0, 0, 0, 5, 0};
    EXPECT_EQ(BestIconId(directory, 16, 16), 5);
    directory.resize(12);
    EXPECT_EQ(BestIconId(directory, 16, 16), 0);
    EXPECT_EQ(BestIconId({}, 16, 16), 0);
}

TEST(Icons, ShareTheirSourceAndAreMadeWhenDrawn)
{
    const auto source = std::make_shared<CountingSource>();
    const HICON icon = CreateIconFromSource(source);
    EXPECT_EQ(source->made, 0);
    const std::shared_ptr<IconSource> shared = IconSourceOf(icon);
    EXPECT_EQ(shared, source);
    EXPECT_TRUE(DestroyIcon(icon));
    EXPECT_EQ(IconSourceOf(icon), nullptr);
    EXPECT_FALSE(DestroyIcon(icon));

    const Window window(4, 2, {0, 0}, {0, 0, 4, 2});
    std::fill(window.surface.pixels, window.surface.pixels + 8, 0x000000FF);
    EXPECT_TRUE(DrawIconImage(window.dc, 1, 1, shared->Image()));
    EXPECT_EQ(window.At(1, 1) & 0xFFFFFF, 0x00FF00u);
    EXPECT_EQ(window.At(2, 1) & 0xFFFF00, 0x800000u);
    EXPECT_NEAR(static_cast<int>(window.At(2, 1) & 0xFF), 0x7F, 1);
    EXPECT_EQ(window.At(3, 1) & 0xFFFFFF, 0x0000FFu);
    EXPECT_TRUE(DrawIconImage(window.dc, 3, 1, shared->Image())) << "half outside";
}
