// The store over SQLite.
//
// Every SQLite result is one of four things here: done, not there, "try once more with a fresh file" (a damaged one is
// set aside), or an error that the caller gets as a Windows code.
#include "platform/registry/store.h"

#include "platform/base/last_error.h"
#include "platform/base/text.h"
#include "platform/registry/registry_file.h"

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <time.h>

namespace platform
{
namespace
{

constexpr char kSchema[] = "CREATE TABLE IF NOT EXISTS keys ("
                           " id INTEGER PRIMARY KEY, path TEXT NOT NULL UNIQUE, name TEXT NOT NULL);"
                           "CREATE TABLE IF NOT EXISTS \"values\" ("
                           " key INTEGER NOT NULL REFERENCES keys(id) ON DELETE CASCADE, folded TEXT NOT NULL,"
                           " name TEXT NOT NULL, type INTEGER NOT NULL, data BLOB NOT NULL,"
                           " PRIMARY KEY (key, folded)) WITHOUT ROWID;"
                           "INSERT OR IGNORE INTO keys (id, path, name) VALUES (0, '', '');";

// Together a bit under 200 ms: long enough for another launcher's save, short enough for a menu that is opening.
constexpr int kWaits = 38;
constexpr long kWaitNanoseconds = 5'000'000;

/// Our own result for "no such row", which no SQLite call returns from here.
constexpr int kNotThere = SQLITE_NOTFOUND;

bool IsDamage(int result)
{
    const int code = result & 0xFF;
    return code == SQLITE_CORRUPT || code == SQLITE_NOTADB;
}

LONG ErrorFromSqlite(int result)
{
    switch (result & 0xFF)
    {
    case SQLITE_OK:
        return ERROR_SUCCESS;
    case kNotThere:
        return ERROR_FILE_NOT_FOUND;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return ERROR_LOCK_VIOLATION;
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
    case SQLITE_CANTOPEN:
        return ERROR_ACCESS_DENIED;
    case SQLITE_FULL:
        return ERROR_DISK_FULL;
    case SQLITE_NOMEM:
    case SQLITE_TOOBIG:
        return ERROR_NOT_ENOUGH_MEMORY;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return ERROR_BADDB;
    case SQLITE_IOERR:
        return ERROR_WRITE_FAULT;
    default:
        return ERROR_GEN_FAILURE;
    }
}

std::string Fold(std::u16string_view text)
{
    return Utf8FromUtf16(UpperCase(text));
}

void PrepareSqlite()
{
    // Counting memory costs a lock and a division per allocation, for nobody.
    [[maybe_unused]] static const int once = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
}

/// Resets a statement when the call that used it is over.
class Using
{
public:
    explicit Using(SqliteStatement& statement) : m_statement(statement) {}
    ~Using() { m_statement.Reset(); }
    Using(const Using&) = delete;
    Using& operator=(const Using&) = delete;

private:
    SqliteStatement& m_statement;
};

/// Prepares a statement, binds the values and runs it to its end.
template <typename... Values>
int Run(sqlite3* database, const char* sql, const Values&... values)
{
    SqliteStatement statement;
    int result = statement.Prepare(database, sql);
    if (result == SQLITE_OK)
    {
        statement.BindAll(values...);
        result = statement.Step();
    }
    return result == SQLITE_DONE || result == SQLITE_ROW ? SQLITE_OK : result;
}

/// The range of folded paths below a key: from "PATH\" up to "PATH]", ']' being the character after '\'.
struct Below
{
    explicit Below(const std::string& folded)
        : first(folded.empty() ? "" : folded + '\\'), last(folded.empty() ? "\xFF" : folded + ']')
    {
    }
    std::string first;
    std::string last;
};

} // namespace

int RegistryStore::WaitForLock(void* store, int)
{
    auto& self = *static_cast<RegistryStore*>(store);
    if (self.m_waitsLeft == 0)
        return 0;
    --self.m_waitsLeft;
    const timespec pause{0, kWaitNanoseconds};
    nanosleep(&pause, nullptr);
    return 1;
}

void RegistryStore::Close()
{
    m_findKey.Close();
    m_readValue.Close();
    m_database.reset();
    m_checked = false;
}

int RegistryStore::Open(int flags)
{
    if (m_database != nullptr)
        return SQLITE_OK;
    struct stat info = {};
    const bool exists = !m_path.empty() && stat(m_path.c_str(), &info) == 0;
    const bool absent = m_path.empty() || (!exists && (errno == ENOENT || errno == ENOTDIR));
    if (absent && (flags & SQLITE_OPEN_CREATE) == 0)
        return kNotThere;
    if (m_path.empty() || (!exists && !absent) || (exists && !S_ISREG(info.st_mode)))
        return SQLITE_CANTOPEN;
    PrepareSqlite();
    sqlite3* database = nullptr;
    const int result =
        sqlite3_open_v2(m_path.c_str(), &database, flags | SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    m_database.reset(database);
    if (result != SQLITE_OK)
    {
        Close();
        return result;
    }
    m_inode = info.st_ino;
    sqlite3_busy_handler(database, &WaitForLock, this);
    return SQLITE_OK;
}

int RegistryStore::RunOnce(const char* sql)
{
    return sqlite3_exec(m_database.get(), sql, nullptr, nullptr, nullptr);
}

/// What to make of missing tables. A process killed before its first commit leaves an empty file, and one that is just
/// committing has them a moment later; a database with other tables is no store of ours. Both questions are asked of
/// one snapshot, so that a commit between them cannot make a good file look foreign.
template <typename Work>
int RegistryStore::ReadWithoutTables(Work work)
{
    int result = RunOnce("BEGIN");
    if (result != SQLITE_OK)
        return result;
    SqliteStatement count;
    result = count.Prepare(m_database.get(), "SELECT count(*) FROM sqlite_master");
    if (result == SQLITE_OK && (result = count.Step()) == SQLITE_ROW)
    {
        const bool empty = count.Number(0) == 0;
        result = empty ? kNotThere : work();
    }
    count.Close();
    RunOnce("ROLLBACK");
    return result == SQLITE_ERROR ? SQLITE_NOTADB : result;
}

// Damage in a page that nobody has read yet would otherwise be written around, and perhaps spread.
int RegistryStore::CheckWhole()
{
    if (m_checked)
        return SQLITE_OK;
    SqliteStatement check;
    int result = check.Prepare(m_database.get(), "PRAGMA quick_check(1)");
    if (result == SQLITE_OK && (result = check.Step()) == SQLITE_ROW)
    {
        const RegistryBytes verdict = check.Data(0);
        const std::string_view text(reinterpret_cast<const char*>(verdict.data()), verdict.size());
        result = text == "ok" ? SQLITE_OK : SQLITE_CORRUPT;
    }
    m_checked = result == SQLITE_OK;
    return result;
}

int RegistryStore::OpenForWriting()
{
    if (m_database == nullptr && MakeParentFolder(m_path) != 0)
        return SQLITE_CANTOPEN;
    const int result = Open(SQLITE_OPEN_CREATE);
    return result == SQLITE_OK ? CheckWhole() : result;
}

bool RegistryStore::SetAside()
{
    struct stat info = {};
    const bool sameFile = stat(m_path.c_str(), &info) == 0 && (m_inode == 0 || info.st_ino == m_inode);
    Close();
    // When it is another file already, another process has done it.
    return !sameFile || SetFileAside(m_path);
}

/// Runs the work, and once more after a damaged file was set aside.
template <typename Work>
int RegistryStore::Attempt(Work work)
{
    m_waitsLeft = m_keepWaiting ? kWaits : 0;
    int result = work();
    if (IsDamage(result) && SetAside())
        result = work();
    m_keepWaiting = (result & 0xFF) != SQLITE_BUSY;
    return result;
}

template <typename Work>
LONG RegistryStore::Reading(Work work)
{
    return ErrorFromSqlite(Attempt(
        [&]
        {
            int result = Open(0);
            result = result == SQLITE_OK ? work() : result;
            return result == SQLITE_ERROR ? ReadWithoutTables(work) : result;
        }));
}

template <typename Work>
int RegistryStore::InTransaction(Work work)
{
    int result = RunOnce("BEGIN IMMEDIATE");
    if (result != SQLITE_OK)
        return result;
    result = RunOnce(kSchema);
    if (result == SQLITE_OK)
        result = work();
    if (result == SQLITE_OK)
        result = RunOnce("COMMIT");
    if (result != SQLITE_OK && sqlite3_get_autocommit(m_database.get()) == 0)
        RunOnce("ROLLBACK");
    return result == SQLITE_ERROR ? SQLITE_NOTADB : result;
}

template <typename Work>
LONG RegistryStore::Writing(Work work)
{
    return ErrorFromSqlite(Attempt(
        [&]
        {
            const int result = OpenForWriting();
            return result == SQLITE_OK ? InTransaction(work) : result;
        }));
}

LONG RegistryStore::ReadFailed(LONG error)
{
    m_failedRead = error;
    m_seen.clear();
    return error;
}

LONG RegistryStore::FindKey(std::u16string_view path)
{
    const LONG result = LookUpKey(path);
    return result == ERROR_SUCCESS || result == ERROR_FILE_NOT_FOUND ? result : ReadFailed(result);
}

LONG RegistryStore::LookUpKey(std::u16string_view path)
{
    if (path.empty())
        return ERROR_SUCCESS;
    const std::string folded = Fold(path);
    return Reading(
        [&]
        {
            const int result = m_findKey.Prepare(m_database.get(), "SELECT 1 FROM keys WHERE path = ?1");
            if (result != SQLITE_OK)
                return result;
            const Using use(m_findKey);
            m_findKey.BindAll(folded);
            const int step = m_findKey.Step();
            return step == SQLITE_ROW ? SQLITE_OK : step == SQLITE_DONE ? kNotThere : step;
        });
}

LONG RegistryStore::ReadValue(std::u16string_view path, std::u16string_view name, RegistryValue& value)
{
    std::string foldedPath = Fold(path);
    std::string foldedName = Fold(name);
    const LONG result = LookUpValue(foldedPath, foldedName, value);
    if (result != ERROR_SUCCESS && result != ERROR_FILE_NOT_FOUND)
        return ReadFailed(result);
    if (m_failedRead != ERROR_SUCCESS)
        m_seen.emplace(std::move(foldedPath), std::move(foldedName));
    return result;
}

LONG RegistryStore::LookUpValue(const std::string& foldedPath, const std::string& foldedName, RegistryValue& value)
{
    return Reading(
        [&]
        {
            const int result =
                m_readValue.Prepare(m_database.get(), "SELECT type, data FROM \"values\" WHERE folded = ?2"
                                                      " AND key = (SELECT id FROM keys WHERE path = ?1)");
            if (result != SQLITE_OK)
                return result;
            const Using use(m_readValue);
            m_readValue.BindAll(foldedPath, foldedName);
            const int step = m_readValue.Step();
            if (step != SQLITE_ROW)
                return step == SQLITE_DONE ? kNotThere : step;
            value.type = static_cast<DWORD>(m_readValue.Number(0));
            const RegistryBytes data = m_readValue.Data(1);
            value.data.assign(data.begin(), data.end());
            return SQLITE_OK;
        });
}

int RegistryStore::CreateMissing(std::u16string_view path, bool& created)
{
    const int before = sqlite3_total_changes(m_database.get());
    int result = SQLITE_OK;
    for (std::size_t start = 0; start < path.size() && result == SQLITE_OK;)
    {
        const std::size_t end = std::min(path.find(u'\\', start), path.size());
        const std::string folded = Fold(path.substr(0, end));
        const std::string name = Utf8FromUtf16(path.substr(start, end - start));
        result = Run(m_database.get(), "INSERT OR IGNORE INTO keys (path, name) VALUES (?1, ?2)", folded, name);
        start = end + 1;
    }
    created = sqlite3_total_changes(m_database.get()) != before;
    return result;
}

LONG RegistryStore::CreateKey(std::u16string_view path, bool& created)
{
    created = false;
    const LONG found = LookUpKey(path);
    return found == ERROR_FILE_NOT_FOUND ? Writing([&] { return CreateMissing(path, created); }) : found;
}

LONG RegistryStore::WriteValue(std::u16string_view path, std::u16string_view name, DWORD type, RegistryBytes data)
{
    const std::string foldedPath = Fold(path);
    const std::string foldedName = Fold(name);
    RegistryValue present;
    const LONG found = LookUpValue(foldedPath, foldedName, present);
    if (found == ERROR_SUCCESS && present.type == type && std::ranges::equal(present.data, data))
        return ERROR_SUCCESS;
    if (found == ERROR_SUCCESS && m_failedRead != ERROR_SUCCESS && !m_seen.contains({foldedPath, foldedName}))
        return m_failedRead;
    if (found != ERROR_SUCCESS && found != ERROR_FILE_NOT_FOUND)
        return found;
    const std::string spelling = Utf8FromUtf16(name);
    const LONG written = Writing(
        [&]
        {
            // An existing value keeps the spelling of its name.
            const int result = Run(m_database.get(),
                                   "INSERT INTO \"values\" (key, folded, name, type, data)"
                                   " SELECT id, ?2, ?3, ?4, ?5 FROM keys WHERE path = ?1"
                                   " ON CONFLICT (key, folded) DO UPDATE SET type = ?4, data = ?5",
                                   foldedPath, foldedName, spelling, type, data);
            // No row: the key has been deleted since it was opened.
            return result == SQLITE_OK && sqlite3_changes(m_database.get()) == 0 ? kNotThere : result;
        });
    if (written == ERROR_SUCCESS && m_failedRead != ERROR_SUCCESS)
        m_seen.emplace(foldedPath, foldedName);
    return written;
}

LONG RegistryStore::DeleteValue(std::u16string_view path, std::u16string_view name)
{
    const std::string foldedPath = Fold(path);
    const std::string foldedName = Fold(name);
    RegistryValue present;
    const LONG found = LookUpValue(foldedPath, foldedName, present);
    if (found != ERROR_SUCCESS)
        return found;
    constexpr char kDelete[] = "DELETE FROM \"values\" WHERE folded = ?2"
                               " AND key = (SELECT id FROM keys WHERE path = ?1)";
    return Writing([&] { return Run(m_database.get(), kDelete, foldedPath, foldedName); });
}

LONG RegistryStore::DeleteTree(std::u16string_view path, bool itself)
{
    const LONG found = LookUpKey(path);
    if (found != ERROR_SUCCESS)
        return found;
    const std::string folded = Fold(path);
    const Below below(folded);
    // The key itself counts as below, but its row stays unless asked for; the root's row always stays.
    return Writing(
        [&]
        {
            const int result = Run(m_database.get(),
                                   "DELETE FROM \"values\" WHERE key IN (SELECT id FROM keys"
                                   " WHERE path = ?1 OR (path >= ?2 AND path < ?3))",
                                   folded, below.first, below.last);
            if (result != SQLITE_OK)
                return result;
            return Run(m_database.get(),
                       itself ? "DELETE FROM keys WHERE id <> 0 AND (path = ?1 OR (path >= ?2 AND path < ?3))"
                              : "DELETE FROM keys WHERE id <> 0 AND path <> ?1 AND path >= ?2 AND path < ?3",
                       folded, below.first, below.last);
        });
}

bool RegistryStore::Writable() const
{
    return !m_path.empty() && MayWrite(m_path);
}

} // namespace platform
