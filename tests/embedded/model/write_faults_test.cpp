// Every write of a change fails once, at every place where SQLite can be stopped: the stored notes are as
// they were before or as they are after, and the next try goes through.
#include <functional>

#include "embedded/model/support/test_documents.h"
#include "support/every_fault.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

// Stops the statement that runs at the n-th look. A look right behind the beginning or the end of a
// transaction is passed over: no disk fails there, the transaction has begun or ended by then.
class Stopper {
 public:
  Stopper(Database& database, int at) : database_(database), left_(at) {
    sqlite3_progress_handler(
        database_.handle(), 3, [](void* self) { return static_cast<Stopper*>(self)->look(); }, this);
  }
  ~Stopper() { sqlite3_progress_handler(database_.handle(), 0, nullptr, nullptr); }
  bool stopped() const { return stopped_; }

 private:
  int look() {
    const int outside = sqlite3_get_autocommit(database_.handle());
    const bool border = outside != outside_;
    outside_ = outside;
    if (stopped_ || --left_ > 0 || border) return 0;
    stopped_ = true;
    return 1;
  }
  Database& database_;
  int left_;
  int outside_ = 1;
  bool stopped_ = false;
};

struct WriteFaults : Documents {
  WriteFaults() {
    RichText body;
    body.appendText(u"the old name"_s);
    for (int i = 0; i < 3; ++i)
      ids.push_back(t.add({{u"Form"_s, textValue(u"Memo")},
                           {u"Body"_s, rawValue(itemtype::RichText, body.toBytes()), 0},
                           {u"Padding"_s, textValue(QString(20'000, u'x'))}}));
    file = write(u"a.bin"_s, QByteArray(600'000, 'f'));
  }
  // What everybody else sees.
  QByteArray state() {
    QByteArray seen;
    t.store->notes().scan(0x7FFF, [&](const Note& note) {
      seen += QByteArray::number(note.header.id.value()) + ':';
      for (const Item& item : note.items) {
        FileObject attached;
        seen += item.name.toUtf8() + '=' + QByteArray::number(qHash(item.value));
        if (item.type() == itemtype::Object && readFileObject(item.data(), attached))
          seen += '@' + QByteArray::number(t.store->objects().size(attached.objectId));
      }
      return true;
    });
    return seen;
  }
  // The change is made anew from the stored state each time and undone after it went through.
  void stopEverywhere(const std::function<void()>& change) {
    int failure = 0;
    QByteArray before;
    const auto stopAt = [&](int at) {
      before = state();
      const Stopper stopper(*t.store, at);
      failure = raised(change);
      return stopper.stopped();
    };
    const auto check = [&](int) {
      // A stop in the cleaning up behind a change that was made is no failure of it.
      EXPECT_EQ(state() != before, failure == 0);
      EXPECT_NE(failure, 4000);
    };
    const int stops = withEveryFault(stopAt, check, [](int at) { return at + qMax(1, at / 12); });
    EXPECT_GT(stops, 5);
    EXPECT_EQ(failure, 0) << reasonOf(change).toStdString();
    EXPECT_NE(state(), before);
    EXPECT_EQ(integrity(), "ok");
  }
  QByteArray integrity() {
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(t.store->handle(), "PRAGMA integrity_check", -1, &statement, nullptr),
              SQLITE_OK);
    EXPECT_EQ(sqlite3_step(statement), SQLITE_ROW);
    const QByteArray told = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
    sqlite3_finalize(statement);
    return told;
  }
  QVector<NoteId> ids;
  QString file;
};

}  // namespace

TEST_F(WriteFaults, ASavedChangeIsWholeOrNotThere) {
  int round = 0;
  stopEverywhere([&] {
    const Object document = t.document(ids[0]);
    document.call(u"REPLACEITEMVALUE"_s, u"Form"_s, QString::number(++round));
    document.call(u"REPLACEITEMVALUE"_s, u"Padding"_s, QString(30'000, QChar(u'a' + char16_t(round % 26))));
    itemOf(document, u"Body"_s).call(u"APPENDTEXT"_s, u"more"_s);
    saveForced(document);
  });
}

TEST_F(WriteFaults, AnAttachmentIsThereWithItsDocumentOrNotAtAll) {
  stopEverywhere([&] {
    const Object document = t.document(ids[1]);
    itemOf(document, u"Body"_s).call(u"EMBEDOBJECT"_s, 1454, u""_s, file);
    saveForced(document);
  });
}

TEST_F(WriteFaults, ACopyIsWholeOrNotThere) {
  {
    const Object document = t.document(ids[2]);
    itemOf(document, u"Body"_s).call(u"EMBEDOBJECT"_s, 1454, u""_s, file);
    saveForced(document);
  }
  stopEverywhere([&] { t.document(ids[2]).call(u"COPYTODATABASE"_s, t.mail()); });
}

TEST_F(WriteFaults, AFailedCommitChangesNothing) {
  const Object document = t.document(ids[0]);
  document.call(u"REPLACEITEMVALUE"_s, u"Form"_s, u"Letter"_s);
  const QByteArray before = state();
  sqlite3_commit_hook(
      t.store->handle(), [](void*) { return 1; }, nullptr);
  EXPECT_GT(raised([&] { saveForced(document); }), 0);
  EXPECT_GT(raised([&] { document.call(u"Remove"_s, true); }), 0);
  EXPECT_GT(raised([&] { document.call(u"COPYTODATABASE"_s, t.mail()); }), 0);
  sqlite3_commit_hook(t.store->handle(), nullptr, nullptr);
  EXPECT_EQ(state(), before);
  // The object is as usable as before.
  saveForced(document);
  EXPECT_EQ(valueOf(t.document(ids[0]), u"Form"_s), listOf({u"Letter"}));
}

TEST_F(WriteFaults, AFullDatabaseKeepsWhatItHas) {
  sql("PRAGMA max_page_count = " + QByteArray::number(number("PRAGMA page_count") + 4));
  const Object document = t.document(ids[0]);
  document.call(u"REPLACEITEMVALUE"_s, u"Padding"_s, QString(500'000, u'y'));
  const QByteArray before = state();
  const auto save = [&] { saveForced(document); };
  EXPECT_EQ(raised(save), enginefault::NotSaved);
  EXPECT_TRUE(reasonOf(save).contains(u"mail.nsf"_s));
  EXPECT_EQ(state(), before);
  sql("PRAGMA max_page_count = 1000000");
  saveForced(document);
  EXPECT_EQ(valueOf(t.document(ids[0]), u"Padding"_s).at(0).text().size(), 500'000);
}
