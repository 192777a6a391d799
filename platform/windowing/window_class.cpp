// Registering and finding window classes.
#include "platform/windowing/window_class.h"

#include "platform/base/fault_points.h"
#include "platform/base/last_error.h"
#include "platform/base/text.h"

#include <memory>
#include <vector>

namespace platform
{
namespace
{

// Atoms of registered names start here, above the integer atoms.
constexpr ATOM kFirstAtom = 0xC000;

std::vector<std::unique_ptr<WindowClass>>& Classes()
{
    static auto& classes = *new std::vector<std::unique_ptr<WindowClass>>;
    return classes;
}

bool SameName(std::u16string_view a, std::u16string_view b)
{
    return a == b || (a.size() == b.size() && UpperCase(a) == UpperCase(b));
}

WindowClass* FindRegistered(LPCWSTR nameOrAtom)
{
    const auto atom = static_cast<ATOM>(reinterpret_cast<ULONG_PTR>(nameOrAtom));
    for (const auto& candidate : Classes())
        if (IS_INTRESOURCE(nameOrAtom) ? candidate->atom == atom : SameName(candidate->name, nameOrAtom))
            return candidate.get();
    return nullptr;
}

constinit SystemClass* g_systemClasses = nullptr;

/// Null when nobody offers a class of that name, and when it cannot be registered now.
WindowClass* RegisterSystemClass(LPCWSTR name)
{
    const SystemClass* entry = g_systemClasses;
    while (entry != nullptr && !SameName(entry->name, name))
        entry = entry->next;
    if (entry == nullptr)
        return nullptr;
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.style = entry->style | CS_GLOBALCLASS;
    windowClass.lpfnWndProc = entry->procedure;
    windowClass.cbWndExtra = sizeof(void*);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = entry->name;
    return RegisterClassExW(&windowClass) != 0 ? FindRegistered(name) : nullptr;
}

} // namespace

WindowClass* FindWindowClass(LPCWSTR nameOrAtom)
{
    if (nameOrAtom == nullptr)
        return nullptr;
    WindowClass* const found = FindRegistered(nameOrAtom);
    return found == nullptr && !IS_INTRESOURCE(nameOrAtom) ? RegisterSystemClass(nameOrAtom) : found;
}

void OfferSystemClass(SystemClass& entry)
{
    entry.next = g_systemClasses;
    g_systemClasses = &entry;
}

} // namespace platform

using namespace platform;

ATOM RegisterClassExW(const WNDCLASSEXW* windowClass)
{
    if (FaultPoint("RegisterClassExW"))
        return Fail<ATOM>(ERROR_NOT_ENOUGH_MEMORY, 0);
    if (windowClass == nullptr || windowClass->cbSize != sizeof(WNDCLASSEXW) || windowClass->lpszClassName == nullptr ||
        IS_INTRESOURCE(windowClass->lpszClassName) || windowClass->lpfnWndProc == nullptr ||
        windowClass->cbWndExtra < 0)
        return Fail<ATOM>(ERROR_INVALID_PARAMETER, 0);
    if (FindRegistered(windowClass->lpszClassName) != nullptr)
        return Fail<ATOM>(ERROR_CLASS_ALREADY_EXISTS, 0);
    auto made = std::make_unique<WindowClass>();
    made->name = windowClass->lpszClassName;
    made->style = windowClass->style;
    made->procedure = windowClass->lpfnWndProc;
    made->windowExtra = windowClass->cbWndExtra;
    made->instance = windowClass->hInstance;
    made->icon = windowClass->hIcon;
    made->cursor = windowClass->hCursor;
    made->background = windowClass->hbrBackground;
    made->atom = static_cast<ATOM>(kFirstAtom + Classes().size());
    // An unregistered class leaves a gap: look for the first atom that nobody has.
    while (FindRegistered(MAKEINTRESOURCEW(made->atom)) != nullptr)
        ++made->atom;
    Classes().push_back(std::move(made));
    return Classes().back()->atom;
}

BOOL UnregisterClassW(LPCWSTR className, HINSTANCE)
{
    const WindowClass* found = className != nullptr ? FindRegistered(className) : nullptr;
    if (found == nullptr)
        return Fail(ERROR_CLASS_DOES_NOT_EXIST, FALSE);
    if (found->windows != 0)
        return Fail(ERROR_CLASS_HAS_WINDOWS, FALSE);
    std::erase_if(Classes(), [&](const auto& candidate) { return candidate.get() == found; });
    return TRUE;
}

BOOL GetClassInfoExW(HINSTANCE, LPCWSTR className, WNDCLASSEXW* windowClass)
{
    const WindowClass* found = FindWindowClass(className);
    if (found == nullptr || windowClass == nullptr)
        return Fail(ERROR_CLASS_DOES_NOT_EXIST, FALSE);
    *windowClass = {sizeof(WNDCLASSEXW), found->style,    found->procedure,    0,
                    found->windowExtra,  found->instance, found->icon,         found->cursor,
                    found->background,   nullptr,         found->name.c_str(), nullptr};
    return TRUE;
}
