// A cursor over a DXL stream: elements, attributes, text and base64, with places for error messages
// and a record of what passes for elements that are kept as they are.
//
// It also sees to it that nothing is lost in silence: what nobody asked for when the reader goes on, be it an
// attribute or an element, is told to the findings, or marks the record at hand as worth keeping.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVarLengthArray>
#include <QXmlStreamReader>
#include <algorithm>
#include <functional>

#include "embedded/dxl/dxl_source.h"
#include "embedded/format/engine_fault.h"
#include "notes/runtime_error.h"

namespace lens {

// BadDxl or NoDxl: the description tells what is wrong, the place stands beside it.
class DxlFault : public RuntimeError {
 public:
  DxlFault(int number, qint64 line, qint64 column, const QString& reason)
      : RuntimeError(number, reason), line(line), column(column) {}
  qint64 line;
  qint64 column;
};

// Null when it is missing; valid as long as the attributes.
const QXmlStreamAttribute* findAttribute(const QXmlStreamAttributes& attributes, QStringView name);

// Thrown when the user stops the import.
struct DxlCancelled {};

class FileFindings;

class DxlReader {
 public:
  // Elements nested deeper than this are a fault.
  static constexpr int kMaxDepth = 256;
  // Bytes of one item value, and of all items of a note.
  static constexpr qint64 kMaxValueBytes = 512 * 1024 * 1024;

  using Token = QXmlStreamReader::TokenType;
  explicit DxlReader(DxlSource& source);
  // Where attributes and elements are told that nobody read; without it they are told nowhere.
  void tellUnreadTo(FileFindings& findings) { findings_ = &findings; }

  // The next start tag, end tag or text; everything else is passed over. Raises a DxlFault on
  // malformed input and past the end, DxlCancelled after a cancellation.
  Token next();
  // Whether the end of the document follows properly.
  void finish();

  QStringView name() const { return name_; }
  QStringView text() const { return xml_.text(); }
  QStringView namespaceUri() const { return xml_.namespaceUri(); }
  bool is(QStringView element) const { return name_ == element; }
  // Attributes of the start tag at hand; "" when it is missing.
  QString attribute(QStringView name) const { return attributeView(name).toString(); }
  // The same without a copy; valid until the next token.
  QStringView attributeView(QStringView name) const;
  bool hasAttribute(QStringView name) const;
  bool flag(QStringView name, bool otherwise = false) const;
  // All of them. To look at them is not to read them: that is what the functions above and these two do.
  const QXmlStreamAttributes& attributes() const { return attributes_; }
  void markRead(qsizetype attribute) const {
    if (attribute < read_.size()) read_[attribute] = true;
  }
  void markAllRead() const { std::fill(read_.begin(), read_.end(), true); }
  // The value of an attribute that was read has no place after all.
  void markUnread(QStringView name) const;
  // Those that nobody read so far, as "name=value"; they are read then.
  QStringList takeUnread() const;

  // Within an element that holds elements only: goes to the next child, false at the end tag. The
  // caller must have consumed the child before.
  bool nextChild();
  // Goes to the end tag of the element at hand, whose attributes were all that is to be read of it: what
  // stands inside is unread.
  void close();
  // Goes to the end tag of an element that nothing reads.
  void passOver();
  // The same for one of which the caller tells what becomes of it.
  void skip();
  // All text of the element, "break" and "nonxmlchar" included; other elements inside are a fault. Stands
  // at the end tag then. The text is valid until the next call.
  const QString& readText();
  // The character that "nonxmlchar" at hand stands for; its number is hexadecimal.
  QChar nonXmlChar() const;
  // Decodes the base64 text of the element piece by piece; what names the element in faults.
  void readBase64(const QString& what, const std::function<void(QByteArrayView)>& piece);
  QByteArray readBase64(const QString& what);

  // From the start tag at hand on, everything that passes is written down as XML. Inside a record a
  // second one is begun only while it pauses; recording() tells.
  void startRecording();
  // The XML. complete tells that everything in it was read, so that nothing is lost without it.
  QString stopRecording(bool* complete = nullptr);
  // What was read found no place.
  void markRecordIncomplete() {
    if (recording()) records_.last().complete = false;
  }
  bool recording() const { return !records_.isEmpty() && !records_.last().paused; }
  // Content that is stored elsewhere is no part of the record. It goes on with the tag at hand.
  void pauseRecording();
  void resumeRecording();

  [[noreturn]] void fail(const QString& reason) const;
  bool rootSeen() const { return rootSeen_; }

 private:
  struct Record {
    QString xml;
    bool paused = false;
    bool complete = true;
  };

  void settleAttributes();
  void unreadElement(QStringView parent);
  void refuseExternalEntities() const;
  void refuseOddEncoding() const;
  void countDefaults();
  void record(Token token);
  void readTextChild(bool& afterBreak);

  DxlSource& source_;
  QXmlStreamReader xml_;
  QStringView name_;  // of the tag at hand, valid until the next token
  // Of the start tag at hand. They are given back before the reader goes on, which would copy them otherwise.
  QXmlStreamAttributes attributes_;
  QString scratch_;
  QVector<Record> records_;  // the inner ones while the outer ones pause
  FileFindings* findings_ = nullptr;
  mutable QVarLengthArray<bool, 64> read_;  // attributes of the start tag at hand
  bool passing_ = false;                    // within an element that is passed over or skipped
  bool rootSeen_ = false;
  bool hasDocumentType_ = false;
  qint64 defaults_ = 0;  // characters of all default attributes so far
  int depth_ = 0;
};

}  // namespace lens
