// SQLite's C interface with owners: a connection, statements kept for its life, and runs of them.
// Failures become RuntimeErrors that name the file.
#pragma once

#include <sqlite3.h>

#include <QByteArray>
#include <QString>
#include <concepts>
#include <limits>

#include "embedded/format/note_id.h"

namespace lens {

// Numbers that are given out one after the other never come that far; a file that says so is damaged.
inline constexpr qint64 kNoNumber = qint64(1) << 62;

// How long a statement waits for others that write.
inline constexpr int kBusyTimeoutMs = 5000;

class Connection {
 public:
  // flags are those of sqlite3_open_v2. A constant file is one that nobody writes; it is read without
  // locks. Raises CannotOpen.
  Connection(const QString& path, int flags, bool constant = false);
  // Stands for a file that was removed: every statement raises 53.
  explicit Connection(const QString& path);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  sqlite3* handle() const { return handle_; }
  void requireFile() const;
  const QString& path() const { return path_; }
  // Runs statements that are not kept.
  void execute(const char* sql, int fault);
  // Raises the last failure: Damaged when SQLite found the file damaged, 70 when access is refused,
  // otherwise the given number.
  [[noreturn]] void fail(int fault) const;

 private:
  QString path_;
  sqlite3* handle_ = nullptr;
  bool removed_ = false;
};

// Prepared at its first use, finalised with its owner. The connection must outlive it.
class Statement {
 public:
  // The fault is the number that a failing run raises; the text must be a literal.
  Statement(const Connection& connection, const char* sql, int fault)
      : connection_(connection), sql_(sql), fault_(fault) {}
  ~Statement() { sqlite3_finalize(handle_); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  // One run: binds the arguments in order, steps, and leaves the statement free at the end of the
  // scope. Bytes and texts are not copied, so they must outlive the run. Runs of one statement do
  // not nest.
  class Run {
   public:
    template <class... Arguments>
    explicit Run(Statement& statement, const Arguments&... arguments) : statement_(statement) {
      statement_.prepare();
      int place = 0;
      (bind(++place, arguments), ...);
    }
    ~Run() { sqlite3_reset(statement_.handle_); }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    // True with a row, false at the end.
    bool step();
    // Whatever the file holds, a value is what it is asked as, or Damaged is raised: SQLite itself would make
    // a zero of any text.
    qint64 integer(int column) const {
      sqlite3_value* const value = sqlite3_column_value(statement_.handle_, column);
      if (sqlite3_value_type(value) != SQLITE_INTEGER) [[unlikely]]
        wrongValue(column, "whole number");
      return sqlite3_value_int64(value);
    }
    // A whole number that the type can hold.
    template <std::unsigned_integral Number>
    Number number(int column) const {
      const qint64 all = integer(column);
      if (all < 0 || quint64(all) > std::numeric_limits<Number>::max()) [[unlikely]]
        wrongValue(column, "number of its kind");
      return Number(all);
    }
    // From zero to below the limit.
    qint64 below(int column, qint64 limit) const {
      const qint64 number = integer(column);
      if (number < 0 || number >= limit) [[unlikely]]
        wrongValue(column, "number of its kind");
      return number;
    }
    NoteId noteId(int column) const { return NoteId(number<quint32>(column)); }
    double real(int column) const {
      const int type = typeOf(column);
      if (type != SQLITE_FLOAT && type != SQLITE_INTEGER) [[unlikely]]
        wrongValue(column, "number");
      return sqlite3_column_double(statement_.handle_, column);
    }
    bool isNull(int column) const { return typeOf(column) == SQLITE_NULL; }
    // Both are empty for NULL. Valid until the next step.
    QByteArrayView blob(int column) const {
      sqlite3_value* const value = sqlite3_column_value(statement_.handle_, column);
      const int type = sqlite3_value_type(value);
      if (type == SQLITE_NULL) return {};
      if (type != SQLITE_BLOB) [[unlikely]]
        wrongValue(column, "row of bytes");
      return {static_cast<const char*>(sqlite3_value_blob(value)), sqlite3_value_bytes(value)};
    }
    QString text(int column) const;
    // For what only the reader can tell to be wrong.
    [[noreturn]] void wrongValue(int column, const char* wanted) const;

   private:
    int typeOf(int column) const { return sqlite3_column_type(statement_.handle_, column); }
    template <std::integral Number>
    void bind(int place, Number number) {
      check(sqlite3_bind_int64(statement_.handle_, place, qint64(number)));
    }
    void bind(int place, NoteId id) { bind(place, id.value()); }
    void bind(int place, double number) { check(sqlite3_bind_double(statement_.handle_, place, number)); }
    void bind(int place, std::nullptr_t) { check(sqlite3_bind_null(statement_.handle_, place)); }
    void bind(int place, QByteArrayView bytes);
    void bind(int place, const QByteArray& bytes) { bind(place, QByteArrayView(bytes)); }
    void bind(int place, const QString& text);
    void check(int status);

    Statement& statement_;
  };

 private:
  void prepare();

  const Connection& connection_;
  const char* sql_;
  int fault_;
  sqlite3_stmt* handle_ = nullptr;
};

}  // namespace lens
