#include "embedded/dxl/resource_elements.h"

#include "notes/literals.h"

namespace lens {

namespace {

constexpr qsizetype kSegment = 10240;

// Kind and 32-bit length of a record, whose data follows.
void appendHead(QByteArray& bytes, quint8 kind, qsizetype dataSize) {
  bytes.append(char(kind)).append('\0');
  appendU32(bytes, quint32(dataSize + 6));
}

quint32 segmentCount(qsizetype size) {
  return quint32((size + kSegment - 1) / kSegment);
}

// One record per segment; an odd one is padded.
void appendSegments(QByteArray& out, quint8 kind, qsizetype spare, const QByteArray& bytes) {
  for (qsizetype at = 0; at < bytes.size(); at += kSegment) {
    const QByteArray piece = bytes.mid(at, kSegment);
    appendHead(out, kind, 4 + spare + piece.size());
    appendU16(out, quint16(piece.size()));
    appendU16(out, quint16(piece.size()));
    out.append(QByteArray(spare, '\0'));
    out.append(piece);
    if (piece.size() % 2 != 0) out.append('\0');
  }
}

}  // namespace

QByteArray fileRecords(const QByteArray& bytes) {
  constexpr quint8 kFileHeader = 0x61;
  QByteArray out;
  appendHead(out, kFileHeader, 18);
  appendU16(out, 0);
  appendU32(out, quint32(bytes.size()));
  appendU32(out, segmentCount(bytes.size()));
  appendU32(out, 0);
  appendU32(out, 0);
  appendSegments(out, kFileSegment, kFileSegmentSpare, bytes);
  return out;
}

QByteArray imageRecords(quint16 imageType, const QByteArray& bytes) {
  constexpr quint8 kImageHeader = 125;
  QByteArray out;
  appendHead(out, kImageHeader, 22);
  for (const quint16 word : {imageType, quint16(0), quint16(0)}) appendU16(out, word);
  appendU32(out, quint32(bytes.size()));
  appendU32(out, segmentCount(bytes.size()));
  appendU32(out, 0);
  appendU32(out, 0);
  appendSegments(out, kImageSegment, 0, bytes);
  return out;
}

LibraryReader::LibraryReader(const DesignKind& kind, ReadContext& context, Note& note)
    : DesignReader(kind, context, note), databaseScript_(QStringView(kind.letters) == u"t") {}

bool LibraryReader::readChild() {
  if (!in_.is(u"code")) return false;
  const bool records = !in_.recording();
  if (records) in_.startRecording();
  const QString event = in_.attribute(u"event");
  while (in_.nextChild()) {
    if (in_.is(u"lotusscript")) {
      script_.add(event, in_.readText());
    } else if (in_.is(u"javascript") && !databaseScript_ && javaScript_.isEmpty()) {
      javaScript_ = in_.readText();
      if (event != u"library") in_.markRecordIncomplete();
    } else {
      java_ = java_ || in_.is(u"javaproject");
      in_.passOver();
    }
  }
  keepUnlessRead(context_, note_, u"code"_s, records);
  return true;
}

void LibraryReader::finish() {
  if (databaseScript_) {
    addText(u"$DBScript"_s, script_.text(), 0);
  } else {
    const bool javaScript = !javaScript_.isEmpty() && script_.isEmpty();
    addFlags(javaScript ? u"h" : java_ ? u"sj" : u"s");
    if (javaScript)
      addText(u"$JavaScriptLibrary"_s, javaScript_, 0);
    else
      addText(u"$ScriptLib"_s, script_.text(), 0);
  }
  DesignReader::finish();
}

ResourceReader::ResourceReader(const DesignKind& kind, ReadContext& context, Note& note)
    : DesignReader(kind, context, note), styleSheet_(QStringView(kind.letters) == u"=") {
  uses({u"charset"});
}

bool ResourceReader::readChild() {
  const bool gif = in_.is(u"gif"), jpeg = in_.is(u"jpeg");
  if (size_ >= 0 || (!gif && !jpeg && !in_.is(u"filedata"))) return false;
  const QByteArray bytes = in_.readBase64(u"the data of resource \"%1\""_s.arg(attribute(u"name")));
  size_ = bytes.size();
  if (gif || jpeg) {
    add(u"$ImageData"_s, 0, rawValue(itemtype::RichText, imageRecords(gif ? kGifImage : kJpegImage, bytes)));
  } else {
    const QString item = styleSheet_ ? u"$StyleSheetData"_s : u"$FileData"_s;
    add(item, 0, rawValue(itemtype::RichText, fileRecords(bytes)));
  }
  return true;
}

void ResourceReader::finish() {
  const bool image = note_.has(u"$ImageData");
  const QString names = image ? u"$ImageNames"_s : u"$FileNames"_s;
  addText(names, attribute(u"name"));
  if (size_ >= 0) add(u"$FileSize"_s, itemflag::Summary, numberValue(double(size_)));
  if (!attribute(u"charset").isEmpty()) addText(u"$MimeCharSet"_s, attribute(u"charset"));
  DesignReader::finish();
}

}  // namespace lens
