// The toolbar's window: messages, buttons and sizes.
#include "platform/controls/toolbar.h"

#include "platform/base/fault_points.h"
#include "platform/windowing/window_class.h"

#include <algorithm>
#include <utility>

namespace platform
{

namespace
{

constinit SystemClass g_class{TOOLBARCLASSNAMEW, &Toolbar::Procedure, CS_DBLCLKS | kErasedByParent};

[[gnu::constructor]] void OfferClass()
{
    OfferSystemClass(g_class);
}

// Horizontally: margin, image, gap, text, and room at the right for the text's overhang. Vertically: the higher of
// image and line between the two halves of the vertical padding.
constexpr int kMargin = 4;
constexpr int kGap = 4;
constexpr int kTextRoom = 7;
constexpr SIZE kPadding = {7, 6};
constexpr SIZE kDefaultImage = {16, 16};

class WindowContext
{
public:
    WindowContext(HWND window, HFONT font)
        : m_window(window), m_dc(GetDC(window)), m_previous(m_dc != nullptr ? SelectObject(m_dc, font) : nullptr)
    {
    }
    ~WindowContext()
    {
        if (m_dc != nullptr)
        {
            SelectObject(m_dc, m_previous);
            ReleaseDC(m_window, m_dc);
        }
    }
    WindowContext(const WindowContext&) = delete;
    WindowContext& operator=(const WindowContext&) = delete;
    HDC Get() const { return m_dc; }

private:
    HWND m_window;
    HDC m_dc;
    HGDIOBJ m_previous;
};

} // namespace

Toolbar::~Toolbar()
{
    if (m_ownFont != nullptr)
        DeleteObject(m_ownFont);
}

LRESULT Toolbar::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message >= WM_USER && message < WM_APP)
        return HandleButtons(message, wParam, lParam);
    if ((message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) || message == WM_MOUSELEAVE || message == WM_KEYDOWN ||
        message == WM_SETFOCUS || message == WM_CAPTURECHANGED)
        return HandleInput(message, wParam, lParam);
    switch (message)
    {
    case WM_CREATE:
        Create(*reinterpret_cast<const CREATESTRUCTW*>(lParam));
        return 0;
    case WM_DESTROY:
        EndDrops();
        return 0;
    case WM_ERASEBKGND:
        EraseWithParent(Window(), reinterpret_cast<HDC>(wParam));
        return 1;
    case WM_PAINT:
        OnPaint();
        return 0;
    case WM_SETFONT:
        SetFont(reinterpret_cast<HFONT>(wParam));
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(m_font);
    case WM_ENABLE:
        InvalidateAll();
        return 0;
    default:
        return Default(message, wParam, lParam);
    }
}

LRESULT Toolbar::HandleButtons(UINT message, WPARAM wParam, LPARAM lParam)
{
    const int index = static_cast<int>(wParam);
    switch (message)
    {
    case TB_INSERTBUTTONW:
        return InsertButton(index, reinterpret_cast<const TBBUTTON*>(lParam));
    case TB_DELETEBUTTON:
        return DeleteButton(index);
    case TB_GETBUTTON:
        return GetButton(index, reinterpret_cast<TBBUTTON*>(lParam));
    case TB_BUTTONCOUNT:
        return m_column.Count();
    case TB_GETITEMRECT:
        UpdateSize();
        if (!m_column.Has(index) || lParam == 0)
            return FALSE;
        *reinterpret_cast<RECT*>(lParam) = m_column.RectOf(index);
        return TRUE;
    case TB_HITTEST:
        UpdateSize();
        return lParam != 0 ? m_column.HitTest(*reinterpret_cast<const POINT*>(lParam)) : -1;
    case TB_GETHOTITEM:
        return m_hot;
    case TB_SETHOTITEM:
        return SetHotItem(index);
    default:
        return HandleAppearance(message, lParam);
    }
}

LRESULT Toolbar::HandleAppearance(UINT message, LPARAM lParam)
{
    switch (message)
    {
    case TB_AUTOSIZE:
        UpdateSize();
        return 0;
    case TB_SETBUTTONSIZE:
        SetButtonSize(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        return TRUE;
    case TB_GETBUTTONSIZE:
        UpdateSize();
        return MAKELRESULT(m_column.Width(), m_column.ItemHeight());
    case TB_GETPADDING:
        return MAKELRESULT(kPadding.cx, kPadding.cy);
    case TB_SETIMAGELIST:
        return reinterpret_cast<LRESULT>(SetImages(reinterpret_cast<HIMAGELIST>(lParam)));
    case TB_GETIMAGELIST:
        return reinterpret_cast<LRESULT>(m_images);
    case TB_SETINSERTMARK:
        SetInsertMark(reinterpret_cast<const TBINSERTMARK*>(lParam));
        return 0;
    case TB_GETINSERTMARK:
        if (lParam != 0)
            *reinterpret_cast<TBINSERTMARK*>(lParam) = m_mark;
        return lParam != 0;
    case TB_GETINSERTMARKCOLOR:
        return static_cast<LRESULT>(m_markColor);
    case TB_SETINSERTMARKCOLOR:
        return static_cast<LRESULT>(std::exchange(m_markColor, static_cast<COLORREF>(lParam)));
    default:
        return 0; // TB_BUTTONSTRUCTSIZE, TB_SETBITMAPSIZE: nothing depends on them here
    }
}

void Toolbar::Create(const CREATESTRUCTW& create)
{
    m_owner = create.hwndParent;
    LOGFONTW font = {};
    if (SystemParametersInfoW(SPI_GETICONTITLELOGFONT, sizeof(font), &font, 0))
        m_ownFont = CreateFontIndirectW(&font);
    m_font = m_ownFont;
    if ((create.style & TBSTYLE_REGISTERDROP) != 0)
        RegisterDrops();
}

void Toolbar::RegisterDrops()
{
    auto proxy = ComReference<DropProxy>::Adopt(new DropProxy(Window(), m_owner));
    if (SUCCEEDED(RegisterDragDrop(Window(), proxy.Get())))
        m_drops = std::move(proxy);
}

void Toolbar::EndDrops()
{
    const ComReference<DropProxy> drops = std::exchange(m_drops, {});
    if (!drops)
        return;
    RevokeDragDrop(Window());
    drops->Close();
}

void Toolbar::SetFont(HFONT font)
{
    m_font = font != nullptr ? font : m_ownFont;
    m_column.ForgetTextWidths();
    m_sizeStale = true;
    InvalidateAll();
}

bool Toolbar::InsertButton(int index, const TBBUTTON* button)
{
    if (button == nullptr || FaultPoint("TB_INSERTBUTTONW"))
        return false;
    // A negative index appends, as one past the end does.
    index = index < 0 ? m_column.Count() : std::min(index, m_column.Count());
    m_column.Insert(index, *button);
    m_hot += m_hot >= index;
    m_pressed += m_pressed >= index;
    m_sizeStale = true;
    InvalidateAll();
    return true;
}

bool Toolbar::DeleteButton(int index)
{
    if (!m_column.Has(index))
        return false;
    m_column.Remove(index);
    const auto follow = [&](int& item) { item = item == index ? -1 : item - (item > index); };
    follow(m_hot);
    follow(m_pressed);
    m_mark = m_column.Has(m_mark.iButton) ? m_mark : TBINSERTMARK{-1, 0};
    InvalidateAll();
    return true;
}

bool Toolbar::GetButton(int index, TBBUTTON* button) const
{
    if (!m_column.Has(index) || button == nullptr)
        return false;
    const ToolbarButton& row = m_column.At(index);
    *button = {};
    button->iBitmap = row.image;
    button->idCommand = row.command;
    button->fsState = row.state;
    button->fsStyle = row.style;
    button->dwData = row.data;
    button->iString = reinterpret_cast<INT_PTR>(m_column.TextOf(row).data());
    return true;
}

SIZE Toolbar::ImageSize() const
{
    int width = kDefaultImage.cx;
    int height = kDefaultImage.cy;
    ImageList_GetIconSize(m_images, &width, &height);
    return {width, height};
}

SIZE Toolbar::MeasureContent()
{
    const WindowContext context(Window(), m_font);
    if (context.Get() == nullptr)
        return {};
    TEXTMETRICW metrics = {};
    GetTextMetricsW(context.Get(), &metrics);
    const int width = m_column.WidestText(
        [&](std::u16string_view text)
        {
            SIZE size = {};
            GetTextExtentPoint32W(context.Get(), text.data(), static_cast<int>(text.size()), &size);
            return static_cast<int>(size.cx);
        });
    return {width, metrics.tmHeight};
}

void Toolbar::UpdateSize()
{
    if (!m_sizeStale)
        return;
    const SIZE image = ImageSize();
    const SIZE text = MeasureContent();
    // Without a context nothing could be measured: the next question tries again.
    m_sizeStale = text.cy == 0;
    const int width = kMargin + image.cx + kGap + (text.cx > 0 ? text.cx + kTextRoom : 0);
    m_column.SetSize(width, std::max(image.cy, text.cy) + kPadding.cy);
}

void Toolbar::SetButtonSize(int width, int height)
{
    // Zero asks for the natural size.
    m_sizeStale = m_sizeStale || width == 0 || height == 0;
    UpdateSize();
    const SIZE image = ImageSize();
    m_column.SetSize(width != 0 ? std::max(width, static_cast<int>(image.cx + kPadding.cx)) : m_column.Width(),
                     height != 0 ? std::max(height, static_cast<int>(image.cy + kPadding.cy)) : m_column.ItemHeight());
    InvalidateAll();
}

HIMAGELIST Toolbar::SetImages(HIMAGELIST images)
{
    m_sizeStale = true;
    InvalidateAll();
    return std::exchange(m_images, images);
}

void Toolbar::InvalidateAll()
{
    if (!m_allInvalid)
    {
        m_allInvalid = true;
        InvalidateRect(Window(), nullptr, TRUE);
    }
}

void Toolbar::InvalidateButton(int index)
{
    if (m_column.Has(index) && !m_allInvalid)
    {
        const RECT rect = m_column.RectOf(index);
        InvalidateRect(Window(), &rect, TRUE);
    }
}

} // namespace platform
