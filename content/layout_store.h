// Where orders are kept: one binary value in a registry key per level, under HKEY_CURRENT_USER.
#pragma once

#include "content/ordering.h"

/// Reads the value "m_layout" whatever its type; empty when the path is empty or nothing is stored.
StoredOrder ReadStoredOrder(const WString& layoutKey);
/// Writes the keys of all items; creates the key when it is missing. Failures are ignored: the order is then not kept.
void WriteStoredOrder(const WString& layoutKey, const MenuItems& items);

/// Opens a key for reading and writing; an empty owner when it cannot be opened.
UniqueRegistryKey OpenUserKey(const WString& path);
/// The same, creating the key when it cannot be opened.
UniqueRegistryKey OpenOrCreateUserKey(const WString& path);
/// A value's bytes, whatever its type; empty without a key, and when the value is missing or cannot be read.
std::vector<std::uint8_t> ReadValue(const UniqueRegistryKey& key, LPCWSTR name);
