// After any changes an index that was brought up to date is the one that would be made anew.
#include <algorithm>
#include <random>

#include "embedded/search/selection.h"
#include "embedded/support/view_fixture.h"

namespace lens::testbed {
namespace {

QVector<Design> designs() {
  ViewColumn apart = separate(u"Tags"_s);
  const QVector<ViewColumn> plain{sorted(u"Subject"_s)};
  return {
      {.columns = plain},
      {.formula = u"SELECT Kind = \"a\" : \"b\""_s,
       .columns = {descending(u"Number"_s), sorted(u"Subject"_s)}},
      {.columns = {category(u"Kind"_s), sorted(u"Subject"_s)}},
      {.columns = {category(u"Tags"_s), descending(u"Number"_s)}, .hierarchy = true},
      {.columns = {apart}},
      {.columns = plain, .hierarchy = true},
      {.formula = u"SELECT Kind = \"a\""_s, .columns = plain, .hierarchy = true},
      {.formula = u"SELECT Kind = \"a\" | @AllDescendants"_s, .columns = plain},
      {.formula = u"SELECT Kind = \"a\" | @AllDescendants"_s, .columns = plain, .hierarchy = true},
      {.formula = u"SELECT Kind = \"a\" | @AllChildren"_s,
       .columns = {category(u"Kind"_s)},
       .hierarchy = true},
      {.formula = u"SELECT Kind = \"a\" & !@IsResponseDoc | @AllChildren"_s, .columns = plain},
  };
}

class ViewProperty : public ViewTest {
 protected:
  int upTo(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random); }
  template <class List>
  auto oneOf(const List& list) {
    return list[upTo(int(list.size()))];
  }

  void fill(Note& note) {
    static const QStringList kinds{u"a"_s, u"b"_s, u"A"_s, u"c\\d"_s, u"c\\e"_s, QString()};
    static const QStringList tags{u"red"_s, u"blue"_s, u"blue\\dark"_s, u"RED"_s, QString()};
    const auto put = [&](const QString& name, const QByteArray& value) {
      if (Item* const item = note.find(name))
        item->value = value;
      else
        note.add(name, itemflag::Summary, value);
    };
    put(u"Subject"_s, textValue(u"s%1"_s.arg(upTo(6))));
    if (upTo(4)) put(u"Kind"_s, textValue(oneOf(kinds)));
    if (upTo(3)) put(u"Tags"_s, textListValue({oneOf(tags), oneOf(tags)}));
    put(u"Number"_s, upTo(5) ? numberValue(upTo(5)) : textValue(u"none"));
    if (upTo(3) && !unids.isEmpty()) note.header.parent = oneOf(unids);
    if (!upTo(6)) note.header.parent = {};
    if (!upTo(20)) put(u"$Name"_s, textValue(upTo(2) ? u"$profile_001p_" : u"none"));
  }

  void someChange() {
    Note note;
    const int what = upTo(12);
    if (what < 4 || ids.isEmpty()) {
      fill(note);
      // A UNID that others may refer to already.
      if (!upTo(3)) unids.push_back(note.header.unid = Unid::create());
      database->notes().save(note);
      ids.push_back(note.header.id);
      unids.push_back(note.header.unid);
    } else if (what < 8) {
      if (!database->notes().read(oneOf(ids), note)) return;
      fill(note);
      if (!upTo(8)) note.header.unid = Unid::create();
      database->notes().save(note);
    } else if (what < 10) {
      const NoteId id = oneOf(ids);
      if (database->notes().read(id, note)) gone.push_back(note);
      database->notes().remove(id, upTo(2) == 0);
    } else if (what == 10 && !gone.isEmpty()) {
      note = oneOf(gone);
      database->notes().saveAsGiven(note);
      ids.push_back(note.header.id);
    } else if (!views.isEmpty() && !upTo(3)) {
      const NoteId id = oneOf(views);
      Note changed = viewNote(u"View"_s, oneOf(designs()));
      if (!database->notes().read(id, note)) return;
      changed.header = note.header;
      database->notes().save(changed);
    }
  }

  QStringList rowsOf(NoteId view) {
    ViewIndex index(*database, view);
    index.refresh();
    QStringList rows;
    for (const ViewLine& line : index.lines())
      rows.append(u"%1 %2 %3 %4 %5"_s.arg(line.note.value())
                      .arg(line.level)
                      .arg(line.column)
                      .arg(shown(line.category), QString::fromLatin1(line.key.toHex())));
    return rows;
  }
  QStringList freshRowsOf(NoteId view) {
    Database::Transaction undone(*database);
    dropViewIndexes(*database);
    return rowsOf(view);
  }
  // What a search with the same formula finds.
  void expectSelected(NoteId view) {
    ViewIndex index(*database, view);
    index.refresh();
    if (index.design().hierarchy) return;
    formula::MachineEnvironment environment;
    QVector<NoteId> found = index.documents();
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, selectDocuments(*database,
                                     {compiledFormula(index.design().selection, environment), environment}));
  }

  std::mt19937 random{20240217};
  QVector<NoteId> ids, views;
  QVector<Unid> unids;
  QVector<Note> gone;
};

TEST_F(ViewProperty, ARefreshedIndexEqualsAFreshOne) {
  for (const Design& design : designs()) views.push_back(addView(design));
  for (int round = 0; round < 50; ++round) {
    Database::Transaction transaction(*database);  // for speed
    for (int i = upTo(14); i >= 0; --i) someChange();
    transaction.commit();
    for (const NoteId view : std::as_const(views)) {
      if (!upTo(3)) continue;  // some indexes wait for more changes
      ASSERT_EQ(rowsOf(view), freshRowsOf(view)) << "round " << round << ", view " << view.value();
      expectSelected(view);
    }
  }
  EXPECT_GT(ids.size(), 100);
}

}  // namespace
}  // namespace lens::testbed
