// A hive as its callers see it: a store, and for the machine's an overlay of the user's own.
#pragma once

#include "platform/registry/store.h"

namespace platform
{

/// Calls and results are RegistryStore's. Where the store may not be written by this user and there is an overlay, what
/// is written goes there, and reading sees it first (docs/registry.md).
class Hive
{
public:
    explicit Hive(std::string path) : m_store(std::move(path)) {}
    /// Keys of the overlay lie below this key of another hive.
    Hive(std::string path, Hive& other, std::u16string_view overlay)
        : m_store(std::move(path)), m_other(&other.m_store), m_overlay(overlay)
    {
    }
    Hive(const Hive&) = delete;
    Hive& operator=(const Hive&) = delete;

    LONG FindKey(std::u16string_view path);
    LONG ReadFailed(LONG error) { return m_store.ReadFailed(error); }
    LONG CreateKey(std::u16string_view path, bool& created);
    LONG ReadValue(std::u16string_view path, std::u16string_view name, RegistryValue& value);
    LONG WriteValue(std::u16string_view path, std::u16string_view name, DWORD type, RegistryBytes data);
    LONG DeleteValue(std::u16string_view path, std::u16string_view name);
    LONG DeleteTree(std::u16string_view path, bool itself);

private:
    std::u16string Overlaid(std::u16string_view path) const;
    bool WritesOverlay() const { return m_other != nullptr && !m_store.Writable(); }
    template <typename Delete>
    LONG DeleteFromBoth(Delete remove, LONG present);

    RegistryStore m_store;
    RegistryStore* m_other = nullptr; ///< the store that the overlay is in; null for a hive without one
    std::u16string m_overlay;
};

} // namespace platform
