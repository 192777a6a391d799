// Reading and writing stored orders.
#include "content/layout_store.h"

namespace
{

constexpr LPCWSTR kOrderValue = TEXT("m_layout");
constexpr REGSAM kAccess = KEY_READ | KEY_WRITE;

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

std::vector<std::uint8_t> ReadValue(const UniqueRegistryKey& key, LPCWSTR name)
{
    DWORD size = 0;
    if (!key || RegQueryValueExW(key.Get(), name, nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS || size == 0)
        return {};
    std::vector<std::uint8_t> data(size);
    if (RegQueryValueExW(key.Get(), name, nullptr, nullptr, data.data(), &size) != ERROR_SUCCESS)
        return {};
    data.resize(size);
    return data;
}

StoredOrder ReadStoredOrder(const WString& layoutKey)
{
    if (layoutKey.empty())
        return {};
    const std::vector<std::uint8_t> data = ReadValue(OpenUserKey(layoutKey), kOrderValue);
    return DecodeOrder(data.data(), data.size());
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
