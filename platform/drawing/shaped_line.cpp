// A line laid out by the text line service, or plainly.
#include "platform/drawing/shaped_line.h"

#include "platform/drawing/glyph_font.h"
#include "platform/drawing/text_line.h"
#include "platform/services/text_service_access.h"

#include <algorithm>
#include <cstdlib>

namespace platform
{
namespace
{

GlyphFont& FontOf(HFONT font)
{
    auto* object = FindObject<FontObject>(font);
    if (object == nullptr)
        object = FindObject<FontObject>(GetStockObject(DEFAULT_GUI_FONT));
    return object->Glyphs();
}

} // namespace

void ShapedLine::Closer::operator()(LaidOutLine* line) const
{
    GetTextLineService()->close(line);
}

ShapedLine::ShapedLine(HFONT font, std::u16string_view text, TextSpan underlined) : m_font(&FontOf(font)), m_text(text)
{
    const TextLineService* service = GetTextLineService();
    if (service == nullptr)
    {
        MeasurePlain();
        return;
    }
    m_line.reset(service->open(&m_font->ServiceFont(), text.data(), text.size(), underlined));
    m_width = service->extent(m_line.get()).width;
    const std::uint8_t* places = service->places(m_line.get());
    m_places.assign(places, places + text.size() + 1);
}

void ShapedLine::MeasurePlain()
{
    m_plainX.push_back(0);
    for (char16_t& unit : m_text)
    {
        const bool low = (unit & 0xFC00) == 0xDC00 && !m_places.empty();
        m_places.push_back(low ? 0 : kCaretStop);
        unit = m_font->Measure({&unit, 1}) ? unit : u'?';
        m_plainX.push_back(m_plainX.back() + (low ? 0 : std::max(m_font->Advance(unit), 1)));
    }
    m_places.push_back(kCaretStop);
    m_width = m_plainX.back();
}

int ShapedLine::Height() const
{
    return m_font->Metrics().tmHeight;
}

int ShapedLine::EmHeight() const
{
    return m_font->EmHeight();
}

int ShapedLine::CaretX(CaretPlace place) const
{
    return m_line != nullptr ? GetTextLineService()->caretX(m_line.get(), place) : m_plainX[place.index];
}

CaretPlace ShapedLine::PlaceAt(int x) const
{
    if (m_line != nullptr)
        return GetTextLineService()->placeAt(m_line.get(), x);
    std::size_t nearest = 0;
    for (std::size_t i = 1; i < m_plainX.size(); ++i)
        if ((m_places[i] & kCaretStop) != 0 && std::abs(m_plainX[i] - x) < std::abs(m_plainX[nearest] - x))
            nearest = i;
    return {nearest};
}

CaretPlace ShapedLine::PlaceAfter(std::size_t index) const
{
    return m_line != nullptr ? GetTextLineService()->placeAfter(m_line.get(), index) : CaretPlace{index};
}

CaretPlace ShapedLine::Moved(CaretPlace place, int step) const
{
    if (m_line != nullptr)
        return GetTextLineService()->moved(m_line.get(), place, step);
    const std::size_t last = m_places.size() - 1;
    std::size_t index = place.index;
    do
        index = step < 0 ? index - (index > 0) : index + (index < last);
    while (index > 0 && index < last && (m_places[index] & kCaretStop) == 0);
    return {index};
}

std::vector<std::pair<int, int>> ShapedLine::Stretches(TextSpan span) const
{
    std::vector<std::pair<int, int>> stretches;
    if (span.Empty())
        return stretches;
    if (m_line == nullptr)
        return {{m_plainX[span.begin], m_plainX[span.end]}};
    GetTextLineService()->spans(
        m_line.get(), span,
        [](void* context, int left, int right)
        { static_cast<decltype(stretches)*>(context)->emplace_back(left, right); },
        &stretches);
    return stretches;
}

void ShapedLine::Draw(HDC dc, POINT position, COLORREF color, const RECT& clip) const
{
    DeviceContext* context = FindContext(dc);
    if (context == nullptr)
        return;
    const Canvas canvas(*context);
    const RECT area = context->ToSurface(clip);
    const POINT place = context->ToSurface(position);
    if (m_line == nullptr)
    {
        DrawPlainLine(canvas, *m_font, m_text, place, color, &area);
        return;
    }
    DrawShaped(canvas, *m_font, m_width, place, &area,
               [&](const TextTarget& picture, POINT start)
               { GetTextLineService()->draw(m_line.get(), &picture, start.x, start.y, PixelFromColor(color)); });
}

} // namespace platform
