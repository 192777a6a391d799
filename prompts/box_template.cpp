// Writing the dialog template of a message box.
#include "prompts/box_template.h"

#include <cstring>

namespace
{

static_assert(sizeof(DLGTEMPLATE) == 18 && sizeof(DLGITEMTEMPLATE) == 18);

constexpr WORD kNone = 0;
constexpr WORD kPredefined = 0xFFFF; ///< a class's number follows

std::size_t Aligned(std::size_t bytes)
{
    return (bytes + 3) / 4 * 4;
}

/// Menu, class and caption come behind the header.
std::size_t HeaderSize(WStringView caption)
{
    return sizeof(DLGTEMPLATE) + (3 + caption.size()) * sizeof(WCHAR);
}

/// Class in two words, text, creation data.
std::size_t ItemSize(const ControlRecord& control)
{
    return sizeof(DLGITEMTEMPLATE) + (4 + control.text.size()) * sizeof(WCHAR);
}

class TemplateWriter
{
public:
    explicit TemplateWriter(void* block) : m_begin(static_cast<unsigned char*>(block)), m_at(m_begin) {}

    template <typename T>
    void Put(const T& value)
    {
        std::memcpy(m_at, &value, sizeof(value));
        m_at += sizeof(value);
    }
    /// With its terminator.
    void PutText(WStringView text)
    {
        std::memcpy(m_at, text.data(), text.size() * sizeof(WCHAR));
        m_at += text.size() * sizeof(WCHAR);
        Put(WCHAR{0});
    }
    void Align() { m_at = m_begin + Aligned(static_cast<std::size_t>(m_at - m_begin)); }

private:
    unsigned char* m_begin;
    unsigned char* m_at;
};

void WriteControl(TemplateWriter& writer, const ControlRecord& control)
{
    writer.Align();
    writer.Put(
        DLGITEMTEMPLATE{control.style, control.exStyle, control.x, control.y, control.cx, control.cy, control.id});
    writer.Put(kPredefined);
    writer.Put(control.controlClass);
    writer.PutText(control.text);
    writer.Put(kNone); // no creation data
}

} // namespace

std::size_t BoxTemplateSize(const BoxLayout& layout, WStringView caption)
{
    std::size_t size = HeaderSize(caption);
    for (const ControlRecord& control : layout.controls)
        size = Aligned(size) + ItemSize(control);
    return size;
}

void WriteBoxTemplate(void* block, const BoxLayout& layout, WStringView caption)
{
    TemplateWriter writer(block);
    writer.Put(DLGTEMPLATE{layout.style, 0, static_cast<WORD>(layout.controls.size()), 0, 0, layout.cx, layout.cy});
    writer.Put(kNone); // no menu
    writer.Put(kNone); // the class of all dialogs
    writer.PutText(caption);
    for (const ControlRecord& control : layout.controls)
        WriteControl(writer, control);
}
