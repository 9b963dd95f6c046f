#include "embedded/model/rich_text_item_object.h"

#include <algorithm>

#include "embedded/format/attachment_name.h"
#include "embedded/format/case_key.h"
#include "embedded/model/attaching.h"
#include "embedded/model/embedded_file_object.h"
#include "embedded/model/rich_text_navigator_object.h"
#include "embedded/model/rich_text_range_object.h"
#include "embedded/richtext/rich_text.h"
#include "notes/literals.h"
#include "notes/numbers.h"

namespace lens {

const MemberTable& RichTextItemObject::members() const {
  static const MemberTable table(itemMembers(),
                                 {method<&RichTextItemObject::formattedText>(u"GETFORMATTEDTEXT", 2, 2),
                                  method<&RichTextItemObject::appendText>(u"APPENDTEXT", 1, 1),
                                  method<&RichTextItemObject::embedObject>(u"EMBEDOBJECT", 3, 3),
                                  property<&RichTextItemObject::embeddedObjects>(u"EMBEDDEDOBJECTS"),
                                  property<&RichTextItemObject::compact>(u"COMPACT"),
                                  property<&RichTextItemObject::createNavigator>(u"CREATENAVIGATOR"),
                                  property<&RichTextItemObject::createRange>(u"CREATERANGE")});
  return table;
}

RichText RichTextItemObject::richText() const {
  open()->requirePresent();
  const Item& present = item();
  if (present.type() != itemtype::RichText)
    throw RuntimeError(modelfault::WrongKind, u"%1: the item \"%2\" is no rich text any more"_s.arg(
                                                  open()->database->place.path, present.name.left(64)));
  return RichText::fromBytes(present.data());
}

void RichTextItemObject::setRichText(const RichText& text) {
  item().value = rawValue(itemtype::RichText, text.toBytes());
}

std::shared_ptr<RichTextItemObject> RichTextItemObject::self() {
  return std::static_pointer_cast<RichTextItemObject>(shared_from_this());
}

Value RichTextItemObject::formattedText(const Arguments& arguments) {
  const bool stripTabs = arguments[0].boolean();
  const int lineLength = std::max(0, roundToInt32(arguments[1].number()));
  return richText().formattedText(stripTabs, lineLength);
}

Value RichTextItemObject::appendText(const Arguments& arguments) {
  RichText text = richText();
  text.appendText(arguments[0].text());
  setRichText(text);
  return {};
}

// Kind, class (only objects of other programs have one) and the path of the file.
Value RichTextItemObject::embedObject(const Arguments& arguments) {
  constexpr qint32 kAttachment = 1454;
  if (const qint32 kind = roundToInt32(arguments[0].number()); kind != kAttachment)
    throw RuntimeError(err::InvalidCall, u"%1: EMBEDOBJECT attaches files (%2), nothing of kind %3"_s.arg(
                                             open()->database->place.path, QString::number(kAttachment),
                                             QString::number(kind)));
  RichText text = richText();
  const FileObject file = attachFile(*open(), arguments[2].text(), text);
  setRichText(text);
  return newObject<EmbeddedFileObject>(open(), file);
}

// Those that this item shows, in the order in which they stand there.
Value RichTextItemObject::embeddedObjects() {
  QVector<Value> objects;
  QSet<quint32> known;
  const RichText text = richText();
  const QHash<QString, FileObject> files = attachedFilesByKey(open()->note);
  for (const RichElement& element : text.elements()) {
    if (element.kind != RichElement::Kind::Attachment) continue;
    const auto file = files.constFind(caseKey(attachmentName(element.text)));
    if (file == files.cend() || known.contains(file->objectId)) continue;
    known.insert(file->objectId);
    objects.push_back(newObject<EmbeddedFileObject>(open(), *file));
  }
  return objects.isEmpty() ? Value() : Value::array(std::move(objects));
}

Value RichTextItemObject::compact() {
  RichText text = richText();
  if (text.compact()) setRichText(text);
  return {};
}

Value RichTextItemObject::createNavigator() {
  richText();
  return newObject<RichTextNavigatorObject>(self());
}

Value RichTextItemObject::createRange() {
  richText();
  return newObject<RichTextRangeObject>(self());
}

}  // namespace lens
