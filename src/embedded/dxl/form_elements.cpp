#include "embedded/dxl/form_elements.h"

#include "embedded/dxl/item_elements.h"
#include "embedded/dxl/record_writer.h"
#include "notes/literals.h"

namespace lens {

bool FormReader::readChild() {
  if (in_.is(u"body")) {
    readBody();
    return true;
  }
  if (in_.is(u"field")) {
    const QByteArray record = readFormField(context_, note_, {}, fields_);
    RecordWriter body;
    if (!record.isEmpty()) body.appendInline(record);
    add(u"$Body"_s, 0, rawValue(itemtype::RichText, body.bytes()));
    return true;
  }
  return in_.is(u"code") && readCode();
}

void FormReader::readBody() {
  while (in_.nextChild()) {
    if (!in_.is(u"richtext") || note_.has(u"$Body")) {
      keepElement(context_, note_);
      continue;
    }
    const QByteArray body = readRichText(context_, note_, &fields_);
    note_.add(u"$Body"_s, 0, rawValue(itemtype::RichText, body));
  }
}

bool FormReader::readCode() {
  const QString event = in_.attribute(u"event");
  QString item;
  if (event == u"windowtitle") item = u"$WindowTitle"_s;
  if (event == u"htmlhead") item = u"$HTMLHeadTag"_s;
  if (item.isEmpty()) return false;
  readEventFormula(item, item);
  return true;
}

void FormReader::finish() {
  if (!fields_.isEmpty()) addFieldItems(note_, fields_);
  DesignReader::finish();
}

}  // namespace lens
