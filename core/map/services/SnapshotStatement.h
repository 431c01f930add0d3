#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace orvane {

// A call of SQLite that failed, with its result code.
class DatabaseError : public std::runtime_error {
 public:
  DatabaseError(int code, const std::string& text) : std::runtime_error(text), m_code(code) {}
  [[nodiscard]] int code() const noexcept { return m_code; }

 private:
  int m_code;
};

// One statement with its values. Every function throws DatabaseError.
class SnapshotStatement {
 public:
  SnapshotStatement(sqlite3* database, std::string_view sql) : m_database(database) {
    check(sqlite3_prepare_v2(database, sql.data(), static_cast<int>(sql.size()), &m_statement, nullptr));
  }
  ~SnapshotStatement() { sqlite3_finalize(m_statement); }
  SnapshotStatement(const SnapshotStatement&) = delete;
  SnapshotStatement& operator=(const SnapshotStatement&) = delete;

  SnapshotStatement& bind(std::int64_t value) {
    check(sqlite3_bind_int64(m_statement, ++m_bound, value));
    return *this;
  }
  SnapshotStatement& bind(double value) {
    check(sqlite3_bind_double(m_statement, ++m_bound, value));
    return *this;
  }
  // Raw bytes, which must outlive the statement.
  SnapshotStatement& bind(std::string_view bytes) {
    check(sqlite3_bind_blob64(m_statement, ++m_bound, bytes.data(), bytes.size(), SQLITE_STATIC));
    return *this;
  }
  // Whether there is another row.
  bool step() {
    const int code = sqlite3_step(m_statement);
    if (code == SQLITE_ROW) return true;
    if (code != SQLITE_DONE) check(code);
    return false;
  }
  [[nodiscard]] std::int64_t integer(int column) { return sqlite3_column_int64(m_statement, column); }
  [[nodiscard]] double real(int column) { return sqlite3_column_double(m_statement, column); }
  [[nodiscard]] std::string bytes(int column) {
    const void* data = sqlite3_column_blob(m_statement, column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column));
    return data == nullptr ? std::string() : std::string(static_cast<const char*>(data), size);
  }

 private:
  void check(int code) {
    if (code != SQLITE_OK) throw DatabaseError(code, sqlite3_errmsg(m_database));
  }

  sqlite3* m_database;
  sqlite3_stmt* m_statement = nullptr;
  int m_bound = 0;
};

}  // namespace orvane
