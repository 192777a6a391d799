// The registry calls: key handles over the two stores.
#include "platform/base/fault_points.h"
#include "platform/base/handle_table.h"
#include "platform/registry/hive.h"
#include "platform/registry/registry_file.h"

#include "windows.h"

#include <algorithm>
#include <limits>

using platform::Hive;

namespace
{

struct KeyObject : platform::HandleObject
{
    static constexpr platform::HandleKind kHandleKind = platform::HandleKind::RegistryKey;
    KeyObject(Hive& s, std::u16string p, REGSAM a) : HandleObject(kHandleKind), store(s), path(std::move(p)), access(a)
    {
    }
    Hive& store;
    std::u16string path;
    REGSAM access;
};

Hive& UserHive()
{
    static Hive& hive = *new Hive(platform::UserHivePath());
    return hive;
}

Hive& MachineHive()
{
    static Hive& hive = *new Hive(platform::MachineHivePath(), UserHive(), u"VirtualStore\\Machine");
    return hive;
}

/// What a key handle means, predefined or opened.
struct Location
{
    Hive* store = nullptr; ///< null for a handle that names no key
    std::u16string path;
    REGSAM access = 0;
};

Location Locate(HKEY key)
{
    if (key == HKEY_CURRENT_USER)
        return {&UserHive(), {}, KEY_READ | KEY_WRITE};
    if (key == HKEY_LOCAL_MACHINE)
        return {&MachineHive(), {}, KEY_READ | KEY_WRITE};
    const KeyObject* object = platform::FindObject<KeyObject>(key);
    return object != nullptr ? Location{&object->store, object->path, object->access} : Location{};
}

/// Appends a sub-key path, component by component: separators at either end or in a row count once.
void Append(std::u16string& path, LPCWSTR subKey)
{
    std::u16string_view rest = subKey != nullptr ? subKey : u"";
    while (!rest.empty())
    {
        const std::size_t end = std::min(rest.find(u'\\'), rest.size());
        if (end != 0)
        {
            path += path.empty() ? u"" : u"\\";
            path += rest.substr(0, end);
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

bool WantsWrite(REGSAM access)
{
    return (access & KEY_SET_VALUE) != 0;
}

LSTATUS OpenHandleOn(Location location, REGSAM access, HKEY* result)
{
    const std::uintptr_t value =
        platform::InsertHandle(std::make_unique<KeyObject>(*location.store, std::move(location.path), access));
    *result = reinterpret_cast<HKEY>(value);
    return value != 0 ? ERROR_SUCCESS : ERROR_NOT_ENOUGH_MEMORY;
}

std::u16string_view NameOf(LPCWSTR valueName)
{
    return valueName != nullptr ? valueName : u"";
}

/// Hands a value out as RegQueryValueExW does.
LSTATUS CopyOut(const platform::RegistryValue& value, LPDWORD type, LPBYTE data, LPDWORD size)
{
    if (type != nullptr)
        *type = value.type;
    if (size == nullptr)
        return ERROR_SUCCESS;
    const bool fits = data == nullptr || *size >= value.data.size();
    *size = static_cast<DWORD>(value.data.size());
    if (data != nullptr && fits)
        std::copy(value.data.begin(), value.data.end(), data);
    return fits ? ERROR_SUCCESS : ERROR_MORE_DATA;
}

} // namespace

LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD, REGSAM access, HKEY* result)
{
    Location location = Locate(key);
    if (location.store == nullptr || result == nullptr)
        return result == nullptr ? ERROR_INVALID_PARAMETER : ERROR_INVALID_HANDLE;
    *result = nullptr;
    if (platform::FaultPoint("RegOpenKeyExW"))
        return location.store->ReadFailed(ERROR_NOT_ENOUGH_MEMORY);
    Append(location.path, subKey);
    const LSTATUS found = location.store->FindKey(location.path);
    if (found != ERROR_SUCCESS)
        return found;
    return OpenHandleOn(std::move(location), access, result);
}

LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD, LPWSTR, DWORD, REGSAM access, SECURITY_ATTRIBUTES*,
                        HKEY* result, LPDWORD disposition)
{
    Location location = Locate(key);
    if (location.store == nullptr || result == nullptr || subKey == nullptr)
        return location.store == nullptr ? ERROR_INVALID_HANDLE : ERROR_INVALID_PARAMETER;
    *result = nullptr;
    if (platform::FaultPoint("RegCreateKeyExW"))
        return ERROR_NOT_ENOUGH_MEMORY;
    Append(location.path, subKey);
    bool created = false;
    const LSTATUS status = location.store->CreateKey(location.path, created);
    if (status != ERROR_SUCCESS)
        return status;
    if (disposition != nullptr)
        *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
    return OpenHandleOn(std::move(location), access, result);
}

LSTATUS RegCreateKeyW(HKEY key, LPCWSTR subKey, HKEY* result)
{
    return RegCreateKeyExW(key, subKey, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_READ | KEY_WRITE, nullptr, result,
                           nullptr);
}

LSTATUS RegQueryValueExW(HKEY key, LPCWSTR valueName, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size)
{
    const Location location = Locate(key);
    if (location.store == nullptr)
        return ERROR_INVALID_HANDLE;
    if (reserved != nullptr || (data != nullptr && size == nullptr))
        return ERROR_INVALID_PARAMETER;
    if ((location.access & KEY_QUERY_VALUE) == 0)
        return ERROR_ACCESS_DENIED;
    if (platform::FaultPoint("RegQueryValueExW"))
        return location.store->ReadFailed(ERROR_NOT_ENOUGH_MEMORY);
    platform::RegistryValue value;
    const LSTATUS status = location.store->ReadValue(location.path, NameOf(valueName), value);
    return status == ERROR_SUCCESS ? CopyOut(value, type, data, size) : status;
}

LSTATUS RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD, DWORD type, const BYTE* data, DWORD size)
{
    const Location location = Locate(key);
    if (location.store == nullptr)
        return ERROR_INVALID_HANDLE;
    if ((data == nullptr && size != 0) || size > static_cast<DWORD>(std::numeric_limits<int>::max()))
        return ERROR_INVALID_PARAMETER;
    if (!WantsWrite(location.access))
        return ERROR_ACCESS_DENIED;
    if (platform::FaultPoint("RegSetValueExW"))
        return ERROR_NOT_ENOUGH_MEMORY;
    return location.store->WriteValue(location.path, NameOf(valueName), type, {data, size});
}

LSTATUS RegDeleteValueW(HKEY key, LPCWSTR valueName)
{
    const Location location = Locate(key);
    if (location.store == nullptr)
        return ERROR_INVALID_HANDLE;
    if (!WantsWrite(location.access) || platform::FaultPoint("RegDeleteValueW"))
        return ERROR_ACCESS_DENIED;
    return location.store->DeleteValue(location.path, NameOf(valueName));
}

LSTATUS RegDeleteTreeW(HKEY key, LPCWSTR subKey)
{
    Location location = Locate(key);
    if (location.store == nullptr)
        return ERROR_INVALID_HANDLE;
    if (platform::FaultPoint("RegDeleteTreeW"))
        return ERROR_ACCESS_DENIED;
    const std::size_t above = location.path.size();
    Append(location.path, subKey);
    return location.store->DeleteTree(location.path, location.path.size() != above);
}

LSTATUS RegCloseKey(HKEY key)
{
    if (key == HKEY_CURRENT_USER || key == HKEY_LOCAL_MACHINE)
        return ERROR_SUCCESS;
    if (platform::FindObject<KeyObject>(key) == nullptr)
        return ERROR_INVALID_HANDLE;
    platform::TakeHandle(reinterpret_cast<std::uintptr_t>(key));
    return ERROR_SUCCESS;
}
