#include "embedded/dxl/file_elements.h"

#include <array>
#include <limits>

#include "embedded/dxl/datetime_element.h"
#include "embedded/dxl/exact_marks.h"
#include "notes/literals.h"

namespace lens {

namespace {

constexpr std::array<const char16_t*, 11> kHosts = {
    u"msdos",        u"ole",           u"mac",       u"unknown", u"hpfs", u"olelib",
    u"bytearrayext", u"bytearraypage", u"cdstorage", u"stream",  u"link"};

// Read, but not written: DXL has no words for them.
constexpr size_t kOle = 1, kOleLibrary = 5;

quint16 hostType(QStringView name) {
  for (size_t i = 0; i < kHosts.size(); ++i) {
    if (name == QStringView(kHosts[i])) return quint16(i << 8);
  }
  return 0x0300;
}

quint16 listedBits(QStringView list, std::span<const FileWord> words) {
  quint16 bits = 0;
  for (const QStringView word : list.split(u' ', Qt::SkipEmptyParts)) {
    for (const FileWord& known : words) {
      if (word == QStringView(known.word)) bits |= known.bit;
    }
  }
  return bits;
}

quint16 compressionOf(QStringView word) {
  for (size_t number = 0; number < std::size(kFileCompressions); ++number)
    if (word == QStringView(kFileCompressions[number])) return quint16(number);
  return 0;
}

FileObject fileAttributes(ImportContext& context) {
  const DxlReader& in = context.in;
  FileObject file;
  if (!in.hasAttribute(u"name")) in.fail(u"an attached file has no name"_s);
  file.name = in.attribute(u"name");
  file.hostType = hostType(in.attributeView(u"hosttype"));
  file.compression = compressionOf(in.attributeView(u"compression"));
  file.attributes = listedBits(in.attributeView(u"attribute"), kFileAttributes);
  file.flags = listedBits(in.attributeView(u"flags"), kFileFlags);
  return file;
}

StoredObject readFileData(ImportContext& context, const QString& what) {
  const quint32 object = context.target.objects().begin();
  context.in.readBase64(what, [&](QByteArrayView piece) {
    context.target.objects().append(object, piece);
    context.pause();
  });
  return context.target.objects().finish(object);
}

TimeDate childTime(ImportContext& context, const QString& what) {
  TimeDate time;
  while (context.in.nextChild()) {
    if (context.in.is(u"datetime"))
      time = readDatetime(context, what);
    else
      context.in.passOver();
  }
  return time;
}

// The whole value of an item that "file" cannot tell of; empty without the mark.
QByteArray markedValue(const DxlReader& in) {
  QString encoded;
  if (!readMark(in, exactmark::kValue, encoded)) return {};
  const auto decoded =
      QByteArray::fromBase64Encoding(encoded.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
  constexpr qsizetype kDescriptor = 8;
  if (!decoded || (*decoded).size() < kDescriptor)
    in.fail(u"the value of an attachment is no base64 of a value"_s);
  return *decoded;
}

QByteArray withObject(QByteArray value, quint32 object) {
  QByteArray id;
  appendU32(id, object);
  return value.replace(4, id.size(), id);
}

void readFile(ImportContext& context, Note& note, const QString& itemName, quint16 flags) {
  FileObject file = fileAttributes(context);
  const QByteArray whole = markedValue(context.in);
  const QString what = u"item \"%1\", file \"%2\""_s.arg(itemName, file.name);
  bool sized = false;
  const qint64 stated = context.in.attribute(u"size").toLongLong(&sized);
  bool hasData = false;
  StoredObject stored;
  while (context.in.nextChild()) {
    if (context.in.is(u"created")) {
      file.created = childTime(context, what);
    } else if (context.in.is(u"modified")) {
      file.modified = childTime(context, what);
    } else if (context.in.is(u"filedata") && !hasData) {
      stored = readFileData(context, what);
      hasData = true;
    } else {
      keepElement(context, note);
    }
  }
  if (!hasData) {
    const quint32 object = context.target.objects().begin();
    stored = context.target.objects().finish(object);
    context.findings.ignored(u"attachment \"%1\" came without its data"_s.arg(file.name));
  }
  if (!whole.isEmpty()) {
    note.add(itemName, flags, withObject(whole, stored.id));
    return;
  }
  const bool packed = file.compression != 0;
  const qint64 size = packed && sized ? stated : stored.size;
  if (size < 0 || size > std::numeric_limits<quint32>::max())
    context.in.fail(u"%1 is larger than an attachment can be"_s.arg(what));
  if (packed) context.findings.keptRaw(u"attachment \"%1\" in compressed form"_s.arg(file.name));
  if (!packed && hasData && sized && stated != stored.size)
    context.findings.ignored(u"attachment \"%1\" states another size than it has"_s.arg(file.name));
  file.objectId = stored.id;
  file.size = quint32(size);
  note.add(itemName, flags, fileObjectValue(file));
}

}  // namespace

QString hostTypeName(quint16 hostType) {
  const size_t place = hostType >> 8;
  const bool written =
      (hostType & 0xFF) == 0 && place < kHosts.size() && place != kOle && place != kOleLibrary;
  return written ? QString::fromUtf16(kHosts[place]) : QString();
}

bool readObjectElement(ImportContext& context, Note& note, const QString& itemName, quint16 flags) {
  bool stored = false;
  while (context.in.nextChild()) {
    if (context.in.is(u"file")) {
      readFile(context, note, itemName, flags);
      stored = true;
    } else {
      keepElement(context, note);
    }
  }
  return stored;
}

}  // namespace lens
