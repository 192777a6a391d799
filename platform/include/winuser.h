// Windows, messages, input, monitors, system parameters, menus and dialogs.
//
// Rectangles and points are pixels: screen coordinates unless a name says client. A function that takes a window fails
// with ERROR_INVALID_WINDOW_HANDLE for a handle that names none.
#pragma once

#include "windef.h"

using WNDPROC = LRESULT(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);
using DLGPROC = INT_PTR(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);
using TIMERPROC = void(CALLBACK*)(HWND, UINT, UINT_PTR, DWORD);

struct WNDCLASSEXW
{
    UINT cbSize;
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;
    LPCWSTR lpszMenuName;
    LPCWSTR lpszClassName;
    HICON hIconSm;
};

struct MSG
{
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};
using LPMSG = MSG*;

struct CREATESTRUCTW
{
    LPVOID lpCreateParams;
    HINSTANCE hInstance;
    HMENU hMenu;
    HWND hwndParent;
    int cy;
    int cx;
    int y;
    int x;
    LONG style;
    LPCWSTR lpszName;
    LPCWSTR lpszClass;
    DWORD dwExStyle;
};

struct PAINTSTRUCT
{
    HDC hdc;
    BOOL fErase;
    RECT rcPaint; ///< client coordinates
    BOOL fRestore;
    BOOL fIncUpdate;
    BYTE rgbReserved[32];
};

struct NMHDR
{
    HWND hwndFrom;
    UINT_PTR idFrom;
    UINT code;
};
using LPNMHDR = NMHDR*;

struct WINDOWPOS
{
    HWND hwnd;
    HWND hwndInsertAfter;
    int x;
    int y;
    int cx;
    int cy;
    UINT flags;
};

struct MONITORINFO
{
    DWORD cbSize;
    RECT rcMonitor;
    RECT rcWork;
    DWORD dwFlags;
};

struct TRACKMOUSEEVENT
{
    DWORD cbSize;
    DWORD dwFlags;
    HWND hwndTrack;
    DWORD dwHoverTime;
};

struct TPMPARAMS
{
    UINT cbSize;
    RECT rcExclude;
};

struct MENUITEMINFOW
{
    UINT cbSize;
    UINT fMask;
    UINT fType;
    UINT fState;
    UINT wID;
    HMENU hSubMenu;
    HBITMAP hbmpChecked;
    HBITMAP hbmpUnchecked;
    ULONG_PTR dwItemData;
    LPWSTR dwTypeData;
    UINT cch;
    HBITMAP hbmpItem;
};

// wingdi.h is included before this header by windows.h
struct NONCLIENTMETRICSW
{
    UINT cbSize;
    int iBorderWidth;
    int iScrollWidth;
    int iScrollHeight;
    int iCaptionWidth;
    int iCaptionHeight;
    LOGFONTW lfCaptionFont;
    int iSmCaptionWidth;
    int iSmCaptionHeight;
    LOGFONTW lfSmCaptionFont;
    int iMenuWidth;
    int iMenuHeight;
    LOGFONTW lfMenuFont;
    LOGFONTW lfStatusFont;
    LOGFONTW lfMessageFont;
    int iPaddedBorderWidth;
};

// --- messages
#define WM_NULL 0x0000
#define WM_CREATE 0x0001
#define WM_DESTROY 0x0002
#define WM_MOVE 0x0003
#define WM_SIZE 0x0005
#define WM_ACTIVATE 0x0006
#define WM_SETFOCUS 0x0007
#define WM_KILLFOCUS 0x0008
#define WM_ENABLE 0x000A
#define WM_SETREDRAW 0x000B
#define WM_SETTEXT 0x000C
#define WM_GETTEXT 0x000D
#define WM_GETTEXTLENGTH 0x000E
#define WM_PAINT 0x000F
#define WM_CLOSE 0x0010
#define WM_QUIT 0x0012
#define WM_ERASEBKGND 0x0014
#define WM_SHOWWINDOW 0x0018
#define WM_ACTIVATEAPP 0x001C
#define WM_CANCELMODE 0x001F
#define WM_SETCURSOR 0x0020
#define WM_MOUSEACTIVATE 0x0021
#define WM_SETFONT 0x0030
#define WM_GETFONT 0x0031
#define WM_WINDOWPOSCHANGING 0x0046
#define WM_WINDOWPOSCHANGED 0x0047
#define WM_NOTIFY 0x004E
#define WM_CONTEXTMENU 0x007B
#define WM_STYLECHANGED 0x007D
#define WM_NCCREATE 0x0081
#define WM_NCDESTROY 0x0082
#define WM_NCCALCSIZE 0x0083
#define WM_NCHITTEST 0x0084
#define WM_NCPAINT 0x0085
#define WM_NCACTIVATE 0x0086
#define WM_GETDLGCODE 0x0087
#define WM_NCMOUSEMOVE 0x00A0
#define WM_KEYFIRST 0x0100
#define WM_KEYDOWN 0x0100
#define WM_KEYUP 0x0101
#define WM_CHAR 0x0102
#define WM_SYSKEYDOWN 0x0104
#define WM_SYSKEYUP 0x0105
#define WM_SYSCHAR 0x0106
#define WM_KEYLAST 0x0109
#define WM_IME_COMPOSITION 0x010F
#define WM_INITDIALOG 0x0110
#define WM_COMMAND 0x0111
#define WM_TIMER 0x0113
#define WM_INITMENU 0x0116
#define WM_INITMENUPOPUP 0x0117
#define WM_MENUSELECT 0x011F
#define WM_UNINITMENUPOPUP 0x0125
#define WM_MOUSEFIRST 0x0200
#define WM_MOUSEMOVE 0x0200
#define WM_LBUTTONDOWN 0x0201
#define WM_LBUTTONUP 0x0202
#define WM_LBUTTONDBLCLK 0x0203
#define WM_RBUTTONDOWN 0x0204
#define WM_RBUTTONUP 0x0205
#define WM_MBUTTONDOWN 0x0207
#define WM_MOUSEWHEEL 0x020A
#define WM_MOUSELAST 0x020E
#define WM_ENTERMENULOOP 0x0211
#define WM_EXITMENULOOP 0x0212
#define WM_CAPTURECHANGED 0x0215
#define WM_MOUSELEAVE 0x02A3
#define WM_USER 0x0400
#define WM_APP 0x8000

#define WA_INACTIVE 0
#define WA_ACTIVE 1
#define WA_CLICKACTIVE 2
#define MA_ACTIVATE 1
#define MA_ACTIVATEANDEAT 2
#define MA_NOACTIVATE 3
#define MA_NOACTIVATEANDEAT 4
#define WHEEL_DELTA 120
#define MK_LBUTTON 0x0001
#define MK_RBUTTON 0x0002
#define MK_SHIFT 0x0004
#define MK_CONTROL 0x0008
#define MK_MBUTTON 0x0010
#define HTNOWHERE 0
#define HTCLIENT 1
#define HTCAPTION 2
#define HTTRANSPARENT (-1)

// --- styles
#define WS_OVERLAPPED 0x00000000L
#define WS_POPUP 0x80000000L
#define WS_CHILD 0x40000000L
#define WS_VISIBLE 0x10000000L
#define WS_DISABLED 0x08000000L
#define WS_CLIPSIBLINGS 0x04000000L
#define WS_CLIPCHILDREN 0x02000000L
#define WS_CAPTION 0x00C00000L
#define WS_BORDER 0x00800000L
#define WS_SYSMENU 0x00080000L
#define WS_THICKFRAME 0x00040000L
#define WS_GROUP 0x00020000L
#define WS_TABSTOP 0x00010000L
#define WS_EX_DLGMODALFRAME 0x00000001L
#define WS_EX_TOPMOST 0x00000008L
#define WS_EX_TRANSPARENT 0x00000020L
#define WS_EX_TOOLWINDOW 0x00000080L
#define WS_EX_NOACTIVATE 0x08000000L
#define CS_VREDRAW 0x0001
#define CS_HREDRAW 0x0002
#define CS_DBLCLKS 0x0008
#define CS_GLOBALCLASS 0x4000
#define CS_DROPSHADOW 0x00020000
#define CW_USEDEFAULT (static_cast<int>(0x80000000))

#define GWL_STYLE (-16)
#define GWL_EXSTYLE (-20)
#define GWLP_WNDPROC (-4)
#define GWLP_USERDATA (-21)
#define GA_ROOT 2

#define SW_HIDE 0
#define SW_SHOWNORMAL 1
#define SW_SHOWNOACTIVATE 4
#define SW_SHOW 5
#define SW_SHOWNA 8
#define SWP_NOSIZE 0x0001
#define SWP_NOMOVE 0x0002
#define SWP_NOZORDER 0x0004
#define SWP_NOREDRAW 0x0008
#define SWP_NOACTIVATE 0x0010
#define SWP_FRAMECHANGED 0x0020
#define SWP_SHOWWINDOW 0x0040
#define SWP_HIDEWINDOW 0x0080
#define SWP_NOCOPYBITS 0x0100
#define SWP_NOOWNERZORDER 0x0200
#define SWP_NOSENDCHANGING 0x0400
#define SWP_DEFERERASE 0x2000
#define HWND_TOP (static_cast<HWND>(nullptr))
#define HWND_BOTTOM (reinterpret_cast<HWND>(static_cast<LONG_PTR>(1)))
#define HWND_TOPMOST (reinterpret_cast<HWND>(static_cast<LONG_PTR>(-1)))
#define HWND_NOTOPMOST (reinterpret_cast<HWND>(static_cast<LONG_PTR>(-2)))
#define HWND_MESSAGE (reinterpret_cast<HWND>(static_cast<LONG_PTR>(-3)))

#define PM_NOREMOVE 0x0000
#define PM_REMOVE 0x0001

// --- metrics and parameters
#define SM_CXSCREEN 0
#define SM_CYSCREEN 1
#define SM_CXICON 11
#define SM_CYICON 12
#define SM_CXSMICON 49
#define SM_CYSMICON 50
#define SM_CXDRAG 68
#define SM_CYDRAG 69
#define SM_CMONITORS 80
#define SM_SWAPBUTTON 23
#define SM_CXDOUBLECLK 36
#define SM_CYDOUBLECLK 37
#define SPI_GETICONTITLELOGFONT 0x001F
#define SPI_GETNONCLIENTMETRICS 0x0029
#define SPI_GETWORKAREA 0x0030
#define SPI_GETMENUSHOWDELAY 0x006A
#define MONITOR_DEFAULTTONULL 0
#define MONITOR_DEFAULTTOPRIMARY 1
#define MONITOR_DEFAULTTONEAREST 2
#define MONITORINFOF_PRIMARY 1
#define COLOR_SCROLLBAR 0
#define COLOR_BACKGROUND 1
#define COLOR_MENU 4
#define COLOR_WINDOW 5
#define COLOR_WINDOWFRAME 6
#define COLOR_MENUTEXT 7
#define COLOR_WINDOWTEXT 8
#define COLOR_HIGHLIGHT 13
#define COLOR_HIGHLIGHTTEXT 14
#define COLOR_BTNFACE 15
#define COLOR_BTNSHADOW 16
#define COLOR_GRAYTEXT 17
#define COLOR_BTNTEXT 18
#define COLOR_BTNHIGHLIGHT 20
#define COLOR_3DDKSHADOW 21
#define COLOR_3DLIGHT 22
#define COLOR_HOTLIGHT 26
#define COLOR_MENUHILIGHT 29
#define COLOR_MENUBAR 30

// --- keys
#define VK_LBUTTON 0x01
#define VK_RBUTTON 0x02
#define VK_MBUTTON 0x04
#define VK_BACK 0x08
#define VK_TAB 0x09
#define VK_RETURN 0x0D
#define VK_SHIFT 0x10
#define VK_CONTROL 0x11
#define VK_MENU 0x12
#define VK_ESCAPE 0x1B
#define VK_SPACE 0x20
#define VK_PRIOR 0x21
#define VK_NEXT 0x22
#define VK_END 0x23
#define VK_HOME 0x24
#define VK_LEFT 0x25
#define VK_UP 0x26
#define VK_RIGHT 0x27
#define VK_DOWN 0x28
#define VK_INSERT 0x2D
#define VK_DELETE 0x2E
#define VK_LWIN 0x5B
#define VK_APPS 0x5D
#define VK_NUMPAD0 0x60
#define VK_F1 0x70
#define VK_F2 0x71
#define VK_F4 0x73
#define VK_F10 0x79
#define VK_LSHIFT 0xA0
#define VK_RSHIFT 0xA1
#define VK_LCONTROL 0xA2
#define VK_RCONTROL 0xA3
#define VK_LMENU 0xA4
#define VK_RMENU 0xA5
#define KEYEVENTF_EXTENDEDKEY 0x0001
#define KEYEVENTF_KEYUP 0x0002

// --- images, text
#define IMAGE_BITMAP 0
#define IMAGE_ICON 1
#define LR_DEFAULTCOLOR 0x0000
#define LR_LOADFROMFILE 0x0010
#define LR_SHARED 0x8000
#define LR_CREATEDIBSECTION 0x2000
#define IDC_ARROW MAKEINTRESOURCEW(32512)
#define IDC_IBEAM MAKEINTRESOURCEW(32513)
#define DT_TOP 0x0000
#define DT_LEFT 0x0000
#define DT_CENTER 0x0001
#define DT_RIGHT 0x0002
#define DT_VCENTER 0x0004
#define DT_BOTTOM 0x0008
#define DT_WORDBREAK 0x0010
#define DT_SINGLELINE 0x0020
#define DT_NOCLIP 0x0100
#define DT_CALCRECT 0x0400
#define DT_NOPREFIX 0x0800
#define DT_EDITCONTROL 0x2000
#define DT_END_ELLIPSIS 0x8000

// --- menus, message boxes
#define MF_STRING 0x0000
#define MF_ENABLED 0x0000
#define MF_GRAYED 0x0001
#define MF_CHECKED 0x0008
#define MF_POPUP 0x0010
#define MF_HILITE 0x0080
#define MF_BYCOMMAND 0x0000
#define MF_BYPOSITION 0x0400
#define MF_SEPARATOR 0x0800
#define MF_MOUSESELECT 0x8000
#define MFT_STRING MF_STRING
#define MFT_SEPARATOR MF_SEPARATOR
#define MFS_CHECKED MF_CHECKED
#define MFS_DEFAULT 0x1000
#define MFS_GRAYED 0x0003
#define MIIM_STATE 0x0001
#define MIIM_ID 0x0002
#define MIIM_SUBMENU 0x0004
#define MIIM_DATA 0x0020
#define MIIM_STRING 0x0040
#define MIIM_BITMAP 0x0080
#define MIIM_FTYPE 0x0100
#define GMDI_USEDISABLED 1
#define GMDI_GOINTOPOPUPS 2
#define TPM_LEFTBUTTON 0x0000
#define TPM_RIGHTBUTTON 0x0002
#define TPM_LEFTALIGN 0x0000
#define TPM_CENTERALIGN 0x0004
#define TPM_RIGHTALIGN 0x0008
#define TPM_TOPALIGN 0x0000
#define TPM_VCENTERALIGN 0x0010
#define TPM_BOTTOMALIGN 0x0020
#define TPM_HORIZONTAL 0x0000
#define TPM_VERTICAL 0x0040
#define TPM_NONOTIFY 0x0080
#define TPM_RETURNCMD 0x0100
#define MB_OK 0x0000
#define MB_OKCANCEL 0x0001
#define MB_ABORTRETRYIGNORE 0x0002
#define MB_YESNOCANCEL 0x0003
#define MB_YESNO 0x0004
#define MB_RETRYCANCEL 0x0005
#define MB_ICONERROR 0x0010
#define MB_ICONQUESTION 0x0020
#define MB_ICONWARNING 0x0030
#define MB_ICONINFORMATION 0x0040
#define MB_ICONHAND MB_ICONERROR
#define MB_ICONEXCLAMATION MB_ICONWARNING
#define MB_ICONASTERISK MB_ICONINFORMATION
#define MB_DEFBUTTON2 0x0100
#define MB_DEFBUTTON3 0x0200
#define MB_SYSTEMMODAL 0x1000
#define MB_HELP 0x4000
#define IDOK 1
#define IDCANCEL 2
#define IDABORT 3
#define IDRETRY 4
#define IDIGNORE 5
#define IDYES 6
#define IDNO 7
#define IDCLOSE 8
#define IDCONTINUE 11

#define TME_LEAVE 0x0002
#define TME_CANCEL 0x80000000

// --- classes and windows
ATOM RegisterClassExW(const WNDCLASSEXW* windowClass);
BOOL UnregisterClassW(LPCWSTR className, HINSTANCE instance);
BOOL GetClassInfoExW(HINSTANCE instance, LPCWSTR className, WNDCLASSEXW* windowClass);
HWND CreateWindowExW(DWORD exStyle, LPCWSTR className, LPCWSTR windowName, DWORD style, int x, int y, int width,
                     int height, HWND parent, HMENU menuOrId, HINSTANCE instance, LPVOID param);
BOOL DestroyWindow(HWND window);
BOOL IsWindow(HWND window);
BOOL IsWindowVisible(HWND window);
BOOL IsWindowEnabled(HWND window);
BOOL IsChild(HWND parent, HWND window);
BOOL EnableWindow(HWND window, BOOL enable);
BOOL ShowWindow(HWND window, int command);
BOOL SetWindowPos(HWND window, HWND insertAfter, int x, int y, int width, int height, UINT flags);
BOOL GetWindowRect(HWND window, LPRECT rect); ///< also for another client's X window id
BOOL GetClientRect(HWND window, LPRECT rect);
BOOL AdjustWindowRect(LPRECT rect, DWORD style, BOOL menu);
BOOL AdjustWindowRectEx(LPRECT rect, DWORD style, BOOL menu, DWORD exStyle);
BOOL ClientToScreen(HWND window, LPPOINT point);
BOOL ScreenToClient(HWND window, LPPOINT point);
int MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count);
HWND SetParent(HWND child, HWND parent);
HWND GetParent(HWND window);
HWND GetAncestor(HWND window, UINT flags);
HWND GetDlgItem(HWND window, int id);
int GetDlgCtrlID(HWND window);
HWND WindowFromPoint(POINT point);
LONG_PTR SetWindowLongPtrW(HWND window, int index, LONG_PTR value);
LONG_PTR GetWindowLongPtrW(HWND window, int index);
BOOL SetWindowTextW(HWND window, LPCWSTR text);
int GetWindowTextW(HWND window, LPWSTR text, int capacity);
int GetWindowTextLengthW(HWND window);

// --- messages, timers
BOOL GetMessageW(LPMSG message, HWND window, UINT first, UINT last);
BOOL PeekMessageW(LPMSG message, HWND window, UINT first, UINT last, UINT remove);
BOOL TranslateMessage(const MSG* message);
LRESULT DispatchMessageW(const MSG* message);
LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);        ///< from any thread
BOOL PostThreadMessageW(DWORD thread, UINT message, WPARAM wParam, LPARAM lParam); ///< from any thread
void PostQuitMessage(int exitCode);
DWORD GetMessagePos(); ///< packed screen position of the cursor when the last message was retrieved
LONG GetMessageTime();
LRESULT DefWindowProcW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CallWindowProcW(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam);
UINT_PTR SetTimer(HWND window, UINT_PTR id, UINT elapse, TIMERPROC procedure);
BOOL KillTimer(HWND window, UINT_PTR id);

// --- input, focus, activation
BOOL GetCursorPos(LPPOINT point);
BOOL SetCursorPos(int x, int y);
HCURSOR LoadCursorW(HINSTANCE instance, LPCWSTR name);
HCURSOR SetCursor(HCURSOR cursor);
HWND SetCapture(HWND window);
HWND GetCapture();
BOOL ReleaseCapture();
BOOL TrackMouseEvent(TRACKMOUSEEVENT* event);
HWND SetFocus(HWND window);
HWND GetFocus();
HWND SetActiveWindow(HWND window);
HWND GetActiveWindow();
BOOL SetForegroundWindow(HWND window);
HWND GetForegroundWindow();
SHORT GetKeyState(int virtualKey);      ///< as of the message that is being handled
SHORT GetAsyncKeyState(int virtualKey); ///< as of now: the top bit while the key is down
BOOL GetKeyboardState(BYTE* state);
void keybd_event(BYTE virtualKey, BYTE scan, DWORD flags, ULONG_PTR extra);
UINT GetDoubleClickTime();

// --- painting
HDC GetDC(HWND window);
HDC GetWindowDC(HWND window);
int ReleaseDC(HWND window, HDC dc);
HDC BeginPaint(HWND window, PAINTSTRUCT* paint);
BOOL EndPaint(HWND window, const PAINTSTRUCT* paint);
BOOL InvalidateRect(HWND window, const RECT* rect, BOOL erase);
BOOL ValidateRect(HWND window, const RECT* rect);
BOOL UpdateWindow(HWND window);
int FillRect(HDC dc, const RECT* rect, HBRUSH brush); ///< a brush may also be a system colour index + 1
int FrameRect(HDC dc, const RECT* rect, HBRUSH brush);
BOOL DrawFocusRect(HDC dc, const RECT* rect);
int DrawTextW(HDC dc, LPCWSTR text, int length, LPRECT rect, UINT format);
DWORD GetSysColor(int index);
HBRUSH GetSysColorBrush(int index);

// --- monitors, system parameters
HMONITOR MonitorFromPoint(POINT point, DWORD flags);
HMONITOR MonitorFromRect(const RECT* rect, DWORD flags);
HMONITOR MonitorFromWindow(HWND window, DWORD flags);
BOOL GetMonitorInfoW(HMONITOR monitor, MONITORINFO* info);
int GetSystemMetrics(int index);
/// Null: the desktop has no window of its own, and all calls take null for it.
HWND GetDesktopWindow();
BOOL SystemParametersInfoW(UINT action, UINT param, LPVOID data, UINT flags);
UINT RegisterClipboardFormatW(LPCWSTR name);
/// Characters of a registered format's name as it was first registered, without the final 0; 0 for no such format.
int GetClipboardFormatNameW(UINT format, LPWSTR name, int capacity);

// --- rectangles
BOOL IsRectEmpty(const RECT* rect);
BOOL PtInRect(const RECT* rect, POINT point);
BOOL OffsetRect(LPRECT rect, int dx, int dy);
BOOL InflateRect(LPRECT rect, int dx, int dy);
BOOL IntersectRect(LPRECT result, const RECT* a, const RECT* b);
BOOL EqualRect(const RECT* a, const RECT* b);

// --- resources
#define IDI_ERROR MAKEINTRESOURCEW(32513)
#define IDI_QUESTION MAKEINTRESOURCEW(32514)
#define IDI_WARNING MAKEINTRESOURCEW(32515)
#define IDI_INFORMATION MAKEINTRESOURCEW(32516)
#define IDI_HAND IDI_ERROR
#define IDI_EXCLAMATION IDI_WARNING
#define IDI_ASTERISK IDI_INFORMATION

/// Both bitmaps are the caller's to delete.
struct ICONINFO
{
    BOOL fIcon;
    DWORD xHotspot;
    DWORD yHotspot;
    HBITMAP hbmMask; ///< all 0: what is transparent is said by the colours
    HBITMAP hbmColor;
};
using PICONINFO = ICONINFO*;
/// A copy of a bitmap (IMAGE_BITMAP alone, in its own size and without flags); DeleteObject by the caller.
HANDLE CopyImage(HANDLE image, UINT type, int width, int height, UINT flags);
HANDLE LoadImageW(HINSTANCE instance, LPCWSTR name, UINT type, int width, int height, UINT flags);
HICON LoadIconW(HINSTANCE instance, LPCWSTR name);
BOOL DestroyIcon(HICON icon);
BOOL GetIconInfo(HICON icon, PICONINFO info);
/// At its own size.
BOOL DrawIcon(HDC dc, int x, int y, HICON icon);
int LoadStringW(HINSTANCE instance, UINT id, LPWSTR text, int capacity);
int LookupIconIdFromDirectoryEx(BYTE* directory, BOOL icon, int width, int height, UINT flags);

// --- menus
HMENU CreatePopupMenu();
BOOL DestroyMenu(HMENU menu);
BOOL AppendMenuW(HMENU menu, UINT flags, UINT_PTR idOrSubMenu, LPCWSTR text);
BOOL InsertMenuItemW(HMENU menu, UINT item, BOOL byPosition, const MENUITEMINFOW* info);
BOOL SetMenuItemInfoW(HMENU menu, UINT item, BOOL byPosition, const MENUITEMINFOW* info);
BOOL GetMenuItemInfoW(HMENU menu, UINT item, BOOL byPosition, MENUITEMINFOW* info);
BOOL DeleteMenu(HMENU menu, UINT position, UINT flags);
int GetMenuItemCount(HMENU menu);
UINT GetMenuItemID(HMENU menu, int position);
BOOL SetMenuDefaultItem(HMENU menu, UINT item, UINT byPosition);
UINT GetMenuDefaultItem(HMENU menu, UINT byPosition, UINT flags);
/// Shows a menu and returns when it is gone: the chosen item's id with TPM_RETURNCMD (0 for none), else whether it was
/// shown, the id going to the window as WM_COMMAND. Fails with ERROR_POPUP_ALREADY_ACTIVE while another one shows.
BOOL TrackPopupMenuEx(HMENU menu, UINT flags, int x, int y, HWND window, TPMPARAMS* params);
BOOL EndMenu();

#define SC_CLOSE 0xF060
/// The menu of what the frame of a window offers, of which there is only SC_CLOSE: greyed, the window's close button
/// does nothing. Only dialogs have one; it goes with them. `revert` gives it back as it was and returns null.
HMENU GetSystemMenu(HWND window, BOOL revert);
/// The state before (MF_ENABLED or MF_GRAYED), −1 when there is no such item.
BOOL EnableMenuItem(HMENU menu, UINT item, UINT flags);

/// Modal box with the caption's default ("Error") for a null caption. Returns the button's id, 0 if it cannot be shown.
int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type);
/// The display's bell, whatever the type.
BOOL MessageBeep(UINT type);

#define HELP_CONTEXT 0x0001
#define HELP_PARTIALKEY 0x0105
/// Fails with ERROR_FILE_NOT_FOUND: nothing here shows such files.
BOOL WinHelpW(HWND window, LPCWSTR file, UINT command, ULONG_PTR data);

// --- dialogs
#define DS_SYSMODAL 0x0002L
#define DS_FIXEDSYS 0x0008L
#define DS_SETFONT 0x0040L
#define DS_MODALFRAME 0x0080L
#define DS_SETFOREGROUND 0x0200L
#define DS_CENTER 0x0800L
#define DM_GETDEFID (WM_USER + 0)
#define DM_SETDEFID (WM_USER + 1)
#define DM_REPOSITION (WM_USER + 2)
#define DC_HASDEFID 0x534B
#define WM_NEXTDLGCTL 0x0028
#define WM_CTLCOLOREDIT 0x0133
#define WM_CTLCOLORBTN 0x0135
#define WM_CTLCOLORDLG 0x0136
#define WM_CTLCOLORSTATIC 0x0138
// What a control answers to WM_GETDLGCODE.
#define DLGC_WANTARROWS 0x0001
#define DLGC_WANTTAB 0x0002
#define DLGC_WANTMESSAGE 0x0004
#define DLGC_HASSETSEL 0x0008
#define DLGC_DEFPUSHBUTTON 0x0010
#define DLGC_UNDEFPUSHBUTTON 0x0020
#define DLGC_WANTCHARS 0x0080
#define DLGC_STATIC 0x0100
#define DLGC_BUTTON 0x2000
// A dialog's extra bytes.
#define DWLP_MSGRESULT 0
#define DWLP_DLGPROC (DWLP_MSGRESULT + static_cast<int>(sizeof(LRESULT)))
#define DWLP_USER (DWLP_DLGPROC + static_cast<int>(sizeof(DLGPROC)))

/// The head of a template in memory; an extended one (DLGTEMPLATEEX, told by its first words 1 and 0xFFFF) is passed by
/// the same pointer.
#pragma pack(push, 2)
struct DLGTEMPLATE
{
    DWORD style;
    DWORD dwExtendedStyle;
    WORD cdit;
    short x;
    short y;
    short cx;
    short cy;
};
/// The head of each of its controls, on the next four-byte boundary.
struct DLGITEMTEMPLATE
{
    DWORD style;
    DWORD dwExtendedStyle;
    short x;
    short y;
    short cx;
    short cy;
    WORD id;
};
#pragma pack(pop)
using LPCDLGTEMPLATEW = const DLGTEMPLATE*;

/// Both run a dialog until its procedure ends it: EndDialog's result, −1 when it cannot be made. The owner, which may
/// be null, is disabled meanwhile.
INT_PTR DialogBoxParamW(HINSTANCE instance, LPCWSTR templateName, HWND owner, DLGPROC procedure, LPARAM initParam);
INT_PTR DialogBoxIndirectParamW(HINSTANCE instance, LPCDLGTEMPLATEW dialogTemplate, HWND owner, DLGPROC procedure,
                                LPARAM initParam);
BOOL EndDialog(HWND dialog, INT_PTR result);
BOOL SetDlgItemTextW(HWND dialog, int id, LPCWSTR text);
/// Length of the text copied, which is always ended by 0.
UINT GetDlgItemTextW(HWND dialog, int id, LPWSTR text, int capacity);
LRESULT SendDlgItemMessageW(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam);
BOOL CheckDlgButton(HWND dialog, int id, UINT check);
UINT IsDlgButtonChecked(HWND dialog, int id);
/// Keys as a dialog knows them; whatever else is meant for the dialog or its controls is dispatched. FALSE: not meant
/// for them.
BOOL IsDialogMessageW(HWND dialog, LPMSG message);
/// From dialog units (a quarter of the font's average width, an eighth of its height) to pixels.
BOOL MapDialogRect(HWND dialog, LPRECT rect);
/// Packed width and height of the units of the system font, which a dialog has whose template names none.
LONG GetDialogBaseUnits();
HWND GetNextDlgTabItem(HWND dialog, HWND control, BOOL previous);
HWND GetNextDlgGroupItem(HWND dialog, HWND control, BOOL previous);

// --- static and button
#define SS_LEFT 0x0000L
#define SS_CENTER 0x0001L
#define SS_RIGHT 0x0002L
#define SS_ICON 0x0003L
#define SS_LEFTNOWORDWRAP 0x000CL
#define SS_NOPREFIX 0x0080L
#define SS_CENTERIMAGE 0x0200L
#define SS_EDITCONTROL 0x2000L
#define SS_ENDELLIPSIS 0x4000L
#define STM_SETICON 0x0170
#define STM_GETICON 0x0171
#define BS_PUSHBUTTON 0x0000L
#define BS_DEFPUSHBUTTON 0x0001L
#define BS_CHECKBOX 0x0002L
#define BS_AUTOCHECKBOX 0x0003L
#define BM_GETCHECK 0x00F0
#define BM_SETCHECK 0x00F1
#define BM_SETSTYLE 0x00F4
#define BM_CLICK 0x00F5
#define BN_CLICKED 0
#define BST_UNCHECKED 0
#define BST_CHECKED 1

// --- edit controls (places and lengths in UTF-16 code units)
#define WM_CUT 0x0300
#define WM_COPY 0x0301
#define WM_PASTE 0x0302
#define WM_CLEAR 0x0303
#define WM_UNDO 0x0304
#define EM_GETSEL 0x00B0
#define EM_SETSEL 0x00B1
#define EM_SCROLLCARET 0x00B7
#define EM_GETMODIFY 0x00B8
#define EM_SETMODIFY 0x00B9
#define EM_REPLACESEL 0x00C2
#define EM_LIMITTEXT 0x00C5
#define EM_CANUNDO 0x00C6
#define EM_UNDO 0x00C7
#define EM_EMPTYUNDOBUFFER 0x00CD
#define EM_SETREADONLY 0x00CF
#define EM_GETLIMITTEXT 0x00D5
#define EM_POSFROMCHAR 0x00D6
#define EM_CHARFROMPOS 0x00D7
#define ES_LEFT 0x0000L
#define ES_AUTOHSCROLL 0x0080L
#define ES_NOHIDESEL 0x0100L
#define ES_READONLY 0x0800L
#define EN_SETFOCUS 0x0100
#define EN_KILLFOCUS 0x0200
#define EN_CHANGE 0x0300
#define EN_UPDATE 0x0400
#define EN_MAXTEXT 0x0501
