// Showing a message box: labels, fonts and sizes gathered for the layout, then the dialog.
#include "prompts/message_box.h"

#include "app/launcher_state.h"
#include "geometry/dpi_scale.h"
#include "prompts/box_dialog.h"

namespace
{

/// The boxes' own scale, which follows the display's while g_dpi stays as it was at the start.
DpiScale g_boxScale = DpiScale::FromDpi(GetDpi());

/// Of the last box that had a check box.
WString g_lastCheckLabel;

void FollowDpi()
{
    const int dpi = GetDpi();
    if (MulDiv(g_boxScale.percent, 96, 100) == dpi)
        return;
    g_boxScale.percent = MulDiv(dpi, 100, 96);
    g_boxScale.relativePercent = MulDiv(dpi, 100, g_boxScale.baseDpi);
}

UniqueFont MakeMessageFont()
{
    NONCLIENTMETRICSW metrics{};
    static_assert(sizeof(metrics) == 504);
    metrics.cbSize = sizeof(metrics);
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
    LOGFONTW& font = metrics.lfMessageFont;
    font.lfHeight = MulDiv(font.lfHeight, g_boxScale.relativePercent, 100);
    font.lfWidth = MulDiv(font.lfWidth, g_boxScale.relativePercent, 100);
    return UniqueFont(CreateFontIndirectW(&font));
}

BoxLabels LoadLabels(DWORD flags)
{
    BoxLabels labels;
    if ((flags & MBX_DEFAULTLABELS) != 0)
        return labels;
    for (int i = 0; i < static_cast<int>(BoxLabel::Count); ++i)
    {
        WCHAR text[kLabelCapacity];
        if (LoadStringW(g_instance, kFirstLabelString + static_cast<UINT>(i), text, kLabelCapacity) > 0)
            labels.Set(static_cast<BoxLabel>(i), text);
    }
    return labels;
}

HICON LoadBoxIcon(LPCWSTR name, int size)
{
    const HANDLE icon = LoadImageW(nullptr, name, IMAGE_ICON, size, size, LR_SHARED);
    return icon != nullptr ? static_cast<HICON>(icon) : LoadIconW(nullptr, name);
}

/// `usual` when the icon does not tell.
SIZE SizeOfIcon(HICON icon, SIZE usual)
{
    ICONINFO info{};
    GetIconInfo(icon, &info);
    const UniqueBitmap colors(info.hbmColor);
    const UniqueBitmap mask(info.hbmMask);
    BITMAP bitmap{};
    if (GetObjectW(colors.Get(), sizeof(bitmap), &bitmap) == 0 && GetObjectW(mask.Get(), sizeof(bitmap), &bitmap) == 0)
        return usual;
    return {bitmap.bmWidth, bitmap.bmHeight};
}

SIZE Measure(HFONT font, const WString& text, SIZE room, UINT format)
{
    const UniqueMemoryDC dc(CreateDCW(TEXT("DISPLAY"), nullptr, nullptr, nullptr));
    const SelectGuard selected(dc.Get(), font);
    RECT rect{0, 0, room.cx, room.cy};
    DrawTextW(dc.Get(), text.c_str(), -1, &rect, format | DT_CALCRECT | DT_NOPREFIX);
    return {rect.right, rect.bottom};
}

BoxMeasures MeasureBox(const BoxContent& content, const BoxDialog& box)
{
    BoxMeasures measures;
    measures.percent = g_boxScale.percent;
    const LONG units = GetDialogBaseUnits();
    measures.units = {LOWORD(units), HIWORD(units)};
    const int screen = GetSystemMetrics(SM_CXSCREEN);
    const int limit = TextLimit(content.flags, screen, GetSystemMetrics(SM_CXICON));
    measures.text = Measure(box.font.Get(), content.text, {limit, limit}, DT_WORDBREAK);
    const int icon = g_boxScale.Scaled(32);
    if (IconOfBox(content.flags) != nullptr)
        measures.icon = SizeOfIcon(box.icon, {icon, icon});
    if (CheckBoxFlag(content.flags) != 0)
        measures.checkLabel =
            Measure(box.font.Get(), content.checkLabel, {screen / 3, g_boxScale.Scaled(16)}, DT_SINGLELINE).cx;
    return measures;
}

BoxContent MakeContent(LPCWSTR text, DWORD flags, LPCWSTR extraLabel)
{
    const BoxLabels labels = LoadLabels(flags);
    BoxContent content;
    content.flags = flags;
    content.text = WString(text != nullptr ? text : TEXT("")).substr(0, kTextCapacity);
    content.buttons = ButtonsOfBox(flags, labels, extraLabel);
    content.places = ButtonPlaces(flags, extraLabel != nullptr);
    if (CheckBoxFlag(flags) != 0)
        content.checkLabel = g_lastCheckLabel = CheckBoxLabel(flags, labels, WString(g_lastCheckLabel));
    return content;
}

} // namespace

int ShowMessageBox(HWND owner, LPCWSTR text, LPCWSTR caption, DWORD flags, DWORD helpContext, LPCWSTR extraLabel)
{
    FollowDpi();
    BoxDialog box;
    box.flags = flags;
    box.helpContext = helpContext;
    box.font = MakeMessageFont();
    if (owner == nullptr)
        owner = GetDesktopWindow();
    const bool hasCaption = caption != nullptr && caption[0] != 0;
    const WString title = WString(hasCaption ? caption : TEXT("Error")).substr(0, kTextCapacity);
    constexpr DWORD kSystemsOwn = MB_SYSTEMMODAL | MB_ICONHAND;
    if ((flags & kSystemsOwn) == kSystemsOwn)
        return MessageBoxW(owner, text, title.c_str(), flags);
    const BoxContent content = MakeContent(text, flags, extraLabel);
    if (const LPCWSTR icon = IconOfBox(flags))
        box.icon = LoadBoxIcon(icon, g_boxScale.Scaled(32));
    const BoxLayout layout = LayOutBox(content, MeasureBox(content, box));
    box.defaultId = layout.defaultId;
    if ((flags & MBX_NOBEEP) == 0)
        MessageBeep(flags & 0xF0);
    return RunBoxDialog(owner, layout, title, box);
}
