#include "embedded/dxl/dxl_reader.h"

#include <QRegularExpression>
#include <QScopedValueRollback>

#include "embedded/dxl/base64_decoder.h"
#include "embedded/dxl/import_report.h"
#include "notes/literals.h"

namespace lens {

namespace {

// One entity expands to at most this many characters; the source counts all of them.
constexpr int kMaxExpansion = 4096;

bool isBlank(QStringView text) {
  for (const QChar c : text) {
    if (c != u' ' && c != u'\n' && c != u'\t' && c != u'\r') return false;
  }
  return true;
}

}  // namespace

const QXmlStreamAttribute* findAttribute(const QXmlStreamAttributes& attributes, QStringView name) {
  for (const QXmlStreamAttribute& attribute : attributes) {
    if (attribute.name() == name) return &attribute;
  }
  return nullptr;
}

DxlReader::DxlReader(DxlSource& source) : source_(source), xml_(&source) {
  xml_.setEntityExpansionLimit(kMaxExpansion);
}

DxlReader::Token DxlReader::next() {
  if (!read_.isEmpty()) settleAttributes();
  attributes_ = {};
  for (;;) {
    const Token token = xml_.readNext();
    switch (token) {
      case QXmlStreamReader::StartElement:
        rootSeen_ = true;
        name_ = xml_.name();
        attributes_ = xml_.attributes();
        read_.resize(attributes_.size());
        std::fill(read_.begin(), read_.end(), false);
        if (++depth_ > kMaxDepth) fail(u"elements are nested deeper than %1"_s.arg(kMaxDepth));
        if (!source_.goOn()) throw DxlCancelled();
        if (hasDocumentType_) countDefaults();
        break;
      case QXmlStreamReader::EndElement:
        name_ = xml_.name();
        --depth_;
        break;
      case QXmlStreamReader::Characters:
        break;
      case QXmlStreamReader::EntityReference:
        fail(u"the entity \"%1\" is not declared"_s.arg(xml_.name()));
      case QXmlStreamReader::EndDocument:
        return token;
      case QXmlStreamReader::Invalid:
        if (source_.cancelled()) throw DxlCancelled();
        fail(source_.fault().isEmpty() ? xml_.errorString() : source_.fault());
      case QXmlStreamReader::DTD:
        refuseExternalEntities();
        source_.declareEntities(xml_.entityDeclarations());
        hasDocumentType_ = true;
        continue;
      case QXmlStreamReader::StartDocument:
        refuseOddEncoding();
        continue;
      default:
        continue;
    }
    if (recording()) record(token);
    return token;
  }
}

// The start tag is left behind.
void DxlReader::settleAttributes() {
  for (qsizetype i = 0; i < read_.size() && !passing_; ++i) {
    if (read_[i]) continue;
    if (recording())
      records_.last().complete = false;
    else if (findings_)
      findings_->unreadAttribute(name_, attributes_[i].qualifiedName());
  }
  read_.clear();
}

void DxlReader::unreadElement(QStringView parent) {
  if (recording())
    records_.last().complete = false;
  else if (findings_)
    findings_->unreadElement(name_, parent);
}

// Nothing outside the file is read, so a text that comes from there would be missing without a word.
void DxlReader::refuseExternalEntities() const {
  const QXmlStreamEntityDeclarations declarations = xml_.entityDeclarations();
  for (const QXmlStreamEntityDeclaration& entity : declarations) {
    if (!entity.systemId().isEmpty() || !entity.publicId().isEmpty())
      fail(u"the entity \"%1\" stands in another file, which is not read"_s.arg(entity.name()));
  }
}

// Only where the bytes of tags are those of ASCII they can be looked at before they are read.
void DxlReader::refuseOddEncoding() const {
  static const QRegularExpression known(
      u"^(utf-?8|(us-)?ascii|iso-?8859-\\d+|latin-?\\d|(windows-|cp)12\\d\\d|koi8-[ru]|macintosh|"
      "shift[-_]jis|euc-(jp|kr)|gb2312|gbk|gb18030|big5)$"_s,
      QRegularExpression::CaseInsensitiveOption);
  const QString encoding = xml_.documentEncoding().toString();
  if (encoding.isEmpty()) return;
  if (!known.match(encoding).hasMatch()) fail(u"the encoding \"%1\" is not read"_s.arg(encoding.left(64)));
}

// Attributes that a document type gives to every element of a name.
void DxlReader::countDefaults() {
  if (attributes_.size() > DxlSource::kMostAttributes)
    fail(u"an element has more than %1 attributes"_s.arg(DxlSource::kMostAttributes));
  for (const QXmlStreamAttribute& attribute : std::as_const(attributes_))
    if (attribute.isDefault()) defaults_ += attribute.name().size() + attribute.value().size();
  if (defaults_ > source_.mostGrowth())
    fail(u"its default attributes expand to more than %1 MB"_s.arg(source_.mostGrowth() >> 20));
}

void DxlReader::finish() {
  while (next() != QXmlStreamReader::EndDocument) {
  }
}

QStringView DxlReader::attributeView(QStringView name) const {
  const QXmlStreamAttribute* const found = findAttribute(attributes_, name);
  if (!found) return {};
  markRead(found - attributes_.constData());
  return found->value();
}

void DxlReader::markUnread(QStringView name) const {
  const QXmlStreamAttribute* const found = findAttribute(attributes_, name);
  if (found && !read_.isEmpty()) read_[found - attributes_.constData()] = false;
}

QStringList DxlReader::takeUnread() const {
  QStringList words;
  for (qsizetype i = 0; i < attributes_.size(); ++i) {
    if (i < read_.size() && !read_[i])
      words.push_back(u"%1=%2"_s.arg(attributes_[i].qualifiedName(), attributes_[i].value()));
    markRead(i);
  }
  return words;
}

bool DxlReader::hasAttribute(QStringView name) const {
  return findAttribute(attributes_, name) != nullptr;
}

bool DxlReader::flag(QStringView name, bool otherwise) const {
  const QStringView value = attributeView(name);
  return value.isEmpty() ? otherwise : value == u"true";
}

bool DxlReader::nextChild() {
  for (;;) {
    switch (next()) {
      case QXmlStreamReader::StartElement:
        return true;
      case QXmlStreamReader::Characters:
        if (!isBlank(text())) fail(u"there is text where only elements may stand"_s);
        break;
      default:
        return false;
    }
  }
}

void DxlReader::close() {
  const QString element = name_.toString();
  for (;;) {
    const Token token = next();
    if (token == QXmlStreamReader::EndElement) return;
    const bool content = token == QXmlStreamReader::StartElement || !isBlank(text());
    if (!content) continue;
    if (token == QXmlStreamReader::Characters) name_ = u"#text";
    unreadElement(element);
    if (token == QXmlStreamReader::StartElement) skip();
  }
}

void DxlReader::passOver() {
  unreadElement(u"");
  skip();
}

void DxlReader::skip() {
  const QScopedValueRollback<bool> passing(passing_, true);
  for (int open = 1; open > 0;) {
    const Token token = next();
    if (token == QXmlStreamReader::StartElement) ++open;
    if (token == QXmlStreamReader::EndElement) --open;
  }
}

const QString& DxlReader::readText() {
  scratch_.resize(0);
  bool afterBreak = false;
  for (;;) {
    switch (next()) {
      case QXmlStreamReader::Characters:
        // A line end behind "break" only lays out the file.
        if (!(afterBreak && isBlank(text()) && text().startsWith(u'\n'))) scratch_.append(text());
        afterBreak = false;
        break;
      case QXmlStreamReader::StartElement:
        readTextChild(afterBreak);
        break;
      default:
        return scratch_;
    }
  }
}

void DxlReader::readTextChild(bool& afterBreak) {
  afterBreak = is(u"break");
  if (afterBreak) {
    scratch_.append(u'\n');
  } else if (is(u"nonxmlchar")) {
    scratch_.append(nonXmlChar());
  } else {
    fail(u"the element \"%1\" may not stand in a text"_s.arg(name()));
  }
  close();
}

QChar DxlReader::nonXmlChar() const {
  bool number = false;
  const uint code = attributeView(u"value").toUInt(&number, 16);
  if (!number || code > 0xFFFF) fail(u"nonxmlchar has no proper value"_s);
  return QChar(char16_t(code));
}

void DxlReader::readBase64(const QString& what, const std::function<void(QByteArrayView)>& piece) {
  Base64Decoder decoder;
  for (;;) {
    const Token token = next();
    if (token == QXmlStreamReader::StartElement)
      fail(u"%1: the element \"%2\" may not stand in base64"_s.arg(what, name()));
    if (token != QXmlStreamReader::Characters) break;
    QStringView rest = text();
    while (!rest.isEmpty()) {
      const QStringView part = rest.first(qMin<qsizetype>(rest.size(), 64 * 1024));
      rest = rest.sliced(part.size());
      if (!decoder.feed(part)) fail(u"%1: \"%2\" is no base64"_s.arg(what, QString(decoder.offender())));
      if (!decoder.bytes().isEmpty()) piece(decoder.bytes());
      decoder.clear();
    }
  }
  if (!decoder.complete()) fail(u"%1: the base64 is cut short"_s.arg(what));
}

QByteArray DxlReader::readBase64(const QString& what) {
  QByteArray bytes;
  readBase64(what, [&](QByteArrayView piece) {
    if (bytes.size() + piece.size() > kMaxValueBytes)
      fail(u"%1: the value is longer than %2 bytes"_s.arg(what, QString::number(kMaxValueBytes)));
    bytes.append(piece);
  });
  return bytes;
}

void DxlReader::startRecording() {
  records_.push_back({});
  record(QXmlStreamReader::StartElement);
}

QString DxlReader::stopRecording(bool* complete) {
  const Record last = records_.takeLast();
  if (complete) *complete = last.complete;
  return last.xml;
}

void DxlReader::pauseRecording() {
  settleAttributes();
  records_.last().paused = true;
}

void DxlReader::resumeRecording() {
  records_.last().paused = false;
  record(xml_.tokenType());
}

void DxlReader::record(Token token) {
  QString& xml = records_.last().xml;
  if (xml.size() > kMaxValueBytes / 4) fail(u"an element is too large to be kept"_s);
  if (token == QXmlStreamReader::StartElement) {
    xml += u'<';
    xml += xml_.qualifiedName();
    QStringList declared{u""_s, u"xml"_s};
    for (const QXmlStreamAttribute& a : std::as_const(attributes_)) {
      // What is kept is read by itself later, without the root that declares namespaces such as that of our
      // marks.
      if (const QString prefix = a.prefix().toString(); !declared.contains(prefix)) {
        declared.append(prefix);
        xml += u" xmlns:%1=\"%2\""_s.arg(prefix, a.namespaceUri().toString().toHtmlEscaped());
      }
      xml += u' ';
      xml += a.qualifiedName();
      xml += u"=\"%1\""_s.arg(a.value().toString().toHtmlEscaped());
    }
    xml += u'>';
  } else if (token == QXmlStreamReader::EndElement) {
    xml += u"</";
    xml += xml_.qualifiedName();
    xml += u'>';
  } else {
    xml += xml_.text().toString().toHtmlEscaped();
  }
}

void DxlReader::fail(const QString& reason) const {
  throw DxlFault(enginefault::BadDxl, xml_.lineNumber(), xml_.columnNumber(), reason);
}

}  // namespace lens
