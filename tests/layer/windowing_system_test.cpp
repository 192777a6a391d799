// Monitors, system parameters, and other programs' windows.
#include "windowing_desk.h"

#include "shellscalingapi.h"

namespace
{

namespace headless = platform::headless;

struct System : Desk
{
    static RECT WorkAreaOf(HMONITOR monitor)
    {
        MONITORINFO info{sizeof(info), {}, {}, 0};
        EXPECT_TRUE(GetMonitorInfoW(monitor, &info));
        return info.rcWork;
    }
};

TEST_F(System, NearestMonitorAndItsWorkArea)
{
    ASSERT_TRUE(headless::SetMonitors("1920x1080+0+0,1280x1024+1920-100"));
    headless::SetWorkArea(0, {0, 0, 1920, 1040});
    headless::SetDpi(1, 144);
    const HMONITOR left = MonitorFromPoint({5, 5}, MONITOR_DEFAULTTONULL);
    const HMONITOR right = MonitorFromPoint({1920, 0}, MONITOR_DEFAULTTONULL);
    EXPECT_NE(left, right);
    EXPECT_EQ(WorkAreaOf(left).bottom, 1040);
    EXPECT_EQ(WorkAreaOf(right).top, -100);
    EXPECT_EQ(MonitorFromPoint({3000, 2000}, MONITOR_DEFAULTTONEAREST), right);
    EXPECT_EQ(MonitorFromPoint({3000, 2000}, MONITOR_DEFAULTTOPRIMARY), left);
    EXPECT_EQ(MonitorFromPoint({3000, 2000}, MONITOR_DEFAULTTONULL), nullptr);
    const RECT mostlyRight{1900, 10, 2000, 20};
    EXPECT_EQ(MonitorFromRect(&mostlyRight, MONITOR_DEFAULTTONEAREST), right);
    const RECT empty{100, 100, 100, 100};
    EXPECT_EQ(MonitorFromRect(&empty, MONITOR_DEFAULTTONULL), left) << "an empty rectangle is its top-left pixel";

    UINT x = 0, y = 0;
    EXPECT_EQ(GetDpiForMonitor(right, MDT_EFFECTIVE_DPI, &x, &y), S_OK);
    EXPECT_EQ(x, 144U);
    EXPECT_EQ(GetDpiForMonitor(nullptr, MDT_EFFECTIVE_DPI, &x, &y), E_INVALIDARG);
    EXPECT_EQ(GetSystemMetrics(SM_CXSCREEN), 1920);
    EXPECT_FALSE(headless::SetMonitors("1920x1080")) << "malformed";
    EXPECT_EQ(GetSystemMetrics(SM_CMONITORS), 2);
}

TEST_F(System, ParametersComeFromTheDesktopElseFromWindows)
{
    DWORD delay = 0;
    EXPECT_TRUE(SystemParametersInfoW(SPI_GETMENUSHOWDELAY, 0, &delay, 0));
    EXPECT_EQ(delay, 400U);
    LOGFONTW font{};
    SystemParametersInfoW(SPI_GETICONTITLELOGFONT, 0, &font, 0);
    EXPECT_EQ(std::u16string(font.lfFaceName), u"Segoe UI");
    EXPECT_EQ(font.lfHeight, -12) << "9 points at 96 DPI";

    headless::SetDesktopSetting("Gtk/MenuPopupDelay", "225");
    headless::SetDesktopSetting("Gtk/FontName", "Noto Sans Bold 10.5");
    headless::SetDesktopSetting("Net/DndDragThreshold", "8");
    headless::SetDpi(0, 144);
    SystemParametersInfoW(SPI_GETMENUSHOWDELAY, 0, &delay, 0);
    EXPECT_EQ(delay, 225U);
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof(metrics);
    EXPECT_TRUE(SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0));
    EXPECT_EQ(std::u16string(metrics.lfMessageFont.lfFaceName), u"Noto Sans");
    EXPECT_EQ(metrics.lfMessageFont.lfWeight, FW_BOLD);
    EXPECT_EQ(metrics.lfMessageFont.lfHeight, -21);
    EXPECT_EQ(GetSystemMetrics(SM_CXDRAG), 8);
    EXPECT_EQ(GetSystemMetrics(SM_CXICON), 48);
    metrics.cbSize = 4;
    EXPECT_FALSE(SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, 4, &metrics, 0));
    EXPECT_FALSE(SystemParametersInfoW(0xFFFF, 0, &delay, 0));
}

TEST_F(System, OtherProgramsWindowsHaveRectanglesOnly)
{
    const HWND foreign = reinterpret_cast<HWND>(static_cast<LONG_PTR>(0x4200005));
    RECT rect{};
    EXPECT_FALSE(GetWindowRect(foreign, &rect));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_WINDOW_HANDLE));
    headless::SetForeignWindow(0x4200005, {10, 20, 110, 220});
    EXPECT_TRUE(GetWindowRect(foreign, &rect));
    EXPECT_EQ(rect.bottom, 220);
    EXPECT_FALSE(IsWindow(foreign));
    EXPECT_FALSE(GetWindowRect(reinterpret_cast<HWND>(static_cast<LONG_PTR>(0x100004200005)), &rect))
        << "no X window id is that large";
}

TEST_F(System, ManagedWindowsFollowTheirManager)
{
    const HWND box = ShownPopup(100, 100, 50, 50, WS_POPUP | WS_CAPTION);
    RECT client{};
    GetClientRect(box, &client);
    EXPECT_EQ(client.right, 50) << "the manager's frame is outside the window";
    EXPECT_EQ(headless::Windows().front().bounds.left, 100);
    SetWindowTextW(box, TEXT("new title"));
    EXPECT_EQ(headless::Windows().front().title, u"new title");
}

TEST_F(System, RegisteredFormatsHaveOneNumberEach)
{
    const UINT format = RegisterClipboardFormatW(TEXT("Shell IDList Array"));
    EXPECT_GE(format, 0xC000U);
    EXPECT_EQ(RegisterClipboardFormatW(TEXT("shell idlist array")), format);
    EXPECT_NE(RegisterClipboardFormatW(TEXT("Preferred DropEffect")), format);
    EXPECT_EQ(RegisterClipboardFormatW(TEXT("")), 0U);
}

} // namespace
