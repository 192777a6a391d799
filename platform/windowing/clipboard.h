// The clipboard. What this program puts there outlives its windows: a clipboard manager takes it over when the program
// ends, or the process stays, without windows, until another program takes the clipboard.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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
/// Empties the clipboard if what is on it is this program's.
void EmptyOwnClipboard();
/// What the content can be had as; empty when there is none or its owner does not answer in time.
std::vector<std::string> ClipboardTargets(std::chrono::milliseconds patience);
/// The content in one form; nothing when there is none, or not within a second.
std::optional<std::string> ReadClipboard(std::string_view target);

bool PutTextOnClipboard(std::u16string_view text);
std::optional<std::u16string> ClipboardText();

} // namespace platform
