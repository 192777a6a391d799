// The dialog of a message box: its template's memory, and its procedure.
#include "prompts/box_dialog.h"

#include "app/launcher_state.h"
#include "prompts/box_template.h"
#include "prompts/message_box.h"

namespace
{

/// The box that shows.
const BoxDialog* g_box = nullptr;

/// Movable memory, locked while it is used. Null where there was none.
class LockedMemory
{
public:
    explicit LockedMemory(std::size_t size)
        : m_handle(LocalAlloc(LMEM_MOVEABLE | LMEM_ZEROINIT, size)),
          m_memory(m_handle != nullptr ? LocalLock(m_handle) : nullptr)
    {
    }
    ~LockedMemory()
    {
        if (m_memory != nullptr)
            LocalUnlock(m_handle);
        if (m_handle != nullptr)
            LocalFree(m_handle);
    }
    LockedMemory(const LockedMemory&) = delete;
    LockedMemory& operator=(const LockedMemory&) = delete;
    void* Get() const { return m_memory; }

private:
    HLOCAL m_handle;
    void* m_memory;
};

/// Stands in for the static control's own procedure, which never learns of anything any more.
LRESULT CALLBACK IconPlaceProc(HWND window, UINT message, WPARAM, LPARAM)
{
    if (message == WM_PAINT)
    {
        PAINTSTRUCT paint;
        const HDC dc = BeginPaint(window, &paint);
        DrawIcon(dc, 0, 0, g_box->icon);
        EndPaint(window, &paint);
    }
    return 0;
}

void SetFont(HWND dialog, int id)
{
    if (const HWND control = GetDlgItem(dialog, id))
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(g_box->font.Get()), TRUE);
}

void Initialize(HWND dialog)
{
    constexpr int kLastButtonId = 17;
    SetFont(dialog, kMessageTextId);
    for (int id = IDOK; id <= kLastButtonId; ++id)
        SetFont(dialog, id);
    SetFont(dialog, kHelpButtonId);
    SetFont(dialog, kCheckBoxId);
    if ((g_box->flags & MBX_CHECKED) != 0)
        CheckDlgButton(dialog, kCheckBoxId, BST_CHECKED);
    SetFocus(GetDlgItem(dialog, g_box->defaultId));
    if (!HasCancel(g_box->flags) && !HasOnlyOk(g_box->flags))
        EnableMenuItem(GetSystemMenu(dialog, FALSE), SC_CLOSE, MF_GRAYED);
    if (g_box->icon != nullptr)
        SetWindowLongPtrW(GetDlgItem(dialog, kIconPlaceId), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(IconPlaceProc));
}

void Cancel(HWND dialog)
{
    if (HasCancel(g_box->flags))
        EndDialog(dialog, IDCANCEL);
    else if (HasOnlyOk(g_box->flags))
        EndDialog(dialog, IDOK);
}

/// The help file lies beside the program and has its name.
void ShowHelp(HWND dialog)
{
    WCHAR program[520] = {};
    GetModuleFileNameW(nullptr, program, static_cast<DWORD>(std::size(program)));
    WString file = program;
    const std::size_t dot = file.rfind(TEXT('.'));
    if (dot == WString::npos)
        return;
    file.replace(dot, WString::npos, TEXT(".hlp"));
    WinHelpW(dialog, file.c_str(), g_box->helpContext != 0 ? HELP_CONTEXT : HELP_PARTIALKEY, g_box->helpContext);
}

void Answer(HWND dialog, int id)
{
    const bool ticked = SendDlgItemMessageW(dialog, kCheckBoxId, BM_GETCHECK, 0, 0) != 0;
    EndDialog(dialog, id | (ticked ? static_cast<int>(CheckBoxFlag(g_box->flags)) : 0));
}

INT_PTR CALLBACK BoxDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    if (message == WM_INITDIALOG)
    {
        Initialize(dialog);
        return FALSE; // the focus is set
    }
    if (message != WM_COMMAND)
        return FALSE;
    switch (const int id = LOWORD(wParam))
    {
    case IDCLOSE:
    case kCheckBoxId:
        break;
    case IDCANCEL:
        Cancel(dialog);
        break;
    case kHelpButtonId:
        ShowHelp(dialog);
        break;
    default:
        Answer(dialog, id);
        break;
    }
    return TRUE;
}

} // namespace

int RunBoxDialog(HWND owner, const BoxLayout& layout, const WString& caption, const BoxDialog& box)
{
    const LockedMemory memory(BoxTemplateSize(layout, caption));
    if (memory.Get() == nullptr)
    {
        MessageBoxW(nullptr, TEXT("Memory allocation for dialog template failed."), TEXT("Allocation Failure"),
                    MB_ICONEXCLAMATION);
        return IDCANCEL;
    }
    WriteBoxTemplate(memory.Get(), layout, caption);
    g_box = &box;
    return static_cast<int>(
        DialogBoxIndirectParamW(g_instance, static_cast<LPCDLGTEMPLATEW>(memory.Get()), owner, BoxDialogProc, 0));
}
