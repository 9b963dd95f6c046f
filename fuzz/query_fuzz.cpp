// Full-text queries from the fuzzer: each is answered or refused as a mistake with its place, and never
// reaches the index as anything but words.
#include <QTemporaryDir>

#include "check.h"
#include "embedded/search/full_text.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

std::shared_ptr<Database> indexedDatabase() {
  static const QTemporaryDir directory;
  const auto database = Database::create(directory.filePath(u"words.nsf"_s), {});
  for (const QString& subject : {u"pump house"_s, u"harbour dues"_s, u"r\u00E9sum\u00E9 \u4E2D\u6587"_s}) {
    Note note;
    note.add(u"Subject"_s, itemflag::Summary, textValue(subject));
    note.add(u"Amount"_s, itemflag::Summary, numberValue(double(subject.size())));
    database->notes().save(note);
  }
  createFullTextIndex(*database);
  return database;
}

void answer(Database& database, QStringView query) {
  try {
    const QVector<NoteId> found = fullTextSearch(database, query, 0);
    check(found.size() <= 3, "A document was found twice.", query);
    check(fullTextSearch(database, query, 1).size() == qMin<qsizetype>(1, found.size()),
          "The limit was not kept.", query);
  } catch (const RuntimeError& error) {
    check(error.number() == kQueryError, qPrintable(error.description()), query);
    check(error.description().contains(u"(character "_s), "The mistake has no place.", query);
  }
}

// Every tree can be shown, as messages need it.
void checkShown(QStringView query) {
  QString shown;
  try {
    shown = shownQuery(parseQuery(query));
  } catch (const RuntimeError&) {
    return;
  }
  check(!shown.isEmpty(), "A tree shows nothing.", query);
}

}  // namespace
}  // namespace lens

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  static const std::shared_ptr<lens::Database> database = lens::indexedDatabase();
  const QString query =
      QString::fromUtf8(reinterpret_cast<const char*>(data), qMin<qsizetype>(qsizetype(size), 20'000));
  lens::checkShown(query);
  lens::answer(*database, query);
  return 0;
}
