// Rendering the banner. The compositing of the title is in banner_pixels.cpp.
#include "menu/banner.h"

#include "app/launcher_state.h"
#include "menu/custom_bar.h"
#include "menu/nine_slice.h"
#include "support/unique_handle.h"

namespace
{

constexpr int kSkinStripWidth = 5; ///< columns of the skin that make the banner; the next one makes the body
constexpr int kTitleStart = 12;
constexpr int kTitleMargin = 3;

/// A 32-bit top-down bitmap with access to its pixels (B G R A); zeroed.
struct PixelBitmap
{
    UniqueBitmap bitmap;
    std::uint32_t* pixels = nullptr;
    SIZE size{};
};

PixelBitmap CreatePixelBitmap(int width, int height)
{
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    PixelBitmap result;
    void* bits = nullptr;
    result.bitmap.Reset(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    result.pixels = static_cast<std::uint32_t*>(bits);
    result.size = {width, height};
    return result;
}

void FillWithMenuColor(HDC dc, const RECT& rect)
{
    const UniqueBrush brush(CreateSolidBrush(g_launcher.m_menuColor));
    FillRect(dc, &rect, brush.Get());
}

void DrawSkin(HDC destination, const RECT& to, const RECT& from, const Margins& margins)
{
    const UniqueMemoryDC skin(CreateCompatibleDC(destination));
    if (!skin)
        return;
    const SelectGuard selected(skin.Get(), g_launcher.m_bannerSkin.Get());
    StretchNineSlice(skin.Get(), destination, to, from, margins);
}

/// The title in white on black, as long as its strip and as high as the banner is wide.
PixelBitmap DrawTitleMask(const BannerSize& size)
{
    PixelBitmap mask = CreatePixelBitmap(size.stripLength, size.bannerWidth);
    const UniqueMemoryDC dc(CreateCompatibleDC(nullptr));
    if (!mask.bitmap || !dc)
        return mask;
    const SelectGuard bitmap(dc.Get(), mask.bitmap.Get());
    const SelectGuard font(dc.Get(), g_launcher.m_font.Get());
    SetTextColor(dc.Get(), RGB(255, 255, 255));
    SetBkMode(dc.Get(), TRANSPARENT);
    RECT place{kTitleStart, kTitleMargin, size.stripLength - kTitleMargin, size.bannerWidth - kTitleMargin};
    DrawTextW(dc.Get(), g_launcher.m_title.c_str(), static_cast<int>(g_launcher.m_title.size()), &place,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    GdiFlush();
    return mask;
}

/// Empty when out of resources.
UniqueBitmap RenderBannerBitmap(const BannerSize& size)
{
    PixelBitmap banner = CreatePixelBitmap(size.bannerWidth, size.totalHeight);
    const UniqueMemoryDC dc(CreateCompatibleDC(nullptr));
    if (!banner.bitmap || !dc)
        return {};
    {
        const SelectGuard selected(dc.Get(), banner.bitmap.Get());
        const RECT all{0, 0, size.bannerWidth, size.totalHeight};
        FillWithMenuColor(dc.Get(), all);
        DrawSkin(dc.Get(), all, {0, 0, kSkinStripWidth, g_launcher.m_bannerSkinHeight}, {2, 2, 2, 2});
        GdiFlush();
    }
    const PixelBitmap mask = DrawTitleMask(size);
    if (mask.bitmap)
        CompositeTitle(banner.pixels, banner.size, mask.pixels, mask.size, g_launcher.m_titleColor);
    return std::move(banner.bitmap);
}

} // namespace

SIZE MeasureTitle()
{
    const WindowDC screen(nullptr);
    const SelectGuard font(screen.Get(), g_launcher.m_font.Get());
    RECT text{};
    DrawTextW(screen.Get(), g_launcher.m_title.c_str(), static_cast<int>(g_launcher.m_title.size()), &text,
              DT_SINGLELINE | DT_NOPREFIX | DT_CALCRECT);
    return {text.right - text.left, text.bottom - text.top};
}

void DrawBanner(HDC dc, HBITMAP banner, const RECT& body)
{
    const UniqueMemoryDC source(CreateCompatibleDC(dc));
    const SelectGuard selected(source.Get(), banner);
    BitBlt(dc, 0, 0, body.left, body.bottom, source.Get(), 0, 0, SRCCOPY);
    FillWithMenuColor(dc, body);
    DrawSkin(dc, body, {kSkinStripWidth, 0, kSkinStripWidth + 1, g_launcher.m_bannerSkinHeight}, {0, 2, 0, 2});
}

void CustomMenu::CustomBar::RenderBanner(const BannerSize& size)
{
    m_banner = RenderBannerBitmap(size);
    m_contentRect = {size.bannerWidth, 0, size.totalWidth, size.totalHeight};
}
