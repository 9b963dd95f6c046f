#include "inspector/field_viewer.h"

#include <QScreen>
#include <utility>

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

FieldViewer::FieldViewer(Desk& desk, LowLevelReading& lowLevel, AgentInfo& agentInfo)
    : desk_(desk), lowLevel_(lowLevel), agentInfo_(agentInfo) {
  desk_.form.fldList->click = [this] { fldList_Click(); };
  desk_.form.cmdidList->click = [this] { cmdidList_Click(); };
}

void FieldViewer::fldList_Click() {
  Continue step;
  step([&] { desk_.form.txtFieldContent->setText(QString()); });
  desk_.routines.SetMousePtr(pointer::Hourglass);
  const QString name = fieldName(desk_.form.fldList->text());
  NotesItem item;
  step([&] { item = desk_.state.gDoc.firstItem(name); });
  showFlags(step, item);
  step([&] { desk_.form.lblSize->setText(sizeText(lowLevel_.ItemSizeOf(name))); });

  const Special special = showSpecialItem(step, name, item);
  if (special == Special::LeaveAtOnce) return;  // the hourglass stays counted
  if (special == Special::No && !desk_.state.gDoc.isNothing()) showItem(step, name, item);
  endOfClick();
}

void FieldViewer::showFlags(Continue& step, const NotesItem& item) {
  const auto show = [&](CheckBox& box, bool (NotesItem::*isSet)() const) {
    box.setValue(step.holds([&] { return (item.*isSet)(); }) ? 1 : 0);
  };
  show(*desk_.form.chkSummary, &NotesItem::isSummary);
  show(*desk_.form.chkEncrypted, &NotesItem::isEncrypted);
  show(*desk_.form.chkSigned, &NotesItem::isSigned);
  show(*desk_.form.chkProtected, &NotesItem::isProtected);
}

// Items whose content the object model does not give.
FieldViewer::Special FieldViewer::showSpecialItem(Continue& step, const QString& name,
                                                  const NotesItem& item) {
  if (name == u"$AssistAction") {
    desk_.form.txtFieldName->setText(name);
    step([&] { desk_.form.txtFieldContent->setText(lowLevel_.DecodeAssistAction(name)); });
    showTypeSentence(step, item);
    return Special::Shown;
  }
  if (name == u"$AssistInfo" || name == u"$FileData") {
    // Without a row of idList there is no design note to read from.
    const QString row = desk_.form.idList->text();
    if (row.isEmpty()) return Special::LeaveAtOnce;
    if (name == u"$AssistInfo") step([&] { agentInfo_.ShowAgentInfo(desk_.state.gDb, designTitle(row)); });
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
  if (upper == u"$FILE" || upper == u"$FORMULA") text = fieldText(desk_.form.fldList->text());

  desk_.form.txtFieldName->setText(name);
  step([&] { desk_.form.txtFieldContent->setText(widenLineFeeds(std::move(text))); });
  if (desk_.form.width() >= desk_.form.screen()->size().width())
    step([&] { desk_.layout.ResizeOneControl(u"txtFieldContent"_s); });
  markSearchText(step);
  showTypeSentence(step, item);
}

// Several values stand one to a line, each with a line end; a single one stands as it is.
QString FieldViewer::valuesAsText(Continue& step, const QString& name) {
  QString text;
  Value values;
  step([&] { values = desk_.state.gDoc.itemValue(name); });
  if (step.holds([&] { return values.upperBound() >= 1; })) {
    for (const Value& value : values.values())
      step([&] { text += textOf(value, desk_.host.regional()) + u"\r\n"; });
  } else {
    step([&] { text = textOf(values.isArray() ? values.at(0) : values, desk_.host.regional()); });
  }
  return text;
}

// The content of the document's first entity, whatever item was clicked; the parts of a multipart
// follow each other with nothing between.
QString FieldViewer::mimeText(Continue& step) {
  QString text;
  step([&] { desk_.sessions.ensureSession(); });
  step([&] { desk_.state.gSession.setConvertMime(false); });
  NotesMIMEEntity entity;
  step([&] { entity = desk_.state.gDoc.mimeEntity(); });
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
  step([&] { desk_.state.gSession.setConvertMime(true); });
  return text;
}

// Marks every hit in red. Positions are 16 bits wide: a hit behind 32767 ends the marking.
void FieldViewer::markSearchText(Continue& step) {
  QString wanted = desk_.form.txtSearch->text();
  if (wanted.isEmpty()) return;
  QString content = desk_.form.txtFieldContent->text();
  if (desk_.form.chkCase->value() != 1) {
    content = upperUnits(content);
    wanted = upperUnits(wanted);
  }
  step([&] {
    Int16 position = nextHit(content, wanted, 0);
    while (position > 0) {
      desk_.form.txtFieldContent->setSelStart(position - 1);
      desk_.form.txtFieldContent->setSelLength(int(wanted.size()));
      desk_.form.txtFieldContent->setSelColor(kRed);
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
  step([&] { desk_.form.cmbFieldType->setText(desk_.state.gDocTypes.item(item.typeText())); });
}

void FieldViewer::endOfClick() {
  desk_.form.txtFieldContent->setSelStart(1);
  desk_.form.txtFieldContent->setSelLength(0);
  desk_.state.gRTItem.release();
  desk_.routines.SetMousePtr(pointer::Default);
}

// A failure leaves the hourglass counted.
void FieldViewer::cmdidList_Click() {
  trapped(desk_.host, {u"cmdidList_Click"_s}, [this] {
    if (desk_.state.gDb.isNothing()) return;
    desk_.form.fldList->clear();
    const QString row = desk_.form.idList->text();
    if (row.isEmpty()) return;
    desk_.routines.SetMousePtr(pointer::Hourglass);
    const CollectionRow parts = collectionRow(row);
    takeDocument(parts.id);
    if (!desk_.state.gDoc.isNothing()) listItems(parts.designName);
    desk_.form.idList->refresh();
    desk_.routines.SetMousePtr(pointer::Default);
    showBody();
  });
}

// Rows of profiles have no ID of 8 digits behind them in older lists; their document is set already.
void FieldViewer::takeDocument(const QString& id) {
  if (id.size() != 8) return;
  desk_.state.gDoc.release();
  desk_.state.gDoc = desk_.state.gDb.documentById(id);
}

void FieldViewer::listItems(const QString& designName) {
  desk_.form.NotesUID->setText(desk_.state.gDoc.universalId());
  const Value items = desk_.state.gDoc.items();
  QStringList names;
  qsizetype width = 0;
  for (const Value& item : items.values()) {
    names += NotesItem(item.object()).name();
    width = qMax(width, names.last().size() + kNameEnd.size());
  }
  const bool listsViews = desk_.form.lstDesigns->text() == u"SELECTVIEWS";
  for (int i = 0; i < names.size(); ++i) {
    const NotesItem item = items.at(i).object();
    QString text = firstValueText(item, names[i]);
    if (listsViews && upperUnits(names[i]) == u"$FORMULA")
      text = showSelectionFormula(item, names[i], designName);
    desk_.form.fldList->addItem(fieldRow(names[i], width, text));
  }
}

QString FieldViewer::firstValueText(const NotesItem& item, const QString& name) const {
  const Value values = desk_.state.gDoc.itemValue(name);
  if (values.typeName() == u"Empty") return {};
  // Several attachments share one name; each row shows its own.
  const bool file = upperUnits(name) == u"$FILE";
  return textOf((file ? item.values() : values).at(0), desk_.host.regional());
}

QString FieldViewer::showSelectionFormula(const NotesItem& item, const QString& name,
                                          const QString& designName) {
  const NotesView view = desk_.state.gDb.view(designName);
  const QString formula = view.selectionFormula();
  desk_.form.txtFieldContent->setText(widenLineFeeds(formula));
  desk_.form.txtFieldName->setText(name);
  desk_.form.chkSummary->setValue(item.isSummary() ? 1 : 0);
  desk_.form.chkEncrypted->setValue(item.isEncrypted() ? 1 : 0);
  desk_.form.chkSigned->setValue(item.isSigned() ? 1 : 0);
  desk_.form.chkProtected->setValue(item.isProtected() ? 1 : 0);
  desk_.form.lblSize->setText(sizeText(lowLevel_.ItemSizeOf(u"$FORMULA"_s)));
  return formula;
}

void FieldViewer::showBody() {
  const int body = firstBodyRow(*desk_.form.fldList);
  if (body < 0) return;
  desk_.form.fldList->setSelected(body, true);
  desk_.form.txtSearch->setText(desk_.routines.LeftFrom(desk_.form.idList->text(), u" "_s));
  desk_.form.chkCase->setValue(0);
  desk_.form.fldList->raiseClick();
}

}  // namespace lens
