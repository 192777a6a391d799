// A pop-up window with a toolbar, and a pager where a test wants one, set up as a menu level sets them up; it records
// what the controls tell it.
#pragma once

#include <windows.h>
#include <commctrl.h>
#include <uxtheme.h>

#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace conformance
{

using Text = std::basic_string<WCHAR>;

/// Wine's controls differ from the documented ones in places; a test that meets such a place says so.
inline bool OnWine()
{
    HMODULE ntdll = GetModuleHandleW(TEXT("ntdll"));
    return ntdll != nullptr && GetProcAddress(ntdll, "wine_get_version") != nullptr;
}

inline void PumpMessages()
{
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
    {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

/// Handles messages until the condition holds; false when it does not within five seconds.
inline bool PumpUntil(const std::function<bool()>& condition)
{
    const DWORD start = GetTickCount();
    for (PumpMessages(); !condition(); PumpMessages())
    {
        if (GetTickCount() - start > 5000)
            return false;
        // A timer bounds the wait for the next message.
        const UINT_PTR tick = SetTimer(nullptr, 0, 10, nullptr);
        MSG message;
        GetMessageW(&message, nullptr, 0, 0);
        DispatchMessageW(&message);
        KillTimer(nullptr, tick);
    }
    return true;
}

struct HotChange
{
    int from;
    int to;
    DWORD flags;
    bool operator==(const HotChange&) const = default;
};
inline std::ostream& operator<<(std::ostream& out, const HotChange& change)
{
    return out << change.from << "->" << change.to << " flags 0x" << std::hex << change.flags << std::dec;
}

struct Drawn
{
    DWORD stage;
    DWORD_PTR item;
    UINT state;
    LPARAM data;
    RECT rect;
};

class Desk
{
public:
    static constexpr int kFirstCommand = 1000;

    Desk()
    {
        WNDCLASSEXW windowClass = {};
        windowClass.cbSize = sizeof(windowClass);
        windowClass.lpfnWndProc = Procedure;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        windowClass.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_MENU + 1));
        windowClass.lpszClassName = TEXT("ControlDesk");
        RegisterClassExW(&windowClass);
        // The cursor would make hot items of its own.
        SetCursorPos(900, 700);
        level = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, TEXT("ControlDesk"), nullptr, WS_POPUP | WS_BORDER,
                                100, 100, 302, 202, nullptr, nullptr, windowClass.hInstance, nullptr);
        SetWindowLongPtrW(level, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        const DWORD style = WS_CHILD | WS_VISIBLE | TBSTYLE_TRANSPARENT | TBSTYLE_REGISTERDROP | TBSTYLE_LIST |
                            TBSTYLE_FLAT | CCS_VERT | CCS_NODIVIDER | CCS_NOPARENTALIGN | CCS_NORESIZE;
        toolbar = CreateWindowExW(WS_EX_TOOLWINDOW, TOOLBARCLASSNAMEW, nullptr, style, 0, 0, 10, 10, level,
                                  reinterpret_cast<HMENU>(static_cast<UINT_PTR>(2)), nullptr, nullptr);
        SetWindowTheme(toolbar, TEXT(""), TEXT(""));
        Send(TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON));
        images = ImageList_Create(kImageSize, kImageSize, ILC_COLOR32 | ILC_MASK, 1, 16);
        Send(TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images));
    }

    ~Desk()
    {
        DestroyWindow(level);
        ImageList_Destroy(images);
        PumpMessages();
    }

    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        return SendMessageW(toolbar, message, wParam, lParam);
    }

    /// Appends an item, or a separator of the given extent.
    void Add(const Text& text, int separator = 0)
    {
        TBBUTTON button = {};
        const int index = Count();
        button.iBitmap = separator;
        button.idCommand = kFirstCommand + index;
        button.fsState = TBSTATE_ENABLED | TBSTATE_WRAP;
        button.fsStyle = separator != 0 ? BTNS_SEP : BTNS_BUTTON;
        button.dwData = static_cast<DWORD_PTR>(kFirstCommand + index);
        button.iString = reinterpret_cast<INT_PTR>(text.c_str());
        Send(TB_INSERTBUTTONW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&button));
    }

    int Count() { return static_cast<int>(Send(TB_BUTTONCOUNT)); }
    int Hot() { return static_cast<int>(Send(TB_GETHOTITEM)); }

    RECT Item(int index)
    {
        RECT rect = {-1, -1, -1, -1};
        Send(TB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&rect));
        return rect;
    }

    int HitTest(POINT point) { return static_cast<int>(Send(TB_HITTEST, 0, reinterpret_cast<LPARAM>(&point))); }

    /// Width of the text and height of a line in the toolbar's font.
    SIZE Measure(const Text& text)
    {
        HDC dc = GetDC(toolbar);
        HGDIOBJ previous = SelectObject(dc, reinterpret_cast<HGDIOBJ>(Send(WM_GETFONT)));
        SIZE size = {};
        GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
        TEXTMETRICW metrics;
        GetTextMetricsW(dc, &metrics);
        size.cy = metrics.tmHeight;
        SelectObject(dc, previous);
        ReleaseDC(toolbar, dc);
        return size;
    }

    /// Gives every button a size and the toolbar the room for them, with an empty margin of 20 pixels at the right.
    void SizeButtons(int width, int height)
    {
        Send(TB_AUTOSIZE);
        Send(TB_SETBUTTONSIZE, 0, MAKELPARAM(width, height));
        const int bottom = Count() > 0 ? Item(Count() - 1).bottom : 0;
        SetWindowPos(toolbar, nullptr, 0, 0, width + 20, bottom + 2, SWP_NOZORDER | SWP_NOACTIVATE);
    }

    /// Puts the toolbar into a pager of the given height at the level's top-left corner.
    void Page(int width, int height, int scrollButton)
    {
        const DWORD style = WS_CHILD | WS_VISIBLE | CCS_NODIVIDER | CCS_NOPARENTALIGN | PGS_DRAGNDROP | PGS_AUTOSCROLL;
        pager = CreateWindowExW(0, WC_PAGESCROLLERW, nullptr, style, 0, 0, width, height, level,
                                reinterpret_cast<HMENU>(static_cast<UINT_PTR>(1)), nullptr, nullptr);
        SendMessageW(pager, PGM_SETBUTTONSIZE, 0, scrollButton);
        SetParent(toolbar, pager);
        SetWindowPos(toolbar, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        SendMessageW(pager, PGM_SETCHILD, 0, reinterpret_cast<LPARAM>(toolbar));
    }

    void Show()
    {
        ShowWindow(level, SW_SHOW);
        UpdateWindow(level);
        PumpMessages();
    }

    void Move(int x, int y) { Send(WM_MOUSEMOVE, 0, MAKELPARAM(x, y)); }
    void Press(int x, int y) { Send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y)); }
    void Release(int x, int y) { Send(WM_LBUTTONUP, 0, MAKELPARAM(x, y)); }

    std::vector<HotChange> TakeHotChanges() { return std::exchange(hotChanges, {}); }

    static constexpr int kImageSize = 16;
    HWND level = nullptr;
    HWND toolbar = nullptr;
    HWND pager = nullptr;
    HIMAGELIST images = nullptr;

    bool refuseHot = false;
    bool keysHandled = true;
    int scrollStep = 0; ///< what PGN_SCROLL is answered with, 0 leaves it alone
    std::vector<HotChange> hotChanges;
    std::vector<NMMOUSE> clicks;
    std::vector<UINT> keys;
    std::vector<Drawn> drawn;
    std::vector<int> scrolls; ///< the direction of each PGN_SCROLL
    int scrollPosition = -1;  ///< position and visible height that the last PGN_SCROLL named
    int scrollHeight = -1;
    std::vector<HWND> contextMenus; ///< wParam of each WM_CONTEXTMENU
    int wheels = 0;
    int erased = 0;
    std::function<LRESULT(NMTBCUSTOMDRAW&)> onDraw;
    std::function<void()> onClick;

private:
    LRESULT OnNotify(NMHDR* header)
    {
        switch (header->code)
        {
        case TBN_HOTITEMCHANGE:
        {
            const auto& change = *reinterpret_cast<NMTBHOTITEM*>(header);
            hotChanges.push_back({change.idOld, change.idNew, change.dwFlags});
            return refuseHot;
        }
        case NM_CLICK:
            clicks.push_back(*reinterpret_cast<NMMOUSE*>(header));
            if (onClick)
                onClick();
            return 0;
        case NM_KEYDOWN:
            keys.push_back(reinterpret_cast<NMKEY*>(header)->nVKey);
            return keysHandled;
        case NM_CUSTOMDRAW:
        {
            auto& draw = *reinterpret_cast<NMTBCUSTOMDRAW*>(header);
            drawn.push_back({draw.nmcd.dwDrawStage, draw.nmcd.dwItemSpec, draw.nmcd.uItemState, draw.nmcd.lItemlParam,
                             draw.nmcd.rc});
            return onDraw ? onDraw(draw) : CDRF_DODEFAULT;
        }
        case PGN_CALCSIZE:
        {
            auto& size = *reinterpret_cast<NMPGCALCSIZE*>(header);
            RECT rect;
            GetWindowRect(toolbar, &rect);
            size.iWidth = rect.right - rect.left;
            size.iHeight = rect.bottom - rect.top;
            return 0;
        }
        case PGN_SCROLL:
        {
            auto& scroll = *reinterpret_cast<NMPGSCROLL*>(header);
            // The structure is packed: no reference to a member can be bound.
            const int direction = scroll.iDir;
            scrolls.push_back(direction);
            scrollPosition = scroll.iYpos;
            scrollHeight = scroll.rcParent.bottom - scroll.rcParent.top;
            scroll.iScroll = scrollStep != 0 ? scrollStep : scroll.iScroll;
            return 0;
        }
        default:
            return 0;
        }
    }

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        auto* desk = reinterpret_cast<Desk*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (desk != nullptr && message == WM_NOTIFY)
            return desk->OnNotify(reinterpret_cast<NMHDR*>(lParam));
        if (desk != nullptr && message == WM_CONTEXTMENU)
        {
            desk->contextMenus.push_back(reinterpret_cast<HWND>(wParam));
            return 0;
        }
        if (desk != nullptr)
        {
            desk->wheels += message == WM_MOUSEWHEEL;
            desk->erased += message == WM_ERASEBKGND;
        }
        return DefWindowProcW(window, message, wParam, lParam);
    }
};

/// PrintTo and equality for rectangles in expectations.
struct Box
{
    LONG left, top, right, bottom;
    Box(LONG l, LONG t, LONG r, LONG b) : left(l), top(t), right(r), bottom(b) {}
    Box(const RECT& rect) : left(rect.left), top(rect.top), right(rect.right), bottom(rect.bottom) {}
    bool operator==(const Box&) const = default;
};
inline std::ostream& operator<<(std::ostream& out, const Box& box)
{
    return out << '(' << box.left << ", " << box.top << ", " << box.right << ", " << box.bottom << ')';
}

} // namespace conformance
