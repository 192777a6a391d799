// Text in the shell's memory.
#pragma once

#include "support/item_list.h"
#include "support/wstring.h"

#include <shlwapi.h>

/// Terminated text that never changes. What the shell has handed out is taken over as it is: a level keeps the names of
/// all its items.
class ShellText
{
public:
    ShellText() = default;
    explicit ShellText(ShellString text) : m_text(std::move(text)) {}
    /// A copy; empty when out of memory.
    explicit ShellText(LPCWSTR text) { SHStrDupW(text, m_text.Receive()); }

    /// Never null.
    LPCWSTR Get() const { return m_text ? m_text.Get() : TEXT(""); }

    friend bool operator==(const ShellText& a, const ShellText& b) { return Compare(a.Get(), b.Get()) == 0; }
    /// By UTF-16 code units.
    friend bool operator<(const ShellText& a, const ShellText& b) { return Compare(a.Get(), b.Get()) < 0; }

private:
    static int Compare(LPCWSTR a, LPCWSTR b)
    {
        while (*a == *b && *a != 0)
            ++a, ++b;
        return *a - *b;
    }

    ShellString m_text;
};
