// Building an extended dialog template in memory.
//
// Format: "DLGTEMPLATEEX" and "DLGITEMTEMPLATEEX" of the Windows documentation. Everything is words, strings end with a
// zero, items begin at multiples of four bytes.
#include "platform/dialogs/dialog_template.h"

namespace platform
{
namespace
{

constexpr std::size_t kCountIndex = 8;

void Append(std::vector<WORD>& words, DWORD value)
{
    words.push_back(LOWORD(value));
    words.push_back(HIWORD(value));
}

void Append(std::vector<WORD>& words, std::u16string_view text)
{
    words.insert(words.end(), text.begin(), text.end());
    words.push_back(0);
}

} // namespace

DialogTemplate::DialogTemplate(std::u16string_view title, SIZE size, DWORD style, DWORD exStyle)
{
    constexpr WORD kPoints = 8; // what goes with the face below, which stands for the message font
    m_words = {1, 0xFFFF};
    Append(m_words, 0U);
    Append(m_words, exStyle);
    Append(m_words, style | DS_SETFONT | DS_FIXEDSYS);
    m_words.insert(m_words.end(), {0, 0, 0, static_cast<WORD>(size.cx), static_cast<WORD>(size.cy)});
    m_words.insert(m_words.end(), {0, 0}); // neither a menu nor a class of its own
    Append(m_words, title);
    m_words.insert(m_words.end(), {kPoints, FW_NORMAL, DEFAULT_CHARSET << 8}); // upright
    Append(m_words, u"MS Shell Dlg");
}

void DialogTemplate::Add(const DialogControl& control)
{
    ++m_words[kCountIndex];
    m_words.resize(m_words.size() + m_words.size() % 2);
    Append(m_words, 0U);
    Append(m_words, 0U);
    Append(m_words, control.style | WS_CHILD | WS_VISIBLE);
    const RECT& bounds = control.bounds;
    for (const LONG length : {bounds.left, bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top})
        m_words.push_back(static_cast<WORD>(length));
    Append(m_words, static_cast<DWORD>(control.id));
    Append(m_words, std::u16string_view(control.className));
    Append(m_words, control.text);
    m_words.push_back(0); // no creation data
}

LPCDLGTEMPLATEW DialogTemplate::Get() const
{
    return reinterpret_cast<LPCDLGTEMPLATEW>(m_words.data());
}

} // namespace platform
