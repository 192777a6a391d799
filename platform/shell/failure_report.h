// Telling the user what could not be done, at once or when it turns out later.
#pragma once

#include "platform/base/process_hold.h"

#include "windef.h"

#include <functional>
#include <string>

namespace platform
{

/// A box. `text` is a sentence; an owner that has gone is none.
void ReportFailure(HWND owner, const std::u16string& text);
/// “name” <what>: <reason>
std::u16string FailureText(const std::u16string& name, std::u16string_view what, const std::string& reason);

constexpr char kWhyCategoriesStay[] =
    "Its categories are made from the programs that are installed, and cannot be changed here.";
constexpr char kWhyNothingIsAdded[] = "Only programs that are installed appear there.";
/// Tells that something cannot be done to what is in the applications menu; E_ACCESSDENIED.
HRESULT RefuseInMenu(HWND owner, const std::u16string& name, const std::string& reason);

/// Has the user-interface thread, which is `thread`, tell a failure when it next looks for messages. From any thread.
/// `hold`, which the work has had so far, keeps the process until the user has read it.
void ReportFailureLater(DWORD thread, std::u16string text, const ProcessHold& hold);

/// Runs `work` on a thread of its own and waits a moment for it. A failure, which is the sentence that it returns, is
/// told in a box, by the user-interface thread and as late as it comes; the process is kept until then. E_FAIL for one
/// that has been told already. `work` must own all it uses.
HRESULT RunInBackground(HWND owner, std::function<std::u16string()> work);

} // namespace platform
