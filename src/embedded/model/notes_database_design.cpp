// What a database tells of its design: views, forms, agents, profiles, collections of notes.
#include "embedded/model/notes_database.h"
#include "embedded/model/notes_view.h"
#include "embedded/views/design_notes.h"

namespace lens {

Value NotesDatabase::views() {
  QVector<Value> views;
  for (const NoteSummary& summary : store().list(noteclass::View))
    if (const Value view = NotesView::read(database_, summary.id); view.object()) views.push_back(view);
  return Value::array(std::move(views));
}

Value NotesDatabase::view(const Arguments& arguments) {
  const quint32 id = findDesignNote(store(), noteclass::View, arguments[0].text());
  return id == 0 ? nothing() : NotesView::read(database_, id);
}

}  // namespace lens
