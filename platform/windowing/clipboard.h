// The clipboard, and what is marked. What this program puts on the clipboard outlives its windows: a clipboard manager
// takes it over when the program ends, or the process stays, without windows, until another program takes the
// clipboard.
#pragma once

#include "platform/screen/selections.h"

namespace platform
{

/// One way in which content can be had.
struct ClipboardForm
{
    std::string target; ///< as in platform/screen/selections.h
    std::string content;
};

/// Replaces what is on the clipboard; the best form first. False when the display refuses.
bool PutOnClipboard(std::vector<ClipboardForm> forms);
/// Empties the clipboard, whoever's what is on it is, unless it has been replaced since this program last read it.
void EmptyReadClipboard();
/// What the content can be had as; empty when there is none, nothing when its owner has not answered
/// `until` then, milliseconds of the clock.
std::optional<std::vector<std::string>> ClipboardTargets(std::uint64_t until);
/// The content in one form; nothing when there is none, when it has not come whole `until` then, or from 64 MB on.
std::optional<std::string> ReadClipboard(std::string_view target, std::uint64_t until);

/// Text, on the clipboard or as what is marked (`Primary`, which goes with the program). False when the display
/// refuses.
bool PutTextOnClipboard(std::u16string_view text, screen::Selection selection = screen::Selection::Clipboard);
/// Nothing when there is no text, or when it has not come within a second.
std::optional<std::u16string> ClipboardText(screen::Selection selection = screen::Selection::Clipboard);
/// Whether a menu should offer to paste: also true when the clipboard's owner does not say within a frame.
bool ClipboardMayHoldText();

/// For the end of the program, its windows gone: hands what it has put on the clipboard to the desktop's clipboard
/// manager. Where there is none, or it does not answer, the process reference stays held.
void HandClipboardOver();

} // namespace platform
