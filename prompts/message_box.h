// The launcher's own message box: more buttons than the system's, and a check box whose state comes with the answer.
#pragma once

#include <windows.h>

#include <cstdint>

/// Flags beside the system's (MB_…), of which these keep their meaning: the kinds of buttons but for those of Windows'
/// later additions, the icons, the default button (up to the seventh), MB_HELP, and MB_SYSTEMMODAL, which together with
/// MB_ICONHAND makes it the system's own box.
enum MessageBoxFlags : std::uint32_t
{
    MBX_CONTINUEABORT = 0x00000008, ///< a kind of buttons
    MBX_DONTASK = 0x01000000,       ///< with the check box "Don't ask me again"; in the answer: it is ticked
    MBX_DONTTELL = 0x02000000,      ///< with the check box "Don't tell me again", likewise
    MBX_YESTOALL = 0x04000000,      ///< "Yes to All" beside "Yes"
    MBX_NOTOALL = 0x08000000,       ///< "No to All" beside "No"
    MBX_DEFAULTLABELS = 0x10000000, ///< the program's resources are not asked for labels
    MBX_CUSTOMCHECK = 0x20000000,   ///< with a check box that has the last one's label; in the answer: it is ticked
    MBX_CHECKED = 0x40000000,       ///< the check box is ticked at first
    MBX_NOBEEP = 0x80000000,
};

/// Answers beside the system's.
enum MessageBoxAnswers : int
{
    IDYESTOALL = 12,
    IDNOTOALL = 13,
    IDEXTRABUTTON = 14,
};

/// Shows a box and returns the identifier of the button that ended it, with the check box's flag when that is ticked
/// and the answer is not Cancel. IDCANCEL without memory for the box, −1 when the system cannot show it.
///
/// `owner`, `text`, `caption` (then "Error") and `extraLabel` (then there is no such button) may be null; texts are cut
/// to 1023 characters. With a `helpContext` of 0 the help button looks nothing up. One box at a time.
int ShowMessageBox(HWND owner, LPCWSTR text, LPCWSTR caption, DWORD flags, DWORD helpContext, LPCWSTR extraLabel);
