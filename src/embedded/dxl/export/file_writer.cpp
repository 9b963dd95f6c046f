#include "embedded/dxl/export/file_writer.h"

#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/file_elements.h"
#include "notes/literals.h"

namespace lens {

namespace {

constexpr quint16 kUnpacked = 0;

// Takes the chunks of an object; a cancellation ends the reading as a failed write does.
class ObjectTarget : public QIODevice {
 public:
  ObjectTarget(ExportContext& context, Base64Lines& lines) : context_(context), lines_(lines) {
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
  }
  bool isSequential() const override { return true; }
  bool cancelled() const { return cancelled_; }

 protected:
  qint64 readData(char*, qint64) override { return -1; }
  qint64 writeData(const char* data, qint64 size) override {
    cancelled_ = cancelled_ || !context_.goOn();
    if (cancelled_) return -1;
    lines_.feed(QByteArrayView(data, size));
    return size;
  }

 private:
  ExportContext& context_;
  Base64Lines& lines_;
  bool cancelled_ = false;
};

void writeObject(ExportContext& context, quint32 object, Base64Lines& lines) {
  ObjectTarget target(context, lines);
  try {
    context.database.objects().read(object, target);
  } catch (const RuntimeError&) {
    if (target.cancelled()) throw ExportCancelled();
    throw;
  }
  context.out.check();
}

// Whether "file" gives the value back but for its object ID.
bool isPlainFile(const FileObject& file, QByteArrayView data, qint64 storedSize) {
  return isXmlText(file.name) && !hostTypeName(file.hostType).isEmpty() &&
         file.compression < std::size(kFileCompressions) &&
         (file.attributes & ~toldBits(kFileAttributes)) == 0 && (file.flags & ~toldBits(kFileFlags)) == 0 &&
         (file.compression != kUnpacked || qint64(file.size) == storedSize) &&
         QByteArrayView(fileObjectValue(file)).sliced(2) == data;
}

QString wordsOf(quint16 bits, std::span<const FileWord> words) {
  QStringList names;
  for (const FileWord& known : words) {
    if (bits & known.bit) names.push_back(QString::fromUtf16(known.word));
  }
  return names.join(u' ');
}

void writeFileAttributes(DxlWriter& out, const FileObject& file) {
  const bool known = file.compression < std::size(kFileCompressions);
  const QString host = hostTypeName(file.hostType);
  out.attribute(u"hosttype"_s, host.isEmpty() ? u"unknown"_s : host);
  out.attribute(u"compression"_s, QString::fromUtf16(kFileCompressions[known ? file.compression : 0]));
  const QString attribute = wordsOf(file.attributes, kFileAttributes);
  if (!attribute.isEmpty()) out.attribute(u"attribute"_s, attribute);
  const QString flags = wordsOf(file.flags, kFileFlags);
  if (!flags.isEmpty()) out.attribute(u"flags"_s, flags);
  out.attribute(u"name"_s, file.name);
  out.attribute(u"size"_s, QString::number(file.size));
}

void writeFile(ExportContext& context, const Item& item, const FileObject& file, qint64 storedSize) {
  DxlWriter& out = context.out;
  out.begin(u"object"_s);
  out.begin(u"file"_s);
  writeFileAttributes(out, file);
  if (!isPlainFile(file, item.data(), storedSize))
    out.mark(exactmark::kValue, QString::fromLatin1(item.value.toBase64()));
  out.layout();
  out.time(u"created"_s, file.created);
  out.time(u"modified"_s, file.modified);
  out.begin(u"filedata"_s);
  Base64Lines lines(out);
  writeObject(context, file.objectId, lines);
  lines.finish();
  for (int element = 0; element < 3; ++element) out.end();
}

void beginRaw(DxlWriter& out) {
  out.begin(u"rawitemdata"_s);
  out.attribute(u"type"_s, QString::number(itemtype::Object, 16));
}

// Size of a descriptor, class, spare, the descriptor, then the bytes of the object.
void writeInline(ExportContext& context, QByteArrayView data) {
  beginRaw(context.out);
  Base64Lines lines(context.out);
  QByteArray head;
  for (const quint16 word : {6, 1, 0}) appendU16(head, word);
  lines.feed(head);
  lines.feed(data);
  writeObject(context, objectIdOf(data), lines);
  lines.finish();
  context.out.end();
}

}  // namespace

void writeObjectValue(ExportContext& context, const Item& item) {
  constexpr qsizetype kDescriptor = 6;
  const QByteArrayView data = item.data();
  FileObject file;
  const bool isFile = readFileObject(data, file);
  const qint64 size = data.size() < kDescriptor ? -1 : context.database.objects().size(objectIdOf(data));
  if (isFile || (size >= 0 && data.size() > kDescriptor)) {
    file.objectId = objectIdOf(data);
    writeFile(context, item, file, size);
  } else if (size >= 0) {
    writeInline(context, data);
  } else {
    // A descriptor of nothing: an import must not look for an object in it.
    beginRaw(context.out);
    context.out.mark(exactmark::kAsStored, u"true"_s);
    context.out.base64(data);
    context.out.end();
  }
}

}  // namespace lens
