// Reading dialog templates: DLGTEMPLATE and DLGTEMPLATEEX.
//
// Not implemented: a menu, a window class of the dialog's own, creation data (all are passed over).
#include "platform/dialogs/dialog_description.h"

#include <string>

namespace platform
{
namespace
{

class TemplateReader
{
public:
    explicit TemplateReader(LPCDLGTEMPLATEW begin) : m_at(reinterpret_cast<const WORD*>(begin)) {}

    WORD Word() { return *m_at++; }
    DWORD Dword()
    {
        const WORD low = Word();
        return static_cast<DWORD>(MAKELONG(low, Word()));
    }
    RECT Bounds()
    {
        const LONG x = Short();
        const LONG y = Short();
        const LONG width = Short();
        return {x, y, x + width, y + Short()};
    }
    /// A text, or the number that stands in its place behind 0xFFFF.
    LPCWSTR Text()
    {
        if (*m_at == 0xFFFF)
        {
            Word();
            return MAKEINTRESOURCEW(Word());
        }
        const auto* text = reinterpret_cast<LPCWSTR>(m_at);
        m_at += std::char_traits<WCHAR>::length(text) + 1;
        return text;
    }
    /// Data behind its size, which in templates of the older kind counts itself.
    void SkipData(bool extended)
    {
        const std::size_t words = Word() / sizeof(WORD);
        m_at += extended || words == 0 ? words : words - 1;
    }
    void Align() { m_at += reinterpret_cast<std::uintptr_t>(m_at) % sizeof(DWORD) / sizeof(WORD); }
    bool IsExtended() const { return m_at[0] == 1 && m_at[1] == 0xFFFF; }

private:
    LONG Short() { return static_cast<SHORT>(Word()); }

    const WORD* m_at;
};

LPCWSTR ClassNameOf(LPCWSTR nameOrNumber)
{
    constexpr LPCWSTR kPredefined[] = {TEXT("Button"), TEXT("Edit"), TEXT("Static")};
    constexpr ULONG_PTR kFirst = 0x80;
    const auto number = reinterpret_cast<ULONG_PTR>(nameOrNumber);
    if (!IS_INTRESOURCE(nameOrNumber))
        return nameOrNumber;
    return number >= kFirst && number < kFirst + std::size(kPredefined) ? kPredefined[number - kFirst] : nullptr;
}

DialogFont ReadFont(TemplateReader& reader, bool extended)
{
    DialogFont font;
    font.points = reader.Word();
    if (extended)
    {
        font.weight = reader.Word();
        font.italic = (reader.Word() & 0xFF) != 0; // beside the character set
    }
    font.face = reader.Text();
    return font;
}

DialogItem ReadItem(TemplateReader& reader, bool extended)
{
    DialogItem item;
    reader.Align();
    if (extended)
        reader.Dword(); // help identifier
    item.style = reader.Dword();
    item.exStyle = reader.Dword();
    if (extended)
        std::swap(item.style, item.exStyle);
    item.bounds = reader.Bounds();
    item.id = extended ? reader.Dword() : reader.Word();
    item.className = ClassNameOf(reader.Text());
    item.text = reader.Text();
    reader.SkipData(extended);
    return item;
}

} // namespace

DialogDescription ReadDialogTemplate(LPCDLGTEMPLATEW dialogTemplate)
{
    TemplateReader reader(dialogTemplate);
    const bool extended = reader.IsExtended();
    DialogDescription dialog;
    if (extended)
    {
        reader.Dword(); // version
        reader.Dword(); // help identifier
    }
    dialog.style = reader.Dword();
    dialog.exStyle = reader.Dword();
    if (extended)
        std::swap(dialog.style, dialog.exStyle);
    const WORD items = reader.Word();
    dialog.bounds = reader.Bounds();
    reader.Text(); // menu
    reader.Text(); // class
    dialog.title = reader.Text();
    if ((dialog.style & DS_SETFONT) != 0)
        dialog.font = ReadFont(reader, extended);
    for (WORD i = 0; i < items; ++i)
        dialog.items.push_back(ReadItem(reader, extended));
    return dialog;
}

} // namespace platform
