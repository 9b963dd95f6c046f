#include "editing/search_replace.h"

#include <QShortcut>

#include "controls/keys.h"
#include "editing/place_replacement.h"
#include "editing/reload_box.h"
#include "editing/rich_text_replacement.h"
#include "notes/literals.h"
#include "shell/error_modes.h"
#include "shell/exact_texts.h"
#include "shell/row_texts.h"

namespace lens {

SearchReplace::SearchReplace(Desk& desk) : desk_(desk) {
  desk_.form.cmdSearch->click = [this] { cmdSearch_Click(); };
  desk_.form.txtSearch->keyDown = [this](int keyCode, int shift) { txtSearch_KeyDown(keyCode, shift); };
  desk_.form.cmdReplace->click = [this] { cmdReplace_Click(); };
  desk_.form.cmdSearchReplaceAll->click = [this] { cmdSearchReplaceAll_Click(); };
  auto* find = new QShortcut(QKeySequence::Find, &desk_.form);
  QObject::connect(find, &QShortcut::activated, desk_.form.txtSearch, [box = desk_.form.txtSearch] {
    box->setFocus(Qt::ShortcutFocusReason);
    box->selectAll();
  });
}

void SearchReplace::cmdSearch_Click() {
  trapped(desk_.host, {u"cmdSearch_Click"_s}, [this] {
    // Without a hit below a start further down it goes once more from the top.
    for (;;) {
      if (desk_.form.txtSearch->text().isEmpty()) return;
      Int16 row = nextSearchIndex_;
      const Found found = desk_.form.chkProfile->value() != 0 ? searchCollection(row) : searchItems(row);
      if (found == Found::Yes || nextSearchIndex_ < 1) {
        nextSearchIndex_ = row + 1;
        return;
      }
      nextSearchIndex_ = 0;
    }
  });
}

// From `row` on, which is left at the hit, or behind the last row. Showing the document of a hit may
// change the search text and the case box.
SearchReplace::Found SearchReplace::searchCollection(Int16& row) {
  const int count = desk_.form.idList->listCount();
  for (; row < count; row += 1) {
    if (!holdsSearchText(desk_.form.idList->list(row))) continue;
    desk_.form.idList->setSelected(row, true);
    desk_.form.idList->raiseDblClick();
    return Found::Yes;
  }
  return Found::No;
}

SearchReplace::Found SearchReplace::searchItems(Int16& row) {
  const int count = desk_.form.fldList->listCount();
  if (nextSearchIndex_ > count - 1) nextSearchIndex_ = 0;
  for (row = nextSearchIndex_; row < count; row += 1) {
    const QString entry = desk_.form.fldList->list(row);
    if (!holdsSearchText(entry) && !holdsSearchText(joinedValues(requiredFieldName(entry)))) continue;
    desk_.form.fldList->setSelected(row, true);
    return Found::Yes;
  }
  return Found::No;
}

// A checked box asks for exact case, an empty and a grey one do not. The box is read at each comparison.
bool SearchReplace::holdsSearchText(const QString& text) const {
  const bool exact = desk_.form.chkCase->value() == 1;
  return text.contains(desk_.form.txtSearch->text(), exact ? Qt::CaseSensitive : Qt::CaseInsensitive);
}

// All values without anything between them, so that a text across two of them is found.
QString SearchReplace::joinedValues(const QString& itemName) const {
  const Value values = desk_.state.gDoc.itemValue(itemName);
  if (values.typeName() == u"Empty") return {};
  if (values.upperBound() < 1) return textOf(values.at(0), desk_.host.regional());
  QString text;
  for (const Value& value : values.values()) text += textOf(value, desk_.host.regional());
  return text;
}

void SearchReplace::txtSearch_KeyDown(int keyCode, int) {
  trapped(desk_.host, {u"txtSearch_KeyDown"_s}, [&] {
    if (keyCode == key::Enter) cmdSearch_Click();
  });
}

// In the box only; exact case whatever the case box says.
void SearchReplace::cmdReplace_Click() {
  // A hit that the viewer marked must not colour the new text.
  desk_.form.txtFieldContent->setSelColor(0);
  desk_.form.txtFieldContent->setText(desk_.routines.ReplaceAll(
      desk_.form.txtFieldContent->text(), desk_.form.txtSearch->text(), desk_.form.txtReplace->text()));
  desk_.form.txtFieldContent->refresh();
}

void SearchReplace::cmdSearchReplaceAll_Click() {
  try {
    if (desk_.form.txtSearch->text().isEmpty() || desk_.form.txtReplace->text().isEmpty()) {
      desk_.host.messageBox(exact::kNoSearchTexts, box::Information, u"Replace all fields"_s);
      return;
    }
    bool changed = false;
    const Value items = desk_.state.gDoc.items();
    for (const Value& item : items.values()) changed = replaceInItem(NotesItem(item.object())) || changed;
    if (!changed) return;
    desk_.state.gDoc.save(true, false, true);
    desk_.state.gDoc.release();
    // Whatever the window showed: the document that is open in the client.
    desk_.form.cmdGetDoc->raiseClick();
  } catch (const RuntimeError& error) {
    showReloadBox(desk_.host, error, exact::kReplaceAllTitle);
  }
}

// True when the item was changed. Rich text is searched without regard to case, anything else exactly.
bool SearchReplace::replaceInItem(const NotesItem& item) {
  const int type = item.typeCode();
  const Replacement replacement{desk_.form.txtSearch->text(), desk_.form.txtReplace->text()};
  if (type == itemcode::RichText) {
    Statements step;
    return replaceInRichText(step, NotesRichTextItem(item), replacement.search, replacement.replace);
  }
  const Value stored = item.values();
  if (!stored.isArray()) return false;
  QVector<Value> values = stored.values();
  if (!replaceInValues(values, Places::All, type, replacement, desk_.host.regional())) return false;
  desk_.state.gDoc.replaceItemValue(item.name(), Value::array(values));
  return true;
}

}  // namespace lens
