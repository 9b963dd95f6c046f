// Short ways to documents, items and files for tests that write.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "embedded/model/support/test_workspace.h"

namespace lens::testbed {

// The description of the RuntimeError that the body raises, "" when it raises none.
template <class Body>
QString reasonOf(const Body& body) {
  try {
    body();
  } catch (const RuntimeError& error) {
    return error.description();
  }
  return {};
}

inline Object itemOf(const Object& document, const QString& name) {
  return document.call(QStringLiteral("GetFirstItem"), name).object();
}
inline Value valueOf(const Object& document, const QString& name) {
  return document.call(QStringLiteral("GetItemValue"), name);
}
inline Value listOf(QVector<Value> values) {
  return Value::array(std::move(values));
}
inline void saveForced(const Object& document) {
  document.call(QStringLiteral("Save"), true, false);
}

// The fixture of all that write: a workspace, one document, and what is stored of it.
class Documents : public ::testing::Test {
 protected:
  // What another program reads: the stored note.
  Note stored(NoteId id) const {
    Note note;
    EXPECT_TRUE(t.store->notes().read(id, note));
    return note;
  }
  const Item* storedItem(const Note& note, const QString& name) const { return note.find(name); }
  QStringList namesOf(const Note& note) const {
    QStringList names;
    for (const Item& item : note.items) names.append(item.name);
    return names;
  }
  void sql(const QByteArray& statement) {
    char* fault = nullptr;
    EXPECT_EQ(sqlite3_exec(t.store->handle(), statement.constData(), nullptr, nullptr, &fault), SQLITE_OK)
        << (fault ? fault : "");
    sqlite3_free(fault);
  }
  qint64 number(const char* query) {
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(t.store->handle(), query, -1, &statement, nullptr), SQLITE_OK);
    EXPECT_EQ(sqlite3_step(statement), SQLITE_ROW);
    const qint64 value = sqlite3_column_int64(statement, 0);
    sqlite3_finalize(statement);
    return value;
  }
  QString write(const QString& name, const QByteArray& bytes) const {
    QFile file(t.file(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(bytes), bytes.size());
    return file.fileName();
  }
  QByteArray content(const QString& path) const {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
  }

  TestWorkspace t;
};

}  // namespace lens::testbed
