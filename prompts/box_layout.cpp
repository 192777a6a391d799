// The layout of a message box.
#include "prompts/box_layout.h"

#include <algorithm>

namespace
{

constexpr DWORD kStaticStyle = WS_CHILD | WS_VISIBLE;
constexpr DWORD kButtonStyle = WS_CHILD | WS_VISIBLE | WS_TABSTOP;
constexpr DWORD kBoxStyle = WS_POPUP | WS_VISIBLE | WS_CAPTION | WS_SYSMENU | DS_CENTER | DS_MODALFRAME;

// Pixels at every scale; only buttons, check box and icon grow with it.
constexpr int kTextMargin = 16;
constexpr int kButtonGap = 6;
constexpr int kIconMargin = 8;
constexpr int kCheckLeft = 17;

class BoxArithmetic
{
public:
    BoxArithmetic(const BoxContent& content, const BoxMeasures& measures) : m_content(content), m_measures(measures) {}

    BoxLayout LayOut()
    {
        AddTextAndIcon();
        AddButtons();
        if (CheckBoxFlag(m_content.flags) != 0)
            AddCheckBox();
        m_layout.style = kBoxStyle | ((m_content.flags & MB_SYSTEMMODAL) != 0 ? DS_SYSMODAL : 0);
        m_layout.cx = Across(m_width, 1);
        m_layout.cy = Down(m_height, 1);
        return m_layout;
    }

private:
    /// Pixels in dialog units, `more` of them added after the multiplication.
    short Across(int pixels, int more = 0) const
    {
        return static_cast<short>((pixels * 4 + more * 4) / m_measures.units.cx);
    }
    short Down(int pixels, int more = 0) const
    {
        return static_cast<short>((pixels * 8 + more * 8) / m_measures.units.cy);
    }
    int Scaled(int pixels) const { return MulDiv(pixels, m_measures.percent, 100); }

    ControlRecord& Add(WORD id, WORD controlClass, DWORD style, const WString& text)
    {
        m_layout.controls.push_back({style, 0, 0, 0, 0, 0, id, controlClass, text.substr(0, kTextCapacity)});
        return m_layout.controls.back();
    }
    void Place(ControlRecord& control, int left, int top, int width, int height, int more) const
    {
        control.x = Across(left);
        control.y = Down(top);
        control.cx = Across(width, more);
        control.cy = Down(height, more);
    }

    void AddTextAndIcon();
    void AddButtons();
    void AddCheckBox();

    const BoxContent& m_content;
    const BoxMeasures& m_measures;
    BoxLayout m_layout;
    // Pixels in the box's client area.
    int m_neededWidth = 0;
    int m_aboveBottom = 0; ///< of text and icon
    int m_rowBottom = 0;
    int m_width = 0;
    int m_height = 0;
};

void BoxArithmetic::AddTextAndIcon()
{
    const SIZE text = m_measures.text;
    const SIZE icon = m_measures.icon;
    RECT rect{kTextMargin, kTextMargin, text.cx + 28, text.cy + 21};
    m_neededWidth = text.cx + 29;
    m_aboveBottom = rect.bottom;
    if (icon.cx != 0)
    {
        rect.left += icon.cx + 8;
        rect.right += icon.cx + 8;
        m_neededWidth = rect.right + 8;
        m_aboveBottom = std::max<int>(icon.cy + 10, rect.bottom);
        Place(Add(kIconPlaceId, kStaticClass, kStaticStyle, {}), kIconMargin, kIconMargin, icon.cx + 3, icon.cy + 3, 0);
    }
    Place(Add(kMessageTextId, kStaticClass, kStaticStyle, m_content.text), rect.left, rect.top, rect.right - rect.left,
          rect.bottom - rect.top, 1);
}

void BoxArithmetic::AddButtons()
{
    const int width = Scaled(82);
    const int top = m_aboveBottom + 8;
    m_rowBottom = top + Scaled(23);
    m_height = m_rowBottom + 10;
    const int span = (width + kButtonGap) * m_content.places;
    m_width = std::max(span + 27, m_neededWidth);
    int left = (m_width - span + kButtonGap) / 2;
    const int defaultOrdinal = DefaultButtonOrdinal(m_content.flags, m_content.places);
    int ordinal = 0;
    for (const BoxButton& button : m_content.buttons)
    {
        const bool isDefault = ++ordinal == defaultOrdinal;
        if (isDefault)
            m_layout.defaultId = button.id;
        const DWORD style = kButtonStyle | (isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON);
        Place(Add(button.id, kButtonClass, style, button.label), left, top, width, m_rowBottom - top, 1);
        left += width + kButtonGap;
    }
}

void BoxArithmetic::AddCheckBox()
{
    const int top = m_rowBottom + 12;
    const int height = Scaled(16);
    const int right = m_measures.checkLabel / 3 + m_measures.checkLabel + kCheckLeft;
    Place(Add(kCheckBoxId, kButtonClass, kButtonStyle | BS_AUTOCHECKBOX, m_content.checkLabel), kCheckLeft, top,
          right - 16, height + 1, 0);
    m_height = top + height + 8;
    if (right > m_width + 1)
        m_width = right;
}

} // namespace

BoxLayout LayOutBox(const BoxContent& content, const BoxMeasures& measures)
{
    return BoxArithmetic(content, measures).LayOut();
}
