#include "embedded/dxl/export/dxl_writer.h"

#include "embedded/dxl/dxl_datetime.h"
#include "notes/runtime_error.h"

namespace lens {

namespace {

constexpr qsizetype kLineBytes = 57;  // 76 characters

}  // namespace

void DxlWriter::beginRoot(const QString& element) {
  begin(element);
  attribute(u"xmlns"_s, u"http://www.lotus.com/dxl"_s);
  declareMarks();
}

void DxlWriter::declareMarks() {
  attribute(u"xmlns:%1"_s.arg(exactmark::kPrefix), exactmark::kNamespace.toString());
}

void DxlWriter::endDocument() {
  xml_.writeEndDocument();
  check();
}

void DxlWriter::flag(const QString& name, bool value) {
  attribute(name, value ? u"true"_s : u"false"_s);
}

void DxlWriter::mark(QStringView name, const QString& value) {
  attribute(u"%1:%2"_s.arg(exactmark::kPrefix, name), value);
}

void DxlWriter::exactAttribute(const QString& name, const QString& value) {
  attribute(name, value);
  if (!isXmlText(value)) mark(exactMarkOf(name), percentEncoded(value));
}

// A carriage return that stands as it is would be read as a line feed.
void DxlWriter::characters(QStringView text, bool breaks) {
  qsizetype start = 0;
  const auto flush = [&](qsizetype end) {
    if (end > start) xml_.writeCharacters(text.sliced(start, end - start).toString());
  };
  for (qsizetype at = 0; at < text.size();) {
    const bool line = breaks && text[at] == u'\n';
    const qsizetype units = xmlUnits(text, at);
    const bool asItIs = units > 0 && !line && text[at] != u'\r';
    if (!asItIs) {
      flush(at);
      if (line)
        xml_.writeEmptyElement(u"break"_s);
      else if (units > 0)
        xml_.writeEntityReference(u"#13"_s);
      else
        nonXmlChar(text[at]);
      start = at + 1;
    }
    at += qMax<qsizetype>(units, 1);
  }
  flush(text.size());
}

void DxlWriter::nonXmlChar(QChar c) {
  begin(u"nonxmlchar"_s);
  attribute(u"value"_s, QString::number(c.unicode(), 16));
  end();
}

void DxlWriter::verbatim(const QString& xml) {
  xml_.writeCharacters(QString());  // ends the start tag at hand
  const QByteArray bytes = xml.toUtf8();
  verbatimFailed_ = verbatimFailed_ || target_.write(bytes) != bytes.size();
}

void DxlWriter::base64(QByteArrayView bytes) {
  Base64Lines lines(*this);
  lines.feed(bytes);
  lines.finish();
}

void DxlWriter::datetime(const TimeDate& time) {
  const DxlTime text = dxlTime(time);
  begin(u"datetime"_s);
  if (text.dst) flag(u"dst"_s, true);
  if (text.text.isEmpty() && !isClearedTime(time)) mark(exactmark::kTime, timeDateHex(time));
  literal(text.text);
  end();
}

void DxlWriter::time(const QString& element, const TimeDate& time) {
  begin(element);
  datetime(time);
  end();
  layout();
}

void DxlWriter::check() const {
  if (!xml_.hasError() && !verbatimFailed_) return;
  throw RuntimeError(err::DeviceFault, u"The DXL cannot be written (%1)"_s.arg(target_.errorString()));
}

void Base64Lines::feed(QByteArrayView bytes) {
  rest_.append(bytes.data(), bytes.size());
  const qsizetype whole = rest_.size() / kLineBytes * kLineBytes;
  if (whole == 0) return;
  write(QByteArrayView(rest_).first(whole));
  rest_.remove(0, whole);
}

void Base64Lines::finish() {
  if (!rest_.isEmpty()) write(rest_);
  rest_.clear();
}

void Base64Lines::write(QByteArrayView bytes) {
  QByteArray text;
  text.reserve(bytes.size() / 3 * 4 + bytes.size() / kLineBytes + 8);
  if (empty_) text.append('\n');
  empty_ = false;
  for (qsizetype at = 0; at < bytes.size(); at += kLineBytes) {
    const qsizetype size = qMin(kLineBytes, bytes.size() - at);
    text.append(QByteArray::fromRawData(bytes.data() + at, size).toBase64()).append('\n');
  }
  out_.encoded(text);
}

}  // namespace lens
