// The message box: a text, a picture that says of what kind it is, and a row of buttons.
//
// It is a managed window that disables its owner and runs its own message loop. Not implemented: the help button, the
// service and default-desktop kinds, reading from right to left.
#include "platform/dialogs/message_box_layout.h"

#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"
#include "platform/drawing/icon.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace platform
{

namespace
{

constexpr LPCWSTR kClassName = TEXT("OrbMessageBox");
constexpr DWORD kBoxStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU;
constexpr DWORD kBoxExStyle = WS_EX_DLGMODALFRAME | WS_EX_TOPMOST;
constexpr UINT kSetButtonStyle = 0x00F4; ///< BM_SETSTYLE; 1 is a default push button, 0 another one
constexpr UINT kClickButton = 0x00F5;    ///< BM_CLICK

class MessageBox
{
public:
    MessageBox(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type);
    ~MessageBox();
    MessageBox(const MessageBox&) = delete;
    MessageBox& operator=(const MessageBox&) = delete;

    /// The chosen button's id, 0 when the box cannot be shown.
    int Run();

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

private:
    bool Create();
    MessageBoxLayout Measure() const;
    /// False when not all could be made: a box must not lack an answer.
    bool CreateButtons();
    void Loop();
    /// True for a key that the box has used up.
    bool HandleKey(const MSG& message);
    void FocusButton(int index);
    int FocusedButton() const;
    bool PressMnemonic(WCHAR letter);
    void Cancel();
    void Paint();
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);

    HWND m_owner;
    std::u16string m_text;
    std::u16string m_caption;
    const MessageBoxKind& m_kind;
    HICON m_icon;
    std::size_t m_first;
    HFONT m_font = nullptr;
    HWND m_window = nullptr;
    MessageBoxLayout m_layout;
    std::vector<HWND> m_buttons;
    std::optional<int> m_result;
};

void RegisterBoxClass()
{
    static bool registered = false;
    if (registered)
        return;
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.lpfnWndProc = MessageBox::Procedure;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
    windowClass.lpszClassName = kClassName;
    registered = RegisterClassExW(&windowClass) != 0;
}

HFONT MessageFont()
{
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof(metrics);
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
    return CreateFontIndirectW(&metrics.lfMessageFont);
}

/// The icon that says of what kind the box is; null for none.
HICON IconOfMessageBox(UINT type)
{
    const LPCWSTR icons[] = {nullptr, IDI_ERROR, IDI_QUESTION, IDI_WARNING, IDI_INFORMATION};
    const UINT kind = type >> 4 & 0xF;
    if (kind == 0 || kind >= std::size(icons))
        return nullptr;
    const int size = GetSystemMetrics(SM_CXICON);
    return static_cast<HICON>(LoadImageW(nullptr, icons[kind], IMAGE_ICON, size, size, LR_DEFAULTCOLOR));
}

RECT WorkAreaOf(HWND owner)
{
    MONITORINFO info = {};
    info.cbSize = sizeof(info);
    GetMonitorInfoW(MonitorFromWindow(owner, MONITOR_DEFAULTTOPRIMARY), &info);
    return info.rcWork;
}

MessageBox::MessageBox(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type)
    : m_owner(owner),
      m_text(text != nullptr ? text : TEXT("")),
      m_caption(caption != nullptr ? caption : TEXT("Error")),
      m_kind(KindOfMessageBox(type)),
      m_icon(IconOfMessageBox(type)),
      m_first(std::min<std::size_t>((type >> 8) & 0xf, m_kind.buttons.size() - 1)),
      m_font(MessageFont())
{
}

MessageBox::~MessageBox()
{
    if (m_window != nullptr)
        DestroyWindow(m_window);
    DeleteObject(m_font);
    if (m_icon != nullptr)
        DestroyIcon(m_icon);
}

int MessageBox::Run()
{
    if (!Create())
        return 0;
    const bool ownerWasEnabled = m_owner != nullptr && IsWindowEnabled(m_owner);
    if (ownerWasEnabled)
        EnableWindow(m_owner, FALSE);
    ShowWindow(m_window, SW_SHOW);
    SetForegroundWindow(m_window);
    FocusButton(static_cast<int>(m_first));
    Loop();
    // Enabled again before the box goes, so that it and not some other program's window gets the activation.
    if (ownerWasEnabled && IsWindow(m_owner))
    {
        EnableWindow(m_owner, TRUE);
        SetActiveWindow(m_owner);
    }
    return m_result.value_or(m_kind.cancel);
}

MessageBoxLayout MessageBox::Measure() const
{
    HDC dc = GetDC(nullptr);
    HGDIOBJ previous = SelectObject(dc, m_font);
    TEXTMETRICW metrics = {};
    GetTextMetricsW(dc, &metrics);
    const RECT work = WorkAreaOf(m_owner);
    RECT text = {0, 0, (work.right - work.left) / 2, 0};
    DrawTextW(dc, m_text.data(), static_cast<int>(m_text.size()), &text, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    LONG widestLabel = 0;
    for (const MessageBoxButton& button : m_kind.buttons)
    {
        SIZE size = {};
        const std::u16string_view label = button.label;
        GetTextExtentPoint32W(dc, label.data(), static_cast<int>(label.size()), &size);
        widestLabel = std::max(widestLabel, size.cx);
    }
    SelectObject(dc, previous);
    ReleaseDC(nullptr, dc);
    return LayOutMessageBox({text.right, text.bottom}, widestLabel, metrics.tmHeight, m_kind.buttons.size(),
                            m_icon != nullptr ? GetSystemMetrics(SM_CXICON) : 0);
}

bool MessageBox::Create()
{
    RegisterBoxClass();
    m_layout = Measure();
    RECT frame = {0, 0, m_layout.client.cx, m_layout.client.cy};
    AdjustWindowRectEx(&frame, kBoxStyle, FALSE, kBoxExStyle);
    const LONG width = frame.right - frame.left;
    const LONG height = frame.bottom - frame.top;
    const RECT work = WorkAreaOf(m_owner);
    m_window = CreateWindowExW(kBoxExStyle, kClassName, m_caption.c_str(), kBoxStyle,
                               std::max(work.left, (work.left + work.right - width) / 2),
                               std::max(work.top, (work.top + work.bottom - height) / 2), width, height, m_owner,
                               nullptr, nullptr, this);
    if (m_window == nullptr)
        return false;
    return CreateButtons();
}

bool MessageBox::CreateButtons()
{
    for (std::size_t i = 0; i < m_kind.buttons.size(); ++i)
    {
        const MessageBoxButton& button = m_kind.buttons[i];
        const RECT rect = m_layout.ButtonRect(i);
        HWND window = CreateWindowExW(0, TEXT("Button"), button.label, WS_CHILD | WS_VISIBLE | WS_TABSTOP, rect.left,
                                      rect.top, rect.right - rect.left, rect.bottom - rect.top, m_window,
                                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(button.id)), nullptr, nullptr);
        if (window == nullptr)
            return false;
        SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(m_font), FALSE);
        m_buttons.push_back(window);
    }
    return true;
}

void MessageBox::Loop()
{
    while (!m_result)
    {
        MSG message;
        const BOOL received = GetMessageW(&message, nullptr, 0, 0);
        if (received <= 0)
        {
            if (received == 0)
            {
                // The quit is the outer loop's.
                PostQuitMessage(static_cast<int>(message.wParam));
            }
            return;
        }
        const bool ours = message.hwnd == m_window || IsChild(m_window, message.hwnd);
        if (!(ours && HandleKey(message)))
        {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

bool MessageBox::HandleKey(const MSG& message)
{
    if (message.message != WM_KEYDOWN && message.message != WM_SYSKEYDOWN)
        return false;
    const int count = static_cast<int>(m_buttons.size());
    const int focused = FocusedButton();
    switch (message.wParam)
    {
    case VK_RETURN:
        SendMessageW(m_buttons[static_cast<std::size_t>(focused)], kClickButton, 0, 0);
        return true;
    case VK_ESCAPE:
        Cancel();
        return true;
    case VK_TAB:
        FocusButton((focused + (GetKeyState(VK_SHIFT) < 0 ? count - 1 : 1)) % count);
        return true;
    case VK_RIGHT:
    case VK_DOWN:
        FocusButton((focused + 1) % count);
        return true;
    case VK_LEFT:
    case VK_UP:
        FocusButton((focused + count - 1) % count);
        return true;
    default:
        return PressMnemonic(static_cast<WCHAR>(message.wParam));
    }
}

int MessageBox::FocusedButton() const
{
    const auto found = std::find(m_buttons.begin(), m_buttons.end(), GetFocus());
    return found != m_buttons.end() ? static_cast<int>(found - m_buttons.begin()) : 0;
}

void MessageBox::FocusButton(int index)
{
    for (int i = 0; i < static_cast<int>(m_buttons.size()); ++i)
        SendMessageW(m_buttons[static_cast<std::size_t>(i)], kSetButtonStyle, i == index ? 1 : 0, TRUE);
    if (index < static_cast<int>(m_buttons.size()))
        SetFocus(m_buttons[static_cast<std::size_t>(index)]);
}

bool MessageBox::PressMnemonic(WCHAR letter)
{
    for (std::size_t i = 0; i < m_buttons.size(); ++i)
    {
        const std::u16string_view label = m_kind.buttons[i].label;
        const std::size_t mark = label.find(u'&');
        const auto key = static_cast<WCHAR>(
            reinterpret_cast<ULONG_PTR>(mark < label.size() ? CharUpperW(MAKEINTRESOURCEW(label[mark + 1])) : nullptr));
        if (key != 0 && key == letter)
        {
            SendMessageW(m_buttons[i], kClickButton, 0, 0);
            return true;
        }
    }
    return false;
}

void MessageBox::Cancel()
{
    // A question that has no such answer has to be answered.
    if (m_kind.cancel != 0)
        m_result = m_kind.cancel;
}

LRESULT MessageBox::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_COMMAND:
        m_result = LOWORD(wParam);
        return 0;
    case WM_CLOSE:
        Cancel();
        return 0;
    case WM_SETFOCUS:
        FocusButton(FocusedButton());
        return 0;
    case WM_PAINT:
        Paint();
        return 0;
    case WM_DESTROY:
        // Destroyed with its owner, say.
        m_result = m_result.value_or(m_kind.cancel);
        return 0;
    default:
        return DefWindowProcW(m_window, message, wParam, lParam);
    }
}

void MessageBox::Paint()
{
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(m_window, &paint);
    if (dc != nullptr)
    {
        HGDIOBJ previous = SelectObject(dc, m_font);
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
        RECT text = m_layout.text;
        DrawTextW(dc, m_text.data(), static_cast<int>(m_text.size()), &text, DT_WORDBREAK | DT_NOPREFIX);
        if (const auto picture = IconSourceOf(m_icon))
            DrawIconImage(dc, m_layout.picture.left, m_layout.picture.top, picture->Image());
        SelectObject(dc, previous);
    }
    EndPaint(m_window, &paint);
}

LRESULT CALLBACK MessageBox::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE)
    {
        auto* box = static_cast<MessageBox*>(reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams);
        box->m_window = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(box));
    }
    auto* box = reinterpret_cast<MessageBox*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (box == nullptr)
        return DefWindowProcW(window, message, wParam, lParam);
    const LRESULT result = box->Handle(message, wParam, lParam);
    if (message == WM_NCDESTROY)
    {
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        box->m_window = nullptr;
    }
    return result;
}

} // namespace

} // namespace platform

int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type)
{
    if (platform::FaultPoint("MessageBoxW"))
        return platform::Fail(ERROR_NOT_ENOUGH_MEMORY, 0);
    if (owner != nullptr && !IsWindow(owner))
        return platform::Fail(ERROR_INVALID_WINDOW_HANDLE, 0);
    return platform::MessageBox(owner, text, caption, type).Run();
}
