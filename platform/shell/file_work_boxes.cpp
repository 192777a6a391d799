// The boxes of file work, built on the dialog manager.
#include "platform/shell/file_work_boxes.h"

#include "platform/base/text.h"
#include "platform/dialogs/dialog.h"
#include "platform/dialogs/dialog_template.h"
#include "platform/shell/file_work_texts.h"

#include "commctrl.h"

#include <algorithm>

namespace platform
{

namespace
{

// Dialog units, as in the message box.
constexpr LONG kMargin = 7;
constexpr LONG kGap = 4;
constexpr SIZE kButton = {50, 14};
constexpr LONG kLine = 10;
constexpr LONG kWidth = 240;

constexpr int kTextId = 0xFFFF;
constexpr int kPictureId = 20;
constexpr int kForAllId = 21;
constexpr int kNameId = 22;
constexpr int kBarId = 23;
constexpr int kAmountId = 24;
constexpr int kFirstChoiceId = 100;
constexpr int kBarSteps = 1000;

constexpr DWORD kBoxStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_CENTER | DS_SETFOREGROUND;

LONG DivideUp(LONG length, LONG by)
{
    return (length + by - 1) / by;
}

RECT At(LONG left, LONG top, LONG width, LONG height)
{
    return {left, top, left + width, top + height};
}

/// In dialog units.
struct Measured
{
    LONG textHeight; ///< of the text beside the picture
    SIZE picture;
};

Measured Measure(const std::u16string& text)
{
    const HFONT font = CreateMessageFont();
    const SIZE units = DialogUnits(font);
    const SIZE picture = {DivideUp(GetSystemMetrics(SM_CXICON) * 4, units.cx),
                          DivideUp(GetSystemMetrics(SM_CYICON) * 8, units.cy)};
    RECT area = {0, 0, MulDiv(kWidth - 3 * kMargin - picture.cx, units.cx, 4), 0};
    const HDC dc = GetDC(nullptr);
    const HGDIOBJ previous = SelectObject(dc, font);
    DrawTextW(dc, text.data(), static_cast<int>(text.size()), &area,
              DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX);
    SelectObject(dc, previous);
    ReleaseDC(nullptr, dc);
    DeleteObject(font);
    return {DivideUp(area.bottom * 8, units.cy), picture};
}

struct Question
{
    FileQuestionTexts texts;
    HICON icon;
    bool forAll = false;
};

DialogTemplate QuestionTemplate(const Question& question, FileWork work, bool more)
{
    const Measured measured = Measure(question.texts.text);
    const SIZE picture = measured.picture;
    const LONG left = 2 * kMargin + picture.cx;
    const LONG content = std::max(measured.textHeight, picture.cy);
    const LONG checkTop = kMargin + content + kMargin;
    const LONG buttonTop = more ? checkTop + kLine + kMargin : checkTop;
    const auto& choices = question.texts.choices;
    const auto count = static_cast<LONG>(choices.size());
    DialogTemplate made(TitleOfWork(work), {kWidth, buttonTop + kButton.cy + kMargin}, kBoxStyle, WS_EX_TOPMOST);
    made.Add({TEXT("Static"), {}, kPictureId, SS_ICON, At(kMargin, kMargin, picture.cx, picture.cy)});
    made.Add({TEXT("Static"), question.texts.text, kTextId, SS_NOPREFIX | SS_EDITCONTROL,
              At(left, kMargin, kWidth - kMargin - left, measured.textHeight)});
    LONG x = kWidth - kMargin - count * (kButton.cx + kGap) + kGap;
    for (std::size_t i = 0; i < choices.size(); ++i, x += kButton.cx + kGap)
    {
        const DWORD style = i == 0 ? WS_TABSTOP | WS_GROUP : WS_TABSTOP;
        const bool isCancel = choices[i].answer == FileAnswer::Cancel;
        made.Add({TEXT("Button"), choices[i].label, isCancel ? IDCANCEL : kFirstChoiceId + static_cast<int>(i), style,
                  At(x, buttonTop, kButton.cx, kButton.cy)});
    }
    if (more)
        made.Add({TEXT("Button"), u"Do this for &all", kForAllId, WS_TABSTOP | WS_GROUP | BS_AUTOCHECKBOX,
                  At(left, checkTop, kWidth - kMargin - left, kLine)});
    return made;
}

/// What Return does: the choice that loses nothing.
int DefaultChoice(const Question& question)
{
    const auto& choices = question.texts.choices;
    for (const FileAnswer safe : {FileAnswer::TryAgain, FileAnswer::Skip, FileAnswer::KeepBoth})
        for (std::size_t i = 0; i < choices.size(); ++i)
            if (choices[i].answer == safe)
                return kFirstChoiceId + static_cast<int>(i);
    return IDCANCEL;
}

INT_PTR CALLBACK AskProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_INITDIALOG:
    {
        SetWindowLongPtrW(dialog, DWLP_USER, lParam);
        const auto& question = *reinterpret_cast<const Question*>(lParam);
        SendDlgItemMessageW(dialog, kPictureId, STM_SETICON, reinterpret_cast<WPARAM>(question.icon), 0);
        SendMessageW(dialog, DM_SETDEFID, static_cast<WPARAM>(DefaultChoice(question)), 0);
        SetFocus(GetDlgItem(dialog, DefaultChoice(question)));
        return FALSE;
    }
    case WM_COMMAND:
        if (LOWORD(wParam) != IDCANCEL && LOWORD(wParam) < kFirstChoiceId)
            return FALSE;
        reinterpret_cast<Question*>(GetWindowLongPtrW(dialog, DWLP_USER))->forAll =
            IsDlgButtonChecked(dialog, kForAllId) == BST_CHECKED;
        EndDialog(dialog, LOWORD(wParam));
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

FileReply AskAboutFile(HWND owner, FileWork work, const FileQuestionFacts& facts)
{
    Question question{TextsOfQuestion(work, facts), nullptr};
    const int size = GetSystemMetrics(SM_CXICON);
    question.icon = static_cast<HICON>(
        LoadImageW(nullptr, question.texts.isWarning ? IDI_WARNING : IDI_QUESTION, IMAGE_ICON, size, size, LR_SHARED));
    const bool more = facts.more && question.texts.choices.size() > 1;
    const DialogTemplate made = QuestionTemplate(question, work, more);
    const INT_PTR chosen = DialogBoxIndirectParamW(nullptr, made.Get(), IsWindow(owner) ? owner : nullptr, AskProcedure,
                                                   reinterpret_cast<LPARAM>(&question));
    const auto index = static_cast<std::size_t>(chosen - kFirstChoiceId);
    if (chosen < kFirstChoiceId || index >= question.texts.choices.size())
        return {};
    return {question.texts.choices[index].answer, question.forAll};
}

bool FileProgressBox::Run(HWND owner, const FileProgress& progress)
{
    constexpr LONG kInner = kWidth - 2 * kMargin;
    constexpr LONG kBarTop = kMargin + kLine + kGap;
    constexpr LONG kAmountTop = kBarTop + kLine + kGap;
    constexpr LONG kButtonTop = kAmountTop + kLine + kMargin;
    DialogTemplate made(TitleOfWork(m_work), {kWidth, kButtonTop + kButton.cy + kMargin}, kBoxStyle, WS_EX_TOPMOST);
    made.Add({TEXT("Static"), {}, kNameId, SS_NOPREFIX | SS_ENDELLIPSIS, At(kMargin, kMargin, kInner, kLine)});
    made.Add({PROGRESS_CLASSW, {}, kBarId, 0, At(kMargin, kBarTop, kInner, kLine)});
    made.Add({TEXT("Static"), {}, kAmountId, SS_NOPREFIX | SS_ENDELLIPSIS, At(kMargin, kAmountTop, kInner, kLine)});
    made.Add({TEXT("Button"), u"Cancel", IDCANCEL, WS_TABSTOP | BS_DEFPUSHBUTTON,
              At(kWidth - kMargin - kButton.cx, kButtonTop, kButton.cx, kButton.cy)});
    m_first = &progress;
    const INT_PTR result = DialogBoxIndirectParamW(nullptr, made.Get(), IsWindow(owner) ? owner : nullptr, Procedure,
                                                   reinterpret_cast<LPARAM>(this));
    m_window = nullptr;
    return result != -1;
}

void FileProgressBox::Show(const FileProgress& progress)
{
    const double part =
        progress.allBytes > 0   ? static_cast<double>(progress.bytes) / static_cast<double>(progress.allBytes)
        : progress.allFiles > 0 ? static_cast<double>(progress.files) / static_cast<double>(progress.allFiles)
                                : 0;
    const std::u16string name = m_cancelled ? u"Cancelling\u2026" : ShownFileName(progress.name);
    SetDlgItemTextW(m_window, kNameId, name.c_str());
    SetDlgItemTextW(m_window, kAmountId, ProgressText(progress).c_str());
    SendDlgItemMessageW(m_window, kBarId, PBM_SETPOS, static_cast<WPARAM>(part * kBarSteps), 0);
}

void FileProgressBox::End()
{
    if (m_window != nullptr)
        EndDialog(m_window, IDOK);
}

void FileProgressBox::Cancel()
{
    m_cancelled = true;
    m_cancel();
    EnableWindow(GetDlgItem(m_window, IDCANCEL), FALSE);
    SetDlgItemTextW(m_window, kNameId, u"Cancelling\u2026");
}

INT_PTR CALLBACK FileProgressBox::Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG)
        SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    auto* box = reinterpret_cast<FileProgressBox*>(GetWindowLongPtrW(dialog, DWLP_USER));
    if (box == nullptr)
        return FALSE;
    switch (message)
    {
    case WM_INITDIALOG:
        box->m_window = dialog;
        SendDlgItemMessageW(dialog, kBarId, PBM_SETRANGE32, 0, kBarSteps);
        box->Show(*box->m_first);
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDCANCEL)
            box->Cancel();
        return TRUE;
    case WM_DESTROY:
        box->m_window = nullptr;
        return FALSE;
    default:
        return FALSE;
    }
}

} // namespace platform
