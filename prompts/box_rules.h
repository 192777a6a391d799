// What the flags of a message box ask for: buttons, labels, icon, check box.
#pragma once

#include "support/wstring.h"

#include <array>
#include <vector>

/// In the order of their string resources.
enum class BoxLabel
{
    Ok,
    Cancel,
    Ignore,
    Retry,
    Abort,
    Help,
    Yes,
    No,
    Continue,
    DontAsk,
    DontTell,
    YesToAll,
    NoToAll,
    Count,
};

constexpr UINT kFirstLabelString = 9001; ///< string resource of BoxLabel::Ok
constexpr int kLabelCapacity = 100;      ///< characters, the terminator included

constexpr WORD kIconPlaceId = 1000;
constexpr WORD kMessageTextId = 1001;
constexpr WORD kHelpButtonId = 300;
constexpr WORD kCheckBoxId = 5555;

class BoxLabels
{
public:
    /// The texts that are there without resources.
    BoxLabels();
    const WString& Of(BoxLabel label) const { return m_texts[static_cast<std::size_t>(label)]; }
    void Set(BoxLabel label, const WString& text) { m_texts[static_cast<std::size_t>(label)] = text; }

private:
    std::array<WString, static_cast<std::size_t>(BoxLabel::Count)> m_texts;
};

struct BoxButton
{
    WORD id;
    WString label;
};

/// From left to right. `extraLabel` may be null.
std::vector<BoxButton> ButtonsOfBox(DWORD flags, const BoxLabels& labels, LPCWSTR extraLabel);
/// How many buttons the row has room for. "Yes to All" and "No to All" take theirs even where the kind has no such
/// button.
int ButtonPlaces(DWORD flags, bool hasExtra);
/// From 1 on; 1 for one that there is no place for.
int DefaultButtonOrdinal(DWORD flags, int places);
/// MBX_DONTASK, MBX_DONTTELL, MBX_CUSTOMCHECK or 0 for a box without check box.
DWORD CheckBoxFlag(DWORD flags);
/// The label of its check box; `last` is the one that a box had before.
const WString& CheckBoxLabel(DWORD flags, const BoxLabels& labels, const WString& last);
/// The system's icon; null for none.
LPCWSTR IconOfBox(DWORD flags);
/// True for the kinds that have a Cancel button: Esc and closing the box answer so.
bool HasCancel(DWORD flags);
/// True when there is only OK: Esc and closing the box answer so.
bool HasOnlyOk(DWORD flags);
/// Pixels that a line of the text may be wide; with any icon bit set it leaves room for one.
int TextLimit(DWORD flags, int screenWidth, int iconWidth);
