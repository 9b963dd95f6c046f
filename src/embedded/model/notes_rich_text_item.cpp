#include "embedded/model/notes_rich_text_item.h"

#include <algorithm>

#include "embedded/model/attaching.h"
#include "embedded/model/notes_embedded_object.h"
#include "embedded/model/notes_rich_text_navigator.h"
#include "embedded/model/notes_rich_text_range.h"
#include "embedded/richtext/rich_text.h"
#include "embedded/store/attachment_name.h"
#include "embedded/store/case_key.h"
#include "notes/numbers.h"

namespace lens {

const MemberTable& NotesRichTextItem::members() const {
  static const MemberTable table(itemMembers(),
                                 {method<&NotesRichTextItem::formattedText>(u"GETFORMATTEDTEXT", 2, 2),
                                  method<&NotesRichTextItem::appendText>(u"APPENDTEXT", 1, 1),
                                  method<&NotesRichTextItem::embedObject>(u"EMBEDOBJECT", 3, 3),
                                  property<&NotesRichTextItem::embeddedObjects>(u"EMBEDDEDOBJECTS"),
                                  property<&NotesRichTextItem::compact>(u"COMPACT"),
                                  property<&NotesRichTextItem::createNavigator>(u"CREATENAVIGATOR"),
                                  property<&NotesRichTextItem::createRange>(u"CREATERANGE")});
  return table;
}

RichText NotesRichTextItem::richText() const {
  open()->requirePresent();
  const Item& present = item();
  if (present.type() != itemtype::RichText)
    throw RuntimeError(modelfault::WrongKind, QStringLiteral("%1: the item \"%2\" is no rich text any more")
                                                  .arg(open()->database->place.path, present.name.left(64)));
  return RichText::fromBytes(present.data());
}

void NotesRichTextItem::setRichText(const RichText& text) {
  item().value = rawValue(itemtype::RichText, text.toBytes());
}

std::shared_ptr<NotesRichTextItem> NotesRichTextItem::self() {
  return std::static_pointer_cast<NotesRichTextItem>(shared_from_this());
}

Value NotesRichTextItem::formattedText(const Arguments& arguments) {
  const bool stripTabs = arguments[0].boolean();
  const int lineLength = std::max(0, roundToInt32(arguments[1].number()));
  return richText().formattedText(stripTabs, lineLength);
}

Value NotesRichTextItem::appendText(const Arguments& arguments) {
  RichText text = richText();
  text.appendText(arguments[0].text());
  setRichText(text);
  return {};
}

// Kind, class (only objects of other programs have one) and the path of the file.
Value NotesRichTextItem::embedObject(const Arguments& arguments) {
  constexpr qint32 kAttachment = 1454;
  if (const qint32 kind = roundToInt32(arguments[0].number()); kind != kAttachment)
    throw RuntimeError(
        err::InvalidCall,
        QStringLiteral("%1: EMBEDOBJECT attaches files (%2), nothing of kind %3")
            .arg(open()->database->place.path, QString::number(kAttachment), QString::number(kind)));
  RichText text = richText();
  const FileObject file = attachFile(*open(), arguments[2].text(), text);
  setRichText(text);
  return newObject<NotesEmbeddedObject>(open(), file);
}

// Those that this item shows, in the order in which they stand there.
Value NotesRichTextItem::embeddedObjects() {
  QVector<Value> objects;
  QSet<quint32> known;
  const RichText text = richText();
  const QHash<QString, FileObject> files = attachedFilesByKey(open()->note);
  for (const RichElement& element : text.elements()) {
    if (element.kind != RichElement::Kind::Attachment) continue;
    const auto file = files.constFind(caseKey(attachmentName(element.text)));
    if (file == files.cend() || known.contains(file->objectId)) continue;
    known.insert(file->objectId);
    objects.push_back(newObject<NotesEmbeddedObject>(open(), *file));
  }
  return objects.isEmpty() ? Value() : Value::array(std::move(objects));
}

Value NotesRichTextItem::compact() {
  RichText text = richText();
  if (text.compact()) setRichText(text);
  return {};
}

Value NotesRichTextItem::createNavigator() {
  richText();
  return newObject<NotesRichTextNavigator>(self());
}

Value NotesRichTextItem::createRange() {
  richText();
  return newObject<NotesRichTextRange>(self());
}

}  // namespace lens
