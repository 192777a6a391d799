// The overlay over a hive that the user may not write.
#include "platform/registry/hive.h"

namespace platform
{

std::u16string Hive::Overlaid(std::u16string_view path) const
{
    std::u16string overlaid = m_overlay;
    return path.empty() ? overlaid : overlaid.append(u"\\").append(path);
}

LONG Hive::FindKey(std::u16string_view path)
{
    if (m_other != nullptr && m_other->FindKey(Overlaid(path)) == ERROR_SUCCESS)
        return ERROR_SUCCESS;
    return m_store.FindKey(path);
}

LONG Hive::CreateKey(std::u16string_view path, bool& created)
{
    if (!WritesOverlay())
        return m_store.CreateKey(path, created);
    const bool present = m_store.FindKey(path) == ERROR_SUCCESS;
    const LONG status = m_other->CreateKey(Overlaid(path), created);
    created = created && !present;
    return status;
}

LONG Hive::ReadValue(std::u16string_view path, std::u16string_view name, RegistryValue& value)
{
    if (m_other != nullptr && m_other->ReadValue(Overlaid(path), name, value) == ERROR_SUCCESS)
        return ERROR_SUCCESS;
    return m_store.ReadValue(path, name, value);
}

LONG Hive::WriteValue(std::u16string_view path, std::u16string_view name, DWORD type, RegistryBytes data)
{
    if (WritesOverlay())
    {
        // A key that was opened may be in the store alone.
        bool created = false;
        const LONG status = m_other->CreateKey(Overlaid(path), created);
        return status == ERROR_SUCCESS ? m_other->WriteValue(Overlaid(path), name, type, data) : status;
    }
    const LONG status = m_store.WriteValue(path, name, type, data);
    if (status == ERROR_SUCCESS && m_other != nullptr)
        m_other->DeleteValue(Overlaid(path), name); // of a time when the user had no rights; it would hide the new one
    return status;
}

/// `remove` deletes from one of the stores; `present` tells whether there is something to delete in the hive's own.
template <typename Delete>
LONG Hive::DeleteFromBoth(Delete remove, LONG present)
{
    const LONG overlaid = m_other != nullptr ? remove(*m_other) : ERROR_FILE_NOT_FOUND;
    const bool refused = present == ERROR_SUCCESS && WritesOverlay();
    const LONG own = refused ? ERROR_ACCESS_DENIED : present == ERROR_SUCCESS ? remove(m_store) : present;
    return own == ERROR_FILE_NOT_FOUND ? overlaid : own;
}

LONG Hive::DeleteValue(std::u16string_view path, std::u16string_view name)
{
    RegistryValue ignored;
    return DeleteFromBoth(
        [&](RegistryStore& store)
        { return store.DeleteValue(&store == &m_store ? std::u16string(path) : Overlaid(path), name); },
        m_store.ReadValue(path, name, ignored));
}

LONG Hive::DeleteTree(std::u16string_view path, bool itself)
{
    return DeleteFromBoth(
        [&](RegistryStore& store)
        { return store.DeleteTree(&store == &m_store ? std::u16string(path) : Overlaid(path), itself); },
        m_store.FindKey(path));
}

} // namespace platform
