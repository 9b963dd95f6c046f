#include "inspector/field_viewer.h"

#include <QScreen>

#include "inspector/body_row.h"
#include "notes/literals.h"
#include "shell/row_texts.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

constexpr quint32 kRed = 255;

bool hasType(Continue& step, const NotesItem& item, int type) {
  return step.holds([&] { return item.type() == type; });
}

}  // namespace

FieldViewer::FieldViewer(Form1& form, Globals& state, Host& host, Routines& routines,
                         SessionRoutines& sessions, LowLevelReading& lowLevel, WindowLayout& layout,
                         AgentInfo& agentInfo)
    : form_(form),
      state_(state),
      host_(host),
      routines_(routines),
      sessions_(sessions),
      lowLevel_(lowLevel),
      layout_(layout),
      agentInfo_(agentInfo) {
  form_.fldList->click = [this] { fldList_Click(); };
  form_.cmdidList->click = [this] { cmdidList_Click(); };
}

void FieldViewer::fldList_Click() {
  Continue step;
  step([&] { form_.txtFieldContent->setText(QString()); });
  routines_.SetMousePtr(pointer::Hourglass);
  const QString name = fieldName(form_.fldList->text());
  NotesItem item;
  step([&] { item = state_.gDoc.firstItem(name); });
  showFlags(step, item);
  step([&] { form_.lblSize->setText(sizeText(lowLevel_.ItemSizeOf(name))); });

  const Special special = showSpecialItem(step, name, item);
  if (special == Special::LeaveAtOnce) return;  // the hourglass stays counted
  if (special == Special::No && !state_.gDoc.isNothing()) showItem(step, name, item);
  endOfClick();
}

void FieldViewer::showFlags(Continue& step, const NotesItem& item) {
  const auto show = [&](CheckBox& box, bool (NotesItem::*isSet)() const) {
    box.setValue(step.holds([&] { return (item.*isSet)(); }) ? 1 : 0);
  };
  show(*form_.chkSummary, &NotesItem::isSummary);
  show(*form_.chkEncrypted, &NotesItem::isEncrypted);
  show(*form_.chkSigned, &NotesItem::isSigned);
  show(*form_.chkProtected, &NotesItem::isProtected);
}

// Items whose content the object model does not give.
FieldViewer::Special FieldViewer::showSpecialItem(Continue& step, const QString& name,
                                                  const NotesItem& item) {
  if (name == u"$AssistAction") {
    form_.txtFieldName->setText(name);
    step([&] { form_.txtFieldContent->setText(lowLevel_.DecodeAssistAction(name)); });
    showTypeSentence(step, item);
    return Special::Shown;
  }
  if (name == u"$AssistInfo" || name == u"$FileData") {
    // Without a row of idList there is no design note to read from.
    const QString row = form_.idList->text();
    if (row.isEmpty()) return Special::LeaveAtOnce;
    if (name == u"$AssistInfo") step([&] { agentInfo_.ShowAgentInfo(state_.gDb, designTitle(row)); });
    return Special::Shown;
  }
  return Special::No;
}

void FieldViewer::showItem(Continue& step, const QString& name, const NotesItem& item) {
  QString text = valuesAsText(step, name);
  if (hasType(step, item, itemcode::RichText)) {
    step([&] { text = NotesRichTextItem(item).formattedText(true, 1000); });
  } else if (text.isEmpty() && hasType(step, item, itemcode::MimePart)) {
    text = mimeText(step);
  }
  // The row holds the file name and the formula already.
  const QString upper = upperUnits(name);
  if (upper == u"$FILE" || upper == u"$FORMULA") text = fieldText(form_.fldList->text());

  form_.txtFieldName->setText(name);
  step([&] { form_.txtFieldContent->setText(widenLineFeeds(text)); });
  if (form_.width() >= form_.screen()->size().width())
    step([&] { layout_.ResizeOneControl(u"txtFieldContent"_s); });
  markSearchText(step);
  showTypeSentence(step, item);
}

// Several values stand one to a line, each with a line end; a single one stands as it is.
QString FieldViewer::valuesAsText(Continue& step, const QString& name) {
  QString text;
  Value values;
  step([&] { values = state_.gDoc.itemValue(name); });
  if (step.holds([&] { return values.upperBound() >= 1; })) {
    for (const Value& value : values.values())
      step([&] { text += textOf(value, host_.regional()) + u"\r\n"; });
  } else {
    step([&] { text = textOf(values.isArray() ? values.at(0) : values, host_.regional()); });
  }
  return text;
}

// The content of the document's first entity, whatever item was clicked; the parts of a multipart
// follow each other with nothing between.
QString FieldViewer::mimeText(Continue& step) {
  QString text;
  step([&] { sessions_.ensureSession(); });
  step([&] { state_.gSession.setConvertMime(false); });
  NotesMIMEEntity entity;
  step([&] { entity = state_.gDoc.mimeEntity(); });
  if (entity) {
    const bool multipart = step.holds([&] { return entity.contentType() == u"multipart"_s; });
    if (multipart) {
      NotesMIMEEntity part;
      step([&] { part = entity.firstChildEntity(); });
      while (part) {
        step([&] { text += part.contentAsText(); });
        NotesMIMEEntity next;
        step([&] { next = part.nextSibling(); });
        part = next;
      }
    } else {
      step([&] { text = entity.contentAsText(); });
    }
  }
  step([&] { state_.gSession.setConvertMime(true); });
  return text;
}

// Marks every hit in red. Positions are 16 bits wide: a hit behind 32767 ends the marking.
void FieldViewer::markSearchText(Continue& step) {
  QString wanted = form_.txtSearch->text();
  if (wanted.isEmpty()) return;
  QString content = form_.txtFieldContent->text();
  if (form_.chkCase->value() != 1) {
    content = upperUnits(content);
    wanted = upperUnits(wanted);
  }
  step([&] {
    Int16 position = nextHit(content, wanted, 0);
    while (position > 0) {
      form_.txtFieldContent->setSelStart(position - 1);
      form_.txtFieldContent->setSelLength(int(wanted.size()));
      form_.txtFieldContent->setSelColor(kRed);
      const Int16 from(position + wanted.size());
      position = nextHit(content, wanted, from - 1);
    }
  });
}

// 1-based position of the next hit from a 0-based place on, 0 when there is none.
Int16 FieldViewer::nextHit(const QString& content, const QString& wanted, qsizetype from) const {
  return Int16(content.indexOf(wanted, from) + 1);
}

// A type without a row in the table leaves the box as it was.
void FieldViewer::showTypeSentence(Continue& step, const NotesItem& item) {
  step([&] { form_.cmbFieldType->setText(state_.gDocTypes.item(item.typeText())); });
}

void FieldViewer::endOfClick() {
  form_.txtFieldContent->setSelStart(1);
  form_.txtFieldContent->setSelLength(0);
  state_.gRTItem.release();
  routines_.SetMousePtr(pointer::Default);
}

// A failure leaves the hourglass counted.
void FieldViewer::cmdidList_Click() {
  trapped(host_, {u"cmdidList_Click"_s}, [this] {
    if (state_.gDb.isNothing()) return;
    form_.fldList->clear();
    const QString row = form_.idList->text();
    if (row.isEmpty()) return;
    routines_.SetMousePtr(pointer::Hourglass);
    const CollectionRow parts = collectionRow(row);
    takeDocument(parts.id);
    if (!state_.gDoc.isNothing()) listItems(parts.designName);
    form_.idList->refresh();
    routines_.SetMousePtr(pointer::Default);
    showBody();
  });
}

// Rows of profiles have no ID of 8 digits behind them in older lists; their document is set already.
void FieldViewer::takeDocument(const QString& id) {
  if (id.size() != 8) return;
  state_.gDoc.release();
  state_.gDoc = state_.gDb.documentById(id);
}

void FieldViewer::listItems(const QString& designName) {
  form_.NotesUID->setText(state_.gDoc.universalId());
  const Value items = state_.gDoc.items();
  QStringList names;
  qsizetype width = 0;
  for (const Value& item : items.values()) {
    names += NotesItem(item.object()).name();
    width = qMax(width, names.last().size() + kNameEnd.size());
  }
  const bool listsViews = form_.lstDesigns->text() == u"SELECTVIEWS";
  for (int i = 0; i < names.size(); ++i) {
    const NotesItem item = items.at(i).object();
    QString text = firstValueText(item, names[i]);
    if (listsViews && upperUnits(names[i]) == u"$FORMULA")
      text = showSelectionFormula(item, names[i], designName);
    form_.fldList->addItem(fieldRow(names[i], width, text));
  }
}

QString FieldViewer::firstValueText(const NotesItem& item, const QString& name) const {
  const Value values = state_.gDoc.itemValue(name);
  if (values.typeName() == u"Empty") return {};
  // Several attachments share one name; each row shows its own.
  const bool file = upperUnits(name) == u"$FILE";
  return textOf((file ? item.values() : values).at(0), host_.regional());
}

QString FieldViewer::showSelectionFormula(const NotesItem& item, const QString& name,
                                          const QString& designName) {
  const NotesView view = state_.gDb.view(designName);
  const QString formula = view.selectionFormula();
  form_.txtFieldContent->setText(widenLineFeeds(formula));
  form_.txtFieldName->setText(name);
  form_.chkSummary->setValue(item.isSummary() ? 1 : 0);
  form_.chkEncrypted->setValue(item.isEncrypted() ? 1 : 0);
  form_.chkSigned->setValue(item.isSigned() ? 1 : 0);
  form_.chkProtected->setValue(item.isProtected() ? 1 : 0);
  form_.lblSize->setText(sizeText(lowLevel_.ItemSizeOf(u"$FORMULA"_s)));
  return formula;
}

void FieldViewer::showBody() {
  const int body = firstBodyRow(*form_.fldList);
  if (body < 0) return;
  form_.fldList->setSelected(body, true);
  form_.txtSearch->setText(routines_.LeftFrom(form_.idList->text(), u" "_s));
  form_.chkCase->setValue(0);
  form_.fldList->raiseClick();
}

}  // namespace lens
