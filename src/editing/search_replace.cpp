#include "editing/search_replace.h"

#include "controls/keys.h"
#include "editing/place_replacement.h"
#include "editing/reload_box.h"
#include "editing/rich_text_replacement.h"
#include "notes/literals.h"
#include "shell/error_modes.h"
#include "shell/exact_texts.h"
#include "shell/row_texts.h"

namespace lens {

SearchReplace::SearchReplace(Form1& form, Globals& state, Host& host, Routines& routines)
    : form_(form), state_(state), host_(host), routines_(routines) {
  form_.cmdSearch->click = [this] { cmdSearch_Click(); };
  form_.txtSearch->keyDown = [this](int keyCode, int shift) { txtSearch_KeyDown(keyCode, shift); };
  form_.cmdReplace->click = [this] { cmdReplace_Click(); };
  form_.cmdSearchReplaceAll->click = [this] { cmdSearchReplaceAll_Click(); };
}

void SearchReplace::cmdSearch_Click() {
  trapped(host_, {u"cmdSearch_Click"_s}, [this] {
    // Without a hit below a start further down it goes once more from the top.
    for (;;) {
      if (form_.txtSearch->text().isEmpty()) return;
      Int16 row = nextSearchIndex_;
      const Found found = form_.chkProfile->value() != 0 ? searchCollection(row) : searchItems(row);
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
  const int count = form_.idList->listCount();
  for (; row < count; row += 1) {
    if (!holdsSearchText(form_.idList->list(row))) continue;
    form_.idList->setSelected(row, true);
    form_.idList->raiseDblClick();
    return Found::Yes;
  }
  return Found::No;
}

SearchReplace::Found SearchReplace::searchItems(Int16& row) {
  const int count = form_.fldList->listCount();
  if (nextSearchIndex_ > count - 1) nextSearchIndex_ = 0;
  for (row = nextSearchIndex_; row < count; row += 1) {
    const QString entry = form_.fldList->list(row);
    if (!holdsSearchText(entry) && !holdsSearchText(joinedValues(requiredFieldName(entry)))) continue;
    form_.fldList->setSelected(row, true);
    return Found::Yes;
  }
  return Found::No;
}

// A checked box asks for exact case, an empty and a grey one do not. The box is read at each comparison.
bool SearchReplace::holdsSearchText(const QString& text) const {
  const bool exact = form_.chkCase->value() == 1;
  return text.contains(form_.txtSearch->text(), exact ? Qt::CaseSensitive : Qt::CaseInsensitive);
}

// All values without anything between them, so that a text across two of them is found.
QString SearchReplace::joinedValues(const QString& itemName) const {
  const Value values = state_.gDoc.itemValue(itemName);
  if (values.typeName() == u"Empty") return {};
  if (values.upperBound() < 1) return textOf(values.at(0), host_.regional());
  QString text;
  for (const Value& value : values.values()) text += textOf(value, host_.regional());
  return text;
}

void SearchReplace::txtSearch_KeyDown(int keyCode, int) {
  trapped(host_, {u"txtSearch_KeyDown"_s}, [&] {
    if (keyCode == key::Enter) cmdSearch_Click();
  });
}

// In the box only; exact case whatever the case box says.
void SearchReplace::cmdReplace_Click() {
  // A hit that the viewer marked must not colour the new text.
  form_.txtFieldContent->setSelColor(0);
  form_.txtFieldContent->setText(
      routines_.ReplaceAll(form_.txtFieldContent->text(), form_.txtSearch->text(), form_.txtReplace->text()));
  form_.txtFieldContent->refresh();
}

void SearchReplace::cmdSearchReplaceAll_Click() {
  try {
    if (form_.txtSearch->text().isEmpty() || form_.txtReplace->text().isEmpty()) {
      host_.messageBox(exact::kNoSearchTexts, box::Information, u"Replace all fields"_s);
      return;
    }
    bool changed = false;
    const Value items = state_.gDoc.items();
    for (const Value& item : items.values()) changed = replaceInItem(NotesItem(item.object())) || changed;
    if (!changed) return;
    state_.gDoc.save(true, false, true);
    state_.gDoc.release();
    // Whatever the window showed: the document that is open in the client.
    form_.cmdGetDoc->raiseClick();
  } catch (const RuntimeError& error) {
    showReloadBox(host_, error, exact::kReplaceAllTitle);
  }
}

// True when the item was changed. Rich text is searched without regard to case, anything else exactly.
bool SearchReplace::replaceInItem(const NotesItem& item) {
  const int type = item.typeCode();
  const Replacement replacement{form_.txtSearch->text(), form_.txtReplace->text()};
  if (type == itemcode::RichText) {
    Statements step;
    return replaceInRichText(step, NotesRichTextItem(item), replacement.search, replacement.replace);
  }
  const Value stored = item.values();
  if (!stored.isArray()) return false;
  QVector<Value> values = stored.values();
  if (!replaceInValues(values, Places::All, type, replacement, host_.regional())) return false;
  state_.gDoc.replaceItemValue(item.name(), Value::array(values));
  return true;
}

}  // namespace lens
