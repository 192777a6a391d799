// A menu level on the headless screen: a patterned window with a toolbar, in a pager where a test wants one.
#pragma once

#include "platform/drawing/icon.h"
#include "tests/layer/windowing_desk.h"

#include "commctrl.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// An icon source of one colour that counts how often it had to make its picture.
class PlainIcon final : public platform::IconSource
{
public:
    PlainIcon(int size, std::uint32_t color) : m_image{size, size, {}}, m_color(color) {}
    const platform::IconImage& Image() override
    {
        if (m_image.pixels.empty())
        {
            ++made;
            m_image.pixels.assign(static_cast<std::size_t>(m_image.width) * static_cast<std::size_t>(m_image.height),
                                  m_color);
        }
        return m_image;
    }
    static inline int made = 0;

private:
    platform::IconImage m_image;
    std::uint32_t m_color;
};

/// 0x00RRGGBB, as the screen reports pixels.
constexpr std::uint32_t kBackground = 0x00E0F0D0;

struct ControlsDesk : Desk
{
    static constexpr int kLeft = 100;
    static constexpr int kTop = 50;
    static constexpr int kImage = 16;

    ControlsDesk()
    {
        level = Popup(kLeft, kTop, 240, 200);
        // The level's own background; what shows of it where a control is transparent tells that the control is.
        m_handlers[WM_ERASEBKGND] = [this](HWND, WPARAM wParam, LPARAM)
        {
            RECT client;
            GetClientRect(level, &client);
            HBRUSH brush = CreateSolidBrush(RGB(0xE0, 0xF0, 0xD0));
            FillRect(reinterpret_cast<HDC>(wParam), &client, brush);
            DeleteObject(brush);
            return 1;
        };
        m_handlers[WM_NOTIFY] = [this](HWND, WPARAM, LPARAM lParam)
        { return OnNotify(*reinterpret_cast<NMHDR*>(lParam)); };
        const DWORD style = WS_CHILD | WS_VISIBLE | TBSTYLE_TRANSPARENT | TBSTYLE_REGISTERDROP | TBSTYLE_LIST |
                            TBSTYLE_FLAT | CCS_VERT | CCS_NODIVIDER | CCS_NOPARENTALIGN | CCS_NORESIZE;
        toolbar = CreateWindowExW(WS_EX_TOOLWINDOW, TOOLBARCLASSNAMEW, nullptr, style, 0, 0, 10, 10, level,
                                  reinterpret_cast<HMENU>(static_cast<UINT_PTR>(2)), nullptr, nullptr);
        images = ImageList_Create(kImage, kImage, ILC_COLOR32 | ILC_MASK, 1, 16);
        Send(TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images));
        PlainIcon::made = 0;
    }

    ~ControlsDesk() override
    {
        DestroyWindow(level);
        ImageList_Destroy(images);
        EXPECT_EQ(platform::LiveHandles(platform::HandleKind::ImageList), 0U);
        EXPECT_EQ(platform::LiveHandles(platform::HandleKind::Icon), 0U);
        EXPECT_EQ(platform::LiveHandles(platform::HandleKind::Font), 0U) << "the toolbar's font was left";
        EXPECT_EQ(platform::LiveHandles(platform::HandleKind::Brush), 0U);
    }

    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        return SendMessageW(toolbar, message, wParam, lParam);
    }

    int AddIcon(int size, std::uint32_t color)
    {
        HICON icon = platform::CreateIconFromSource(std::make_shared<PlainIcon>(size, color));
        const int index = ImageList_ReplaceIcon(images, -1, icon);
        DestroyIcon(icon);
        return index;
    }

    void Add(const std::u16string& text, int image = I_IMAGENONE, BYTE style = BTNS_BUTTON)
    {
        TBBUTTON button{};
        const auto index = static_cast<int>(Send(TB_BUTTONCOUNT));
        button.iBitmap = image;
        button.idCommand = 1000 + index;
        button.fsState = TBSTATE_ENABLED | TBSTATE_WRAP;
        button.fsStyle = style;
        button.dwData = static_cast<DWORD_PTR>(1000 + index);
        button.iString = reinterpret_cast<INT_PTR>(text.c_str());
        Send(TB_INSERTBUTTONW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&button));
    }

    RECT Item(int index)
    {
        RECT rect{};
        Send(TB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&rect));
        return rect;
    }

    void SizeButtons(int width, int height)
    {
        Send(TB_AUTOSIZE);
        Send(TB_SETBUTTONSIZE, 0, MAKELPARAM(width, height));
        const auto last = static_cast<int>(Send(TB_BUTTONCOUNT)) - 1;
        SetWindowPos(toolbar, nullptr, 0, 0, width + 20, Item(last).bottom + 2, SWP_NOZORDER | SWP_NOACTIVATE);
    }

    void Page(int width, int height, int scrollButton)
    {
        const DWORD style = WS_CHILD | WS_VISIBLE | CCS_NODIVIDER | CCS_NOPARENTALIGN | PGS_DRAGNDROP | PGS_AUTOSCROLL;
        pager = CreateWindowExW(0, WC_PAGESCROLLERW, nullptr, style, 0, 0, width, height, level,
                                reinterpret_cast<HMENU>(static_cast<UINT_PTR>(1)), nullptr, nullptr);
        SendMessageW(pager, PGM_SETBUTTONSIZE, 0, scrollButton);
        SetParent(toolbar, pager);
        SendMessageW(pager, PGM_SETCHILD, 0, reinterpret_cast<LPARAM>(toolbar));
    }

    int Position() { return static_cast<int>(SendMessageW(pager, PGM_GETPOS, 0, 0)); }

    void Show()
    {
        ShowWindow(level, SW_SHOW);
        Pump();
    }

    /// A pixel in the level's client area, as the screen shows it.
    std::uint32_t Pixel(int x, int y) { return platform::headless::PixelAt(kLeft + x, kTop + y); }
    void MoveTo(int x, int y)
    {
        platform::headless::MoveMouse(kLeft + x, kTop + y);
        Pump();
    }
    void Press()
    {
        platform::headless::PressButton();
        Pump();
    }
    void Release()
    {
        platform::headless::ReleaseButton();
        Pump();
    }
    int Hot() { return static_cast<int>(Send(TB_GETHOTITEM)); }

    /// The rectangle's pixels that are not of this colour: their bounds, empty when there are none.
    RECT InkBounds(RECT area, std::uint32_t color)
    {
        RECT ink = {area.right, area.bottom, area.left, area.top};
        for (int y = area.top; y < area.bottom; ++y)
        {
            for (int x = area.left; x < area.right; ++x)
            {
                if (Pixel(x, y) != color)
                {
                    ink = {std::min<LONG>(ink.left, x), std::min<LONG>(ink.top, y), std::max<LONG>(ink.right, x + 1),
                           std::max<LONG>(ink.bottom, y + 1)};
                }
            }
        }
        return ink.left < ink.right ? ink : RECT{};
    }

    HWND level = nullptr;
    HWND toolbar = nullptr;
    HWND pager = nullptr;
    HIMAGELIST images = nullptr;
    std::function<LRESULT(NMTBCUSTOMDRAW&)> onDraw;
    std::vector<DWORD_PTR> drawnItems;
    std::vector<NMMOUSE> clicks;
    int scrolls = 0;

private:
    LRESULT OnNotify(NMHDR& header)
    {
        switch (header.code)
        {
        case NM_CUSTOMDRAW:
        {
            auto& draw = reinterpret_cast<NMTBCUSTOMDRAW&>(header);
            if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT)
                drawnItems.push_back(draw.nmcd.dwItemSpec);
            return draw.nmcd.dwDrawStage == CDDS_PREPAINT ? CDRF_NOTIFYITEMDRAW
                                                          : (onDraw ? onDraw(draw) : LRESULT{CDRF_DODEFAULT});
        }
        case NM_CLICK:
            clicks.push_back(reinterpret_cast<NMMOUSE&>(header));
            return 0;
        case PGN_CALCSIZE:
        {
            RECT rect;
            GetWindowRect(toolbar, &rect);
            reinterpret_cast<NMPGCALCSIZE&>(header).iHeight = rect.bottom - rect.top;
            return 0;
        }
        case PGN_SCROLL:
            ++scrolls;
            reinterpret_cast<NMPGSCROLL&>(header).iScroll = HIWORD(Send(TB_GETBUTTONSIZE));
            return 0;
        default:
            return 0;
        }
    }
};
