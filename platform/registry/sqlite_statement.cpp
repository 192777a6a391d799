// Statements: binding without copies, zero-length data kept apart from NULL.
#include "platform/registry/sqlite_statement.h"

namespace platform
{

int SqliteStatement::Prepare(sqlite3* database, const char* sql)
{
    if (m_statement != nullptr)
        return SQLITE_OK;
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v3(database, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    m_statement.reset(statement);
    return result;
}

void SqliteStatement::Bind(int index, std::string_view text)
{
    // A null pointer would bind NULL.
    sqlite3_bind_text(m_statement.get(), index, text.data() != nullptr ? text.data() : "",
                      static_cast<int>(text.size()), SQLITE_STATIC);
}

void SqliteStatement::Bind(int index, std::span<const unsigned char> data)
{
    if (data.empty())
    {
        sqlite3_bind_zeroblob(m_statement.get(), index, 0);
        return;
    }
    sqlite3_bind_blob(m_statement.get(), index, data.data(), static_cast<int>(data.size()), SQLITE_STATIC);
}

void SqliteStatement::Reset()
{
    sqlite3_reset(m_statement.get());
    sqlite3_clear_bindings(m_statement.get());
}

std::span<const unsigned char> SqliteStatement::Data(int column) const
{
    const void* data = sqlite3_column_blob(m_statement.get(), column);
    const int size = sqlite3_column_bytes(m_statement.get(), column);
    return {static_cast<const unsigned char*>(data), static_cast<std::size_t>(data != nullptr ? size : 0)};
}

} // namespace platform
