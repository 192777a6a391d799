// Owners of SQLite connections and statements.
#pragma once

#include <memory>
#include <span>
#include <sqlite3.h>
#include <string_view>

namespace platform
{

struct DatabaseCloser
{
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
using UniqueDatabase = std::unique_ptr<sqlite3, DatabaseCloser>;

/// A prepared statement. Text and data that are bound must live until Reset; Result says what the last step returned.
class SqliteStatement
{
public:
    /// Compiles on first use; later calls leave it as it is. An SQLite result code.
    int Prepare(sqlite3* database, const char* sql);
    void Bind(int index, std::string_view text);
    void Bind(int index, std::int64_t number) { sqlite3_bind_int64(m_statement.get(), index, number); }
    void Bind(int index, std::span<const unsigned char> data);
    /// ?1, ?2 and so on.
    template <typename... Values>
    void BindAll(const Values&... values)
    {
        int index = 0;
        (Bind(++index, values), ...);
    }
    int Step() { return sqlite3_step(m_statement.get()); }
    /// Ends the statement's read and lets its locks go.
    void Reset();
    void Close() { m_statement.reset(); }
    std::int64_t Number(int column) const { return sqlite3_column_int64(m_statement.get(), column); }
    std::span<const unsigned char> Data(int column) const;

private:
    struct Finalizer
    {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    std::unique_ptr<sqlite3_stmt, Finalizer> m_statement;
};

} // namespace platform
