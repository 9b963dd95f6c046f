// The document at hand: its items, its identity, its place in a view.
#include "embedded/formula/formula.h"
#include "embedded/formula/function.h"
#include "notes/literals.h"

namespace lens::formula {
namespace {

Value zero(const Call&) {
  return Value::number(0.0);
}
Value notHere(const Call&) {
  return Value::error(fault::NotInContext);
}

// --- Items ---------------------------------------------------------------------------------------------

QString firstText(const Value& value) {
  return value.text(0).toString();
}

// An item cannot be called nothing.
QString itemName(const Value& value) {
  const QString name = firstText(value).trimmed();
  if (name.isEmpty()) throw Fault{fault::CannotCompute};
  return name;
}

Value getField(const Call& call) {
  Value value;
  if (!call.evaluation().item(Name(firstText(call[0])), value)) return Value::text(u"");
  return value;
}

Value setField(const Call& call) {
  // Taken first: the value may be the item's own, which writing changes.
  const Value value = call[1];
  call.evaluation().writeItem(itemName(call[0]), value);
  return value;
}

Value docFields(const Call& call) {
  call.document();
  return Value::texts(call.evaluation().itemNames());
}

// The items that hold authors, in order, or else who saved the document first.
Value author(const Call& call) {
  const Evaluation& evaluation = call.evaluation();
  Value value;
  ListBuilder authors(Type::Text);
  for (const QString& name : call.document().authorItems())
    if (evaluation.item(Name(name), value) && value.isText()) authors.add(value);
  if (authors.count() > 0) return authors.take();
  if (evaluation.item(Name(u"$UpdatedBy"_s), value) && value.isText()) return value.element(0);
  if (call.document().properties().isNew) return Value::text(call.environment().userName());
  return Value::text(u"");
}

// --- Other documents -----------------------------------------------------------------------------------

Unid checkedUnid(const Value& value) {
  Unid unid;
  if (!Unid::parse(firstText(value).toUpper(), unid)) throw Fault{fault::InvalidUnid};
  return unid;
}

// The document at hand is read as the formula has changed it, not as it is stored.
bool isOwnUnid(const Call& call, const Unid& unid) {
  const Document* document = call.evaluation().document();
  return document && !unid.isNull() && document->properties().unid == unid;
}

Value unidText(const Unid& unid) {
  return Value::text(unid.isNull() ? QString() : unid.text());
}

Value getDocField(const Call& call) {
  const Unid unid = checkedUnid(call[0]);
  const Name name(firstText(call[1]));
  Value value;
  const bool found = isOwnUnid(call, unid) ? call.evaluation().item(name, value)
                                           : call.database().documentItem(unid, name, value);
  return found ? value : Value::text(u"");
}

Value setDocField(const Call& call) {
  const Unid unid = checkedUnid(call[0]);
  const QString name = itemName(call[1]);
  const Value value = call[2];
  if (isOwnUnid(call, unid))
    call.evaluation().writeItem(name, value);
  else if (Database& database = call.writableDatabase(); call.evaluation().mayWrite())
    database.setDocumentItem(unid, name, value);
  return value;
}

QString keyAt(const Call& call, int place) {
  return call.has(place) ? firstText(call[place]) : QString();
}

Value getProfileField(const Call& call) {
  Value value;
  const Name name(firstText(call[1]));
  if (!call.database().profileItem(firstText(call[0]), keyAt(call, 2), name, value)) return Value::text(u"");
  return value;
}

Value setProfileField(const Call& call) {
  const QString name = itemName(call[1]);
  Database& database = call.writableDatabase();
  if (call.evaluation().mayWrite())
    database.setProfileItem(firstText(call[0]), keyAt(call, 3), name, call[2]);
  return call[2];
}

// --- Attachments ---------------------------------------------------------------------------------------

Value attachments(const Call& call) {
  return Value::number(double(call.document().attachments().size()));
}
Value attachmentNames(const Call& call) {
  QStringList names;
  for (const Attachment& file : call.document().attachments()) names.append(file.name);
  return Value::texts(names);
}
Value attachmentLengths(const Call& call) {
  QVector<double> sizes;
  for (const Attachment& file : call.document().attachments()) sizes.append(double(file.size));
  return Value::numbers(sizes);
}
Value attachmentTimes(const Call& call) {
  QVector<TimeDate> times;
  for (const Attachment& file : call.document().attachments()) times.append(file.modified);
  return Value::times(times);
}

// --- Identity ------------------------------------------------------------------------------------------

Value docLength(const Call& call) {
  return Value::number(double(call.document().properties().size));
}
Value docOmittedLength(const Call& call) {
  return Value::number(double(call.document().properties().omittedSize));
}
Value documentUniqueId(const Call& call) {
  return unidText(call.document().properties().unid);
}
Value inheritedUniqueId(const Call& call) {
  return unidText(call.document().properties().parentUnid);
}
Value isDocTruncated(const Call& call) {
  return Value::truth(call.document().properties().isTruncated);
}
Value isNewDoc(const Call& call) {
  return Value::truth(call.document().properties().isNew);
}
Value isResponseDoc(const Call& call) {
  return Value::truth(call.document().properties().isResponse);
}
Value noteId(const Call& call) {
  const QString digits = call.document().properties().noteId.hexText();
  return Value::text(u"NT"_s + digits.rightJustified(8, u'0'));
}

// --- Selection and deletion ----------------------------------------------------------------------------

Value allChildren(const Call& call) {
  return Value::truth(call.document().respondsToSelected(false));
}
Value allDescendants(const Call& call) {
  return Value::truth(call.document().respondsToSelected(true));
}

Value markForDeletion(const Call& call, bool deleted) {
  call.document();
  if (call.evaluation().mayWrite()) call.evaluation().markDeleted(deleted);
  return Value::unavailable();
}
Value deleteDocument(const Call& call) {
  return markForDeletion(call, true);
}
Value undeleteDocument(const Call& call) {
  return markForDeletion(call, false);
}

Value docMark(const Call& call) {
  call.document();
  return Value::number(1.0);
}

Value docLock(const Call& call) {
  call.document();
  const QStringView action = call[0].text();
  if (action == u"LOCKINGENABLED") return Value::number(0.0);
  if (action == u"STATUS") return Value::text(u"");
  return Value::error(fault::NotInContext);
}

// -------------------------------------------------------------------------------------------------------

constexpr const char* kViewOnly =
    "An error here: its text is put together by a view column or a window title, which no evaluation of "
    "this engine is.";
constexpr const char* kNoWindow = "Always 0: no document here is open in a window.";
constexpr const char* kNoField = "An error here: formulas run for a document, not for one field of it.";
constexpr const char* kDeleteHelp = "Marks the document, which is deleted when the formula has ended.";

constexpr Function kDocumentFunctions[] = {
    {"@AllChildren", 0, 0, "", "",
     "In a selection: takes in the documents that answer a selected document directly.", allChildren},
    {"@AllDescendants", 0, 0, "", "",
     "In a selection: takes in all answers to a selected document, and the answers to those.",
     allDescendants},
    {"@AttachmentLengths", 0, 0, "", "",
     "The sizes of the attached files in bytes, in the order of @AttachmentNames; the empty text when there "
     "are none.",
     attachmentLengths},
    {"@AttachmentModifiedTimes", 0, 0, "", "",
     "When the attached files were last changed, in the order of @AttachmentNames; the empty text when there "
     "are none.",
     attachmentTimes},
    {"@AttachmentNames", 0, 0, "", "",
     "The names of the files attached to the document; the empty text when there are none.", attachmentNames},
    {"@Attachments", 0, 0, "", "", "How many files are attached to the document.", attachments},
    {"@Author", 0, 0, "", "",
     "Who wrote the document: the names in its author items, or else who saved it first.", author},
    {"@DeleteDocument", 0, 0, "", "", kDeleteHelp, deleteDocument},
    {"@DocChildren", 0, 3, "t", "otherwise; none; one",
     "How many documents answer this one directly; in the texts a % stands for the number.", notHere,
     trait::NeedsClient, Form::Call, nullptr, kViewOnly},
    {"@DocDescendants", 0, 3, "t", "otherwise; none; one",
     "How many documents answer this one at any depth; in the texts a % stands for the number.", notHere,
     trait::NeedsClient, Form::Call, nullptr, kViewOnly},
    {"@DocFields", 0, 0, "", "", "The names of the document's items, in their order.", docFields},
    {"@DocLength", 0, 0, "", "", "The size of the document in bytes, with its attachments.", docLength},
    {"@DocLevel", 0, 0, "", "", "How deep the document stands below its main document, as a text.", notHere,
     trait::NeedsClient, Form::Call, nullptr, kViewOnly},
    {"@DocLock", 1, 3, "kv", "[action]; options", "Locks a document, unlocks it, or tells who has locked it.",
     docLock, 0, Form::Call, "LOCK UNLOCK STATUS LOCKINGENABLED",
     "Documents are never locked here: [LockingEnabled] is 0, [Status] the empty text, and the other two "
     "are an error."},
    {"@DocMark", 1, 1, "k", "[mark]", "Tells an agent whether the changed document is to be saved.", docMark,
     0, Form::Call, "UPDATE NOUPDATE", "Checked and passed over: whoever evaluates decides what is saved."},
    {"@DocNumber", 0, 1, "t", "separator", "The document's number in the view, such as 2.1.3.", notHere,
     trait::NeedsClient, Form::Call, nullptr, kViewOnly},
    {"@DocOmittedLength", 0, 0, "", "", "How many bytes of a shortened document were cut off.",
     docOmittedLength},
    {"@DocOmmittedLength", 0, 0, "", "", "A second spelling of @DocOmittedLength.", docOmittedLength},
    {"@DocParentNumber", 0, 1, "t", "separator", "The number in the view of the document above this one.",
     notHere, trait::NeedsClient, Form::Call, nullptr, kViewOnly},
    {"@DocSiblings", 0, 0, "", "", "How many documents stand on this one's level, itself among them.",
     notHere, trait::NeedsClient, Form::Call, nullptr, kViewOnly},
    {"@DocumentUniqueID", 0, 0, "", "",
     "The identity that the document has in every replica, as 32 hexadecimal digits.", documentUniqueId},
    {"@GetDocField", 2, 2, "t", "document; name",
     "An item of another document of the database, which is named by its 32 digits. A missing item gives "
     "the empty text.",
     getDocField},
    {"@GetField", 1, 1, "t", "name",
     "The whole value of an item whose name is a text, and so may be computed. A missing item gives the "
     "empty text.",
     getField},
    {"@GetProfileField", 2, 4, "tttk", "profile; name; key; [options]",
     "An item of a profile document, the one of this key if there is a key. A missing item gives the empty "
     "text.",
     getProfileField, 0, Form::Call, "ENSURECACHE",
     "Nothing is kept between two calls, so that [EnsureCache] changes nothing."},
    {"@HardDeleteDocument", 0, 0, "", "", kDeleteHelp, deleteDocument, 0, Form::Call, nullptr,
     "The same as @DeleteDocument: there is no trash to leave out."},
    {"@InheritedDocumentUniqueID", 0, 0, "", "",
     "The 32 digits of the document that this one answers; the empty text for a main document.",
     inheritedUniqueId},
    {"@IsCategory", 0, 2, "v", "if; otherwise", "Whether the row of the view is a category.", notHere,
     trait::NeedsClient, Form::Call, nullptr, kViewOnly},
    {"@IsDocBeingEdited", 0, 0, "", "", "1 while the document is being changed in a window.", zero, 0,
     Form::Call, nullptr, kNoWindow},
    {"@IsDocBeingLoaded", 0, 0, "", "", "1 while the document is being opened.", zero, 0, Form::Call, nullptr,
     kNoWindow},
    {"@IsDocBeingMailed", 0, 0, "", "", "1 while the document is being mailed.", zero, 0, Form::Call, nullptr,
     kNoWindow},
    {"@IsDocBeingRecalculated", 0, 0, "", "", "1 while the document's fields are being computed anew.", zero,
     0, Form::Call, nullptr, kNoWindow},
    {"@IsDocBeingSaved", 0, 0, "", "", "1 while the document is being saved.", zero, 0, Form::Call, nullptr,
     kNoWindow},
    {"@IsDocTruncated", 0, 0, "", "", "1 when the document was shortened on its way here.", isDocTruncated},
    {"@IsExpandable", 0, 2, "v", "if; otherwise",
     "Whether the row of the view has further rows below it that are hidden.", notHere, trait::NeedsClient,
     Form::Call, nullptr, kViewOnly},
    {"@IsNewDoc", 0, 0, "", "", "1 when the document was never saved.", isNewDoc},
    {"@IsResponseDoc", 0, 0, "", "", "1 when the document answers another one.", isResponseDoc},
    {"@NoteID", 0, 0, "", "",
     "The document's number in this copy of the database: NT and eight hexadecimal digits.", noteId},
    {"@Responses", 0, 0, "", "", "How many answers the document has in the view.", notHere,
     trait::NeedsClient, Form::Call, nullptr, kViewOnly},
    {"@SetDocField", 3, 3, "ttv", "document; name; value",
     "Writes an item of another document of the database and saves that document. Gives the value.",
     setDocField, trait::Writes},
    {"@SetField", 2, 2, "tv", "name; value",
     "Writes an item of the document; its name is a text, so it may be computed. Gives the value.", setField,
     trait::Writes},
    {"@SetProfileField", 3, 4, "ttvt", "profile; name; value; key",
     "Writes an item of a profile document, which is made when there is none. Gives the value.",
     setProfileField},
    {"@ThisName", 0, 0, "", "", "The name of the field that the formula belongs to.", notHere,
     trait::NeedsClient, Form::Call, nullptr, kNoField},
    {"@ThisValue", 0, 0, "", "", "The value of the field that the formula belongs to.", notHere,
     trait::NeedsClient, Form::Call, nullptr, kNoField},
    {"@UndeleteDocument", 0, 0, "", "", "Takes back the mark of @DeleteDocument.", undeleteDocument},
};

}  // namespace

std::span<const Function> documentFunctions() {
  return kDocumentFunctions;
}

}  // namespace lens::formula
