#include "embedded/dxl/raw_values.h"

#include "embedded/format/stored_lists.h"
#include "notes/literals.h"

namespace lens {

namespace {

// Entries of a text list; the texts may not need more than what follows their lengths.
QString textListFault(QByteArrayView data) {
  const StoredTexts texts(data);
  if (data.size() < 2 || !texts.hasLengths()) return u"a text list of %1 entries"_s.arg(texts.claimed());
  return texts.fits() ? QString() : u"texts of %1 bytes"_s.arg(texts.claimedBytes());
}

QString rangeFault(QByteArrayView data) {
  const StoredRange range(data);
  if (range.fits()) return {};
  return u"a list of %1 entries and %2 pairs"_s.arg(range.claimedSingles()).arg(range.claimedPairs());
}

QString noteRefsFault(QByteArrayView data) {
  const StoredReferences references(data);
  return references.fits() ? QString() : u"%1 note references"_s.arg(references.claimed());
}

QString mimePartFault(QByteArrayView data) {
  ByteReader reader(data);
  reader.skip(8);
  const quint32 bytes = reader.u16(), boundary = reader.u16(), headers = reader.u16();
  reader.skip(6);
  if (reader.failed()) return u"the head of a MIME part"_s;
  if (!reader.has(qMax(bytes, boundary + headers))) return u"a MIME part of %1 bytes"_s.arg(bytes);
  return {};
}

// Records of a rich text value. Parts of one item are split between records, so each walks to its end.
QString recordsFault(QByteArrayView data) {
  ByteReader reader(data);
  while (reader.left() > 1) {
    const qsizetype start = reader.position();
    const quint8 kind = reader.u8(), width = reader.u8();
    const qint64 length = width == 0xFF ? reader.u16() : width == 0 ? qint64(reader.u32()) : width;
    const qsizetype head = reader.position() - start;
    if (reader.failed() || length < head || !reader.has(length - head))
      return u"a record of kind %1 and %2 bytes"_s.arg(kind).arg(length);
    reader.skip(length - head);
    if (length % 2 != 0 && reader.left() > 0) reader.skip(1);
  }
  return {};
}

QString sizeFault(QByteArrayView data, qsizetype size) {
  return data.size() >= size ? QString() : u"a value of %1 bytes"_s.arg(size);
}

}  // namespace

QString rawValueFault(quint16 type, QByteArrayView data) {
  switch (type) {
    case itemtype::TextList:
      return textListFault(data);
    case itemtype::NumberRange:
    case itemtype::TimeRange:
      return rangeFault(data);
    case itemtype::NoteRefs:
      return noteRefsFault(data);
    case itemtype::MimePart:
      return mimePartFault(data);
    case itemtype::RichText:
      return recordsFault(data);
    case itemtype::Number:
    case itemtype::Time:
      return sizeFault(data, 8);
    default:
      return {};
  }
}

bool storeInlineObject(Database& target, QByteArrayView data, QByteArray& value) {
  constexpr quint16 kDescriptorSize = 6;
  ByteReader reader(data);
  if (reader.u16() != kDescriptorSize) return false;
  reader.skip(4);
  const quint16 objectType = reader.u16();
  reader.skip(4);
  if (reader.failed()) return false;
  const quint32 object = target.objects().begin();
  target.objects().append(object, reader.take(reader.left()));
  target.objects().finish(object);
  value.clear();
  appendU16(value, itemtype::Object);
  appendU16(value, objectType);
  appendU32(value, object);
  return true;
}

}  // namespace lens
