// A database with views made from columns, and what they show as text.
#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "embedded/dxl/view_elements.h"
#include "embedded/format/source_formula.h"
#include "embedded/store/database.h"
#include "embedded/views/view_index.h"
#include "embedded/views/view_lookup.h"

namespace lens::testbed {
using namespace Qt::StringLiterals;

struct Design {
  QString formula = u"SELECT @All"_s;
  QVector<ViewColumn> columns = {};
  bool hierarchy = false;
  QString flags = {};
};

inline ViewColumn column(const QString& item, bool sorted = false, bool descending = false) {
  ViewColumn made;
  made.item = item;
  made.sorted = sorted;
  made.descending = descending;
  return made;
}
inline ViewColumn sorted(const QString& item) {
  return column(item, true);
}
inline ViewColumn descending(const QString& item) {
  return column(item, true, true);
}
inline ViewColumn category(const QString& item) {
  ViewColumn made = sorted(item);
  made.categorized = true;
  return made;
}
inline ViewColumn separate(const QString& item) {
  ViewColumn made = sorted(item);
  made.separateValues = true;
  return made;
}
inline ViewColumn computed(ViewColumn column, const QString& formula) {
  column.formula = sourceFormula(formula);
  return column;
}

inline Note viewNote(const QString& title, const Design& design) {
  Note note;
  note.header.noteClass = noteclass::View;
  note.add(u"$TITLE"_s, itemflag::Summary, textValue(title));
  if (!design.flags.isEmpty()) note.add(u"$Flags"_s, itemflag::Summary, textValue(design.flags));
  note.add(u"$Formula"_s, itemflag::Summary, sourceFormulaValue(design.formula));
  note.add(u"$ViewFormat"_s, itemflag::Summary, viewFormatValue(design.columns, design.hierarchy));
  note.add(u"$Collation"_s, itemflag::Summary, collationValue(design.columns));
  return note;
}

inline QString shown(const formula::Value& value) {
  if (value.isNumber()) return QString::number(value.number());
  return value.isText() ? value.text().toString() : u"?"_s;
}

class ViewTest : public ::testing::Test {
 protected:
  ViewTest() { database = Database::create(path(), {}); }
  QString path() const { return directory.filePath(u"views.nsf"_s); }

  NoteId addView(const Design& design, const QString& title = u"View"_s) {
    Note note = viewNote(title, design);
    database->notes().save(note);
    return note.header.id;
  }
  NoteId add(const QString& subject, const QVector<std::pair<QString, QByteArray>>& items = {},
             const Unid& parent = {}) {
    Note note;
    note.header.parent = parent;
    note.add(u"Subject"_s, itemflag::Summary, textValue(subject));
    for (const auto& [name, value] : items) note.add(name, itemflag::Summary, value);
    database->notes().save(note);
    return note.header.id;
  }
  Note read(NoteId id) const {
    Note note;
    EXPECT_TRUE(database->notes().read(id, note));
    return note;
  }
  // A column of the view as formulas read it.
  QStringList columnOf(NoteId view, int column) {
    ViewIndex index(*database, view);
    index.refresh();
    const formula::Value value = viewColumn(index, column, regional);
    QStringList texts;
    for (qsizetype i = 0; i < value.count(); ++i) texts.append(shown(value.element(i)));
    return texts;
  }
  Unid unidOf(NoteId id) const { return read(id).header.unid; }
  void change(NoteId id, const QString& name, const QByteArray& value) {
    Note note = read(id);
    if (Item* const item = note.find(name))
      item->value = value;
    else
      note.add(name, itemflag::Summary, value);
    database->notes().save(note);
  }
  QString subjectOf(const Database& from, NoteId id) const {
    Note note;
    return from.notes().read(id, note) ? note.text(u"Subject") : u"(gone)"_s;
  }
  // Categories in brackets, ">" for each level above the line.
  QString linesOf(Database& from, NoteId view) const {
    ViewIndex index(from, view);
    index.refresh();
    QStringList texts;
    for (const ViewLine& line : index.lines()) {
      const QString text =
          line.note.isNull() ? u'[' + shown(line.category) + u']' : subjectOf(from, line.note);
      texts.append(QString(line.level, u'>') + text);
    }
    EXPECT_EQ(index.count(), texts.size());
    return texts.join(u' ');
  }
  QString lines(NoteId view) const { return linesOf(*database, view); }

  QTemporaryDir directory;
  const Regional regional{QLocale(QLocale::German, QLocale::Germany)};
  std::shared_ptr<Database> database;
};

}  // namespace lens::testbed

namespace lens {
inline std::ostream& operator<<(std::ostream& out, const QStringList& texts) {
  return out << texts.join(u'|').toStdString();
}
}  // namespace lens
