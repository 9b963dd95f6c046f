#include "embedded/formula/compiled/segments.h"

#include "embedded/format/byte_reader.h"

namespace lens::formula {

namespace segment {

bool hasName(quint16 type) {
  return type == Variable || type == Column || type == Field || type == Environment;
}

bool hasCode(quint16 type) {
  return hasName(type) || type == Main || type == Expression;
}

Node::Modifier modifierOf(quint16 type) {
  switch (type) {
    case Field:
      return Node::Modifier::Field;
    case Column:
      return Node::Modifier::Default;
    case Environment:
      return Node::Modifier::Environment;
    default:
      return Node::Modifier::None;
  }
}

quint16 typeOf(Node::Modifier modifier) {
  switch (modifier) {
    case Node::Modifier::Field:
      return Field;
    case Node::Modifier::Default:
      return Column;
    case Node::Modifier::Environment:
      return Environment;
    case Node::Modifier::None:
      break;
  }
  return Variable;
}

}  // namespace segment

std::vector<Segment> readSegments(QByteArrayView bytes) {
  ByteReader reader(bytes);
  if (reader.u16() != bytes.size() || reader.failed()) throw Unreadable{"its size is wrong"};
  std::vector<Segment> segments;
  while (reader.left() > 0) {
    const quint16 type = reader.u16(), size = reader.u16();
    if (reader.failed() || size < segment::kHead || !reader.has(size - segment::kHead))
      throw Unreadable{"a segment is longer than the formula", reader.position()};
    if (type > segment::FarFunctions) throw Unreadable{"a segment of an unknown type", reader.position()};
    segments.push_back({type, reader.take(size - segment::kHead)});
  }
  if (segments.empty()) throw Unreadable{"it is empty"};
  return segments;
}

QByteArrayView takeCounted(QByteArrayView& data) {
  ByteReader reader(data);
  const qsizetype size = reader.u16();
  if (!reader.has(size)) throw Unreadable{"a text is longer than its segment"};
  const QByteArrayView bytes = reader.take(size);
  // One byte fills up an odd length.
  if (size % 2 != 0 && reader.left() > 0) reader.skip(1);
  data = data.sliced(reader.position());
  return bytes;
}

void appendCounted(QByteArray& data, QByteArrayView text) {
  appendU16(data, quint16(text.size()));
  data += text;
  if (text.size() % 2 != 0) data += '\0';
}

void appendSegment(QByteArray& segments, quint16 type, QByteArrayView data) {
  const qsizetype padded = data.size() + data.size() % 2;
  appendU16(segments, type);
  appendU16(segments, quint16(padded + segment::kHead));
  segments += data;
  if (data.size() % 2 != 0) segments += '\0';
}

QByteArray framed(QByteArrayView segments, bool usesFar) {
  QByteArray bytes;
  const qsizetype size = 2 + (usesFar ? segment::kHead : 0) + segments.size();
  if (size > segment::kMostBytes) return {};
  bytes.reserve(size);
  appendU16(bytes, quint16(size));
  if (usesFar) appendSegment(bytes, segment::FarFunctions, {});
  return bytes.append(segments);
}

}  // namespace lens::formula
