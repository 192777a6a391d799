// A prompt that the user can silence for good.
#pragma once

#include <windows.h>

/// Shows the text of string resource `text` of a module with the check box "Don't tell me again" and returns the
/// answer. Once it was ticked and answered by another button than Cancel, the prompt is recorded: then nothing shows,
/// and the answer is IDOK. Without the text or memory for it nothing shows either, and the answer is IDCANCEL.
///
/// It is recorded under HKEY_LOCAL_MACHINE in `keyPath`, as a value without data (REG_NONE) whose name is the number
/// `text` in decimal. That it cannot be read or written is not reported. The arguments go into the text by the rules of
/// wide printf; 1023 characters of it are shown.
int ShowRememberedPrompt(HWND owner, DWORD flags, LPCWSTR caption, HINSTANCE module, UINT text, LPCWSTR keyPath, ...);
