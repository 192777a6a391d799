// The rules of mnemonic.h.
#include "platform/dialogs/mnemonic.h"

namespace platform
{

WCHAR UpperCaseOf(WCHAR letter)
{
    return static_cast<WCHAR>(reinterpret_cast<ULONG_PTR>(CharUpperW(MAKEINTRESOURCEW(letter))));
}

WCHAR MarkedLetter(std::u16string_view text)
{
    WCHAR marked = 0;
    for (std::size_t i = 0; i + 1 < text.size(); ++i)
    {
        if (text[i] != u'&')
            continue;
        ++i;
        marked = text[i] != u'&' ? text[i] : marked;
    }
    return marked;
}

} // namespace platform
