// DrawTextW: prefixes, lines, wrapping, ellipsis, alignment.
//
// Not implemented: tab expansion, the last line of DT_EDITCONTROL, DT_PATH_ELLIPSIS, DT_WORD_ELLIPSIS, DT_MODIFYSTRING.
#include "platform/drawing/glyph_font.h"
#include "platform/drawing/text_line.h"

#include <algorithm>
#include <string>

using namespace platform;

namespace
{

constexpr std::size_t kNone = std::u16string_view::npos;
constexpr std::u16string_view kEllipsis = u"...";

struct Line
{
    std::u16string text;
    int width = 0;
    std::size_t mnemonic = kNone; ///< index of the underlined unit
};

/// Text without its prefixes: "&x" underlines x (the last one wins), "&&" is "&".
Line TakePrefixes(std::u16string_view text)
{
    Line line;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        if (text[i] == u'&' && i + 1 < text.size() && text[i + 1] == u'&')
        {
            ++i;
        }
        else if (text[i] == u'&')
        {
            line.mnemonic = line.text.size();
            continue;
        }
        line.text += text[i];
    }
    if (line.mnemonic >= line.text.size())
        line.mnemonic = kNone;
    return line;
}

std::size_t LineBreak(std::u16string_view text)
{
    return std::min(text.find_first_of(u"\r\n"), text.size());
}

void SkipLineBreak(std::u16string_view& text)
{
    const bool pair = text.starts_with(u"\r\n");
    text.remove_prefix(pair ? 2 : text.empty() ? 0 : 1);
}

/// The longest beginning that fits the width and does not split a surrogate pair.
std::size_t FittingLength(FontObject& font, std::u16string_view text, int width)
{
    std::size_t fits = 0;
    std::size_t tooLong = text.size() + 1;
    while (tooLong - fits > 1)
    {
        const std::size_t middle = (fits + tooLong) / 2;
        (TextWidth(font, text.substr(0, middle)) <= width ? fits : tooLong) = middle;
    }
    const bool splits = fits > 0 && fits < text.size() && text[fits - 1] >= 0xD800 && text[fits - 1] < 0xDC00;
    return splits ? fits - 1 : fits;
}

/// Where a paragraph that is too wide is broken: after the last blank that fits. A word that is too wide by itself
/// stands out of the rectangle, unless words may be broken.
std::size_t WrapPosition(FontObject& font, std::u16string_view text, int width, bool breaksWords)
{
    const std::size_t fits = FittingLength(font, text, width);
    if (fits == text.size())
        return fits;
    const std::size_t blank = text.rfind(u' ', fits);
    if (blank != kNone && blank > 0)
        return blank;
    if (!breaksWords)
        return std::min(text.find(u' '), text.size());
    const bool pair = text.size() > 1 && text[0] >= 0xD800 && text[0] < 0xDC00;
    return std::max<std::size_t>(fits, pair ? 2 : 1);
}

class TextBox
{
public:
    TextBox(FontObject& font, std::u16string_view text, UINT format, int width)
        : m_font(font), m_format(format), m_width(width)
    {
        if ((format & DT_SINGLELINE) != 0)
            Add(text);
        else
            BreakLines(text);
        if ((format & DT_END_ELLIPSIS) != 0 && !m_lines.empty())
            Shorten(m_lines.back());
    }

    const std::vector<Line>& Lines() const { return m_lines; }
    int LineHeight() const { return m_font.Glyphs().Metrics().tmHeight; }
    int Height() const { return LineHeight() * static_cast<int>(m_lines.size()); }
    int Width() const
    {
        int width = 0;
        for (const Line& line : m_lines)
            width = std::max(width, line.width);
        return width;
    }

private:
    void BreakLines(std::u16string_view text)
    {
        do
        {
            const std::size_t end = LineBreak(text);
            AddParagraph(text.substr(0, end));
            text.remove_prefix(end);
            SkipLineBreak(text);
        } while (!text.empty());
    }

    void AddParagraph(std::u16string_view text)
    {
        if ((m_format & DT_WORDBREAK) != 0)
        {
            const bool breaksWords = (m_format & DT_EDITCONTROL) != 0;
            std::size_t end = WrapPosition(m_font, text, m_width, breaksWords);
            while (end < text.size())
            {
                Add(text.substr(0, end));
                text.remove_prefix(std::min(text.find_first_not_of(u' ', end), text.size()));
                end = WrapPosition(m_font, text, m_width, breaksWords);
            }
        }
        Add(text);
    }

    void Add(std::u16string_view text)
    {
        Line line = (m_format & DT_NOPREFIX) != 0 ? Line{std::u16string(text), 0, kNone} : TakePrefixes(text);
        line.width = TextWidth(m_font, line.text);
        m_lines.push_back(std::move(line));
    }

    void Shorten(Line& line)
    {
        if (line.width <= m_width)
            return;
        const int room = m_width - TextWidth(m_font, kEllipsis);
        // However narrow the box is, the first character stays.
        const std::size_t kept = std::max<std::size_t>(FittingLength(m_font, line.text, room), 1);
        line.text.resize(std::min(kept, line.text.size()));
        line.mnemonic = line.mnemonic < line.text.size() ? line.mnemonic : kNone;
        line.text += kEllipsis;
        line.width = TextWidth(m_font, line.text);
    }

    FontObject& m_font;
    UINT m_format;
    int m_width;
    std::vector<Line> m_lines;
};

int AlignedX(const RECT& rect, int width, UINT format)
{
    if ((format & DT_CENTER) != 0)
        return rect.left + (rect.right - rect.left - width) / 2;
    return (format & DT_RIGHT) != 0 ? rect.right - width : rect.left;
}

/// Vertical alignment is for single lines only, as in GDI.
int AlignedY(const RECT& rect, int height, UINT format)
{
    if ((format & DT_SINGLELINE) != 0 && (format & DT_VCENTER) != 0)
        return rect.top + (rect.bottom - rect.top - height) / 2;
    return (format & DT_SINGLELINE) != 0 && (format & DT_BOTTOM) != 0 ? rect.bottom - height : rect.top;
}

void Underline(const Canvas& canvas, FontObject& font, const Line& line, POINT at, COLORREF color, const RECT* clip)
{
    const std::u16string_view text = line.text;
    const int left = at.x + TextWidth(font, text.substr(0, line.mnemonic));
    const int width = TextWidth(font, text.substr(line.mnemonic, 1));
    const int top = at.y + font.Glyphs().Metrics().tmAscent + 1;
    Region area(RECT{left, top, left + width, top + 1});
    if (clip != nullptr)
        area.Intersect(Region(*clip));
    canvas.Fill(area, PixelFromColor(color));
}

/// Draws the lines inside `rect` (surface coordinates), the first one's top at `top`.
void DrawLines(DeviceContext& context, const TextBox& box, const RECT& rect, int top, UINT format)
{
    const Canvas canvas(context);
    const RECT* clip = (format & DT_NOCLIP) != 0 ? nullptr : &rect;
    FontObject& font = context.Font();
    for (const Line& line : box.Lines())
    {
        const POINT at{AlignedX(rect, line.width, format), top};
        if (context.state.backMode == OPAQUE)
        {
            Region area(RECT{at.x, at.y, at.x + line.width, at.y + box.LineHeight()});
            area.Intersect(clip != nullptr ? Region(*clip) : canvas.Clip());
            canvas.Fill(area, 0x00FFFFFF); // the only background colour there is
        }
        DrawTextLine(canvas, font, line.text, at, context.state.textColor, clip);
        if (line.mnemonic != kNone)
            Underline(canvas, font, line, at, context.state.textColor, clip);
        top += box.LineHeight();
    }
}

} // namespace

int DrawTextW(HDC dc, LPCWSTR text, int length, LPRECT rect, UINT format)
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr || text == nullptr || rect == nullptr || FaultPoint("DrawTextW"))
        return Fail(ERROR_INVALID_PARAMETER, 0);
    const std::u16string_view view =
        length < 0 ? std::u16string_view(text) : std::u16string_view(text, static_cast<std::size_t>(length));
    const TextBox box(context->Font(), view, format, rect->right - rect->left);
    const int top = AlignedY(*rect, box.Height(), format);
    if ((format & DT_CALCRECT) != 0)
    {
        rect->right = rect->left + box.Width();
        rect->bottom = rect->top + box.Height();
        return box.Height();
    }
    const POINT offset = context->Offset();
    DrawLines(*context, box, context->ToSurface(*rect), top + offset.y, format);
    return top - rect->top + box.Height();
}
