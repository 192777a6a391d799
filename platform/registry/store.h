// One hive of the registry: an SQLite file of keys and values (docs/registry.md has the schema and the reasons).
#pragma once

#include "platform/registry/sqlite_statement.h"

#include "windef.h"
#include "winerror.h"

#include <set>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace platform
{

struct RegistryValue
{
    DWORD type = 0;
    std::vector<unsigned char> data;
};

using RegistryBytes = std::span<const unsigned char>;

/// Keys are named by their whole path, components separated by '\', without one at either end; the empty path is the
/// hive's root, which always exists. All calls return Windows error codes: ERROR_FILE_NOT_FOUND for what is not there,
/// ERROR_LOCK_VIOLATION when another process holds the store for too long, ERROR_ACCESS_DENIED, ERROR_DISK_FULL,
/// ERROR_BADDB for a damaged file that could not be set aside.
///
/// The file is opened by the first call that needs it. Reading never creates it.
///
/// Once a read has failed for another reason than that there is nothing to read, a value that is there is overwritten
/// only after it has been read: who was told nothing about it would write what lacks all that it held. Until then
/// WriteValue returns the error that the read returned.
class RegistryStore
{
public:
    /// `path` is empty when there is no place for the file: an empty store that cannot be written.
    explicit RegistryStore(std::string path) : m_path(std::move(path)) {}
    RegistryStore(const RegistryStore&) = delete;
    RegistryStore& operator=(const RegistryStore&) = delete;

    LONG FindKey(std::u16string_view path);
    /// Notes that a read has failed which did not get as far as the store; returns `error`.
    LONG ReadFailed(LONG error);
    /// Creates a key and all above it, unless it exists.
    LONG CreateKey(std::u16string_view path, bool& created);
    LONG ReadValue(std::u16string_view path, std::u16string_view name, RegistryValue& value);
    /// Writes nothing when the value is already so.
    LONG WriteValue(std::u16string_view path, std::u16string_view name, DWORD type, RegistryBytes data);
    LONG DeleteValue(std::u16string_view path, std::u16string_view name);
    /// Deletes all that is below a key, and the key too when `itself`.
    LONG DeleteTree(std::u16string_view path, bool itself);
    /// False when writing is certain to fail for lack of rights.
    bool Writable() const;

private:
    template <typename Work>
    LONG Reading(Work work);
    template <typename Work>
    LONG Writing(Work work);
    template <typename Work>
    int InTransaction(Work work);
    template <typename Work>
    int Attempt(Work work);
    LONG LookUpKey(std::u16string_view path);
    LONG LookUpValue(const std::string& foldedPath, const std::string& foldedName, RegistryValue& value);
    int Open(int flags);
    int OpenForWriting();
    int CheckWhole();
    template <typename Work>
    int ReadWithoutTables(Work work);
    int RunOnce(const char* sql);
    bool SetAside();
    void Close();
    int CreateMissing(std::u16string_view path, bool& created);
    static int WaitForLock(void* store, int attempt);

    std::string m_path;
    UniqueDatabase m_database;
    ino_t m_inode = 0;
    bool m_checked = false; ///< the whole file was read and found sound, as it is before the first write
    int m_waitsLeft = 0;
    bool m_keepWaiting = true;                            ///< false after a wait in vain, until a call succeeds
    LONG m_failedRead = ERROR_SUCCESS;                    ///< of the last read that failed
    std::set<std::pair<std::string, std::string>> m_seen; ///< values, by folded names, read or written since then
    SqliteStatement m_findKey;
    SqliteStatement m_readValue;
};

} // namespace platform
