// Reading and writing stored orders.
#include "content/layout_store.h"

namespace
{

constexpr LPCWSTR kOrderValue = TEXT("m_layout");
constexpr REGSAM kAccess = KEY_READ | KEY_WRITE;

/// A value's data and the call's result; `data` is empty unless that is ERROR_SUCCESS.
LSTATUS QueryValue(HKEY key, LPCWSTR name, std::vector<std::uint8_t>& data)
{
    DWORD size = 0;
    LSTATUS status = RegQueryValueExW(key, name, nullptr, nullptr, nullptr, &size);
    if (status != ERROR_SUCCESS || size == 0)
        return status;
    data.resize(size);
    status = RegQueryValueExW(key, name, nullptr, nullptr, data.data(), &size);
    data.resize(status == ERROR_SUCCESS ? size : 0);
    return status;
}

} // namespace

UniqueRegistryKey OpenUserKey(const WString& path)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, kAccess, &key) != ERROR_SUCCESS)
        return {};
    return UniqueRegistryKey(key);
}

UniqueRegistryKey OpenOrCreateUserKey(const WString& path)
{
    if (UniqueRegistryKey key = OpenUserKey(path))
        return key;
    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, kAccess, nullptr, &key,
                        nullptr) != ERROR_SUCCESS)
        return {};
    return UniqueRegistryKey(key);
}

std::vector<std::uint8_t> ReadValue(HKEY key, LPCWSTR name)
{
    std::vector<std::uint8_t> data;
    QueryValue(key, name, data);
    return data;
}

bool ReadStoredOrder(const WString& layoutKey, StoredOrder& order)
{
    order.clear();
    if (layoutKey.empty())
        return true;
    UniqueRegistryKey key;
    LSTATUS status = RegOpenKeyExW(HKEY_CURRENT_USER, layoutKey.c_str(), 0, kAccess, key.Receive());
    std::vector<std::uint8_t> data;
    if (status == ERROR_SUCCESS)
        status = QueryValue(key.Get(), kOrderValue, data);
    order = DecodeOrder(data.data(), data.size());
    return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

void WriteStoredOrder(const WString& layoutKey, const MenuItems& items)
{
    if (layoutKey.empty())
        return;
    const UniqueRegistryKey key = OpenOrCreateUserKey(layoutKey);
    if (!key)
        return;
    const std::vector<std::uint8_t> data = EncodeOrder(items);
    RegSetValueExW(key.Get(), kOrderValue, 0, REG_BINARY, data.data(), static_cast<DWORD>(data.size()));
}
