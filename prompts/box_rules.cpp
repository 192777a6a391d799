// Tables and decisions of the message box.
#include "prompts/box_rules.h"

#include "prompts/message_box.h"

#include <cstddef>

namespace
{

constexpr DWORD kKindBits = 0x0000000F;
constexpr DWORD kIconBits = 0x000000F0;
constexpr DWORD kDefaultBits = 0x00000F00;

constexpr LPCWSTR kBuiltInLabels[] = {
    TEXT("OK"),
    TEXT("Cancel"),
    TEXT("&Ignore"),
    TEXT("&Retry"),
    TEXT("&Abort"),
    TEXT("&Help"),
    TEXT("&Yes"),
    TEXT("&No"),
    TEXT("&Continue"),
    TEXT("Don't ask me again"),
    TEXT("Don't tell me again"),
    TEXT("Yes to &All"),
    TEXT("No to A&ll"),
};
static_assert(std::size(kBuiltInLabels) == static_cast<std::size_t>(BoxLabel::Count));

struct KindButton
{
    WORD id;
    BoxLabel label;
    DWORD onlyWith = 0; ///< the flag that asks for it
};

struct BoxKind
{
    DWORD kind;
    int places; ///< without the buttons that flags add
    std::vector<KindButton> buttons;
};

const BoxKind& KindOf(DWORD flags)
{
    static const KindButton ok{IDOK, BoxLabel::Ok};
    static const KindButton cancel{IDCANCEL, BoxLabel::Cancel};
    static const KindButton abort{IDABORT, BoxLabel::Abort};
    static const KindButton retry{IDRETRY, BoxLabel::Retry};
    static const KindButton yes{IDYES, BoxLabel::Yes};
    static const KindButton yesToAll{IDYESTOALL, BoxLabel::YesToAll, MBX_YESTOALL};
    static const KindButton no{IDNO, BoxLabel::No};
    static const KindButton noToAll{IDNOTOALL, BoxLabel::NoToAll, MBX_NOTOALL};
    static const BoxKind kinds[] = {
        {MB_OK, 1, {ok}},
        {MB_OKCANCEL, 2, {ok, cancel}},
        {MB_ABORTRETRYIGNORE, 3, {abort, retry, {IDIGNORE, BoxLabel::Ignore}}},
        {MB_YESNOCANCEL, 3, {yes, yesToAll, no, noToAll, cancel}},
        {MB_YESNO, 2, {yes, yesToAll, no, noToAll}},
        {MB_RETRYCANCEL, 2, {retry, cancel}},
        {MBX_CONTINUEABORT, 2, {{IDCONTINUE, BoxLabel::Continue}, abort}},
    };
    for (const BoxKind& kind : kinds)
        if (kind.kind == (flags & kKindBits))
            return kind;
    return kinds[0]; // nobody asks for another one
}

} // namespace

BoxLabels::BoxLabels()
{
    for (std::size_t i = 0; i < m_texts.size(); ++i)
        m_texts[i] = kBuiltInLabels[i];
}

std::vector<BoxButton> ButtonsOfBox(DWORD flags, const BoxLabels& labels, LPCWSTR extraLabel)
{
    std::vector<BoxButton> buttons;
    for (const KindButton& button : KindOf(flags).buttons)
        if ((flags & button.onlyWith) == button.onlyWith)
            buttons.push_back({button.id, labels.Of(button.label)});
    if (extraLabel != nullptr)
        buttons.push_back({IDEXTRABUTTON, extraLabel});
    if ((flags & MB_HELP) != 0)
        buttons.push_back({kHelpButtonId, labels.Of(BoxLabel::Help)});
    return buttons;
}

int ButtonPlaces(DWORD flags, bool hasExtra)
{
    const BoxKind& kind = KindOf(flags);
    const bool takesMore = kind.kind != MB_OK && kind.kind != MBX_CONTINUEABORT;
    const int added = takesMore ? ((flags & MBX_YESTOALL) != 0) + ((flags & MBX_NOTOALL) != 0) : 0;
    return kind.places + hasExtra + ((flags & MB_HELP) != 0) + added;
}

int DefaultButtonOrdinal(DWORD flags, int places)
{
    constexpr int kLast = 7;
    const int ordinal = static_cast<int>((flags & kDefaultBits) >> 8) + 1;
    return ordinal > kLast || ordinal > places ? 1 : ordinal;
}

DWORD CheckBoxFlag(DWORD flags)
{
    for (const DWORD flag : {MBX_DONTASK, MBX_DONTTELL, MBX_CUSTOMCHECK})
        if ((flags & flag) != 0)
            return flag;
    return 0;
}

const WString& CheckBoxLabel(DWORD flags, const BoxLabels& labels, const WString& last)
{
    switch (CheckBoxFlag(flags))
    {
    case MBX_DONTASK:
        return labels.Of(BoxLabel::DontAsk);
    case MBX_CUSTOMCHECK:
        return last.empty() ? labels.Of(BoxLabel::DontTell) : last;
    default:
        return labels.Of(BoxLabel::DontTell);
    }
}

LPCWSTR IconOfBox(DWORD flags)
{
    switch (flags & kIconBits)
    {
    case MB_ICONHAND:
        return IDI_HAND;
    case MB_ICONQUESTION:
        return IDI_QUESTION;
    case MB_ICONEXCLAMATION:
        return IDI_EXCLAMATION;
    case MB_ICONASTERISK:
        return IDI_ASTERISK;
    default:
        return nullptr;
    }
}

bool HasCancel(DWORD flags)
{
    const DWORD kind = KindOf(flags).kind;
    return kind == MB_OKCANCEL || kind == MB_YESNOCANCEL || kind == MB_RETRYCANCEL;
}

bool HasOnlyOk(DWORD flags)
{
    return KindOf(flags).kind == MB_OK;
}

int TextLimit(DWORD flags, int screenWidth, int iconWidth)
{
    const int limit = screenWidth / 2 + 100;
    return (flags & kIconBits) != 0 ? limit - 16 - iconWidth : limit;
}
