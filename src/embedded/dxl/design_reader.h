// Design elements in structured form (form, view, agent, ...) and the items that they stand for.
#pragma once

#include <functional>
#include <memory>

#include "embedded/dxl/import_context.h"

namespace lens {

struct DesignKind {
  const char16_t* element;
  quint16 noteClass;
  const char16_t* letters;  // of "$Flags" that mark the kind
  const char16_t* title;    // where the element has no name
};

// Null when no design element has that name.
const DesignKind* findDesignKind(QStringView element);
// The kind of a note by its class without marks and its "$Flags"; null when none has them.
const DesignKind* designKindOf(quint16 baseClass, QStringView flags);

// Attributes that stand for letters of "$Flags", without those of the kind itself, and of "$WebFlags", as
// "name=value".
QStringList letterAttributes(QStringView flags, QStringView webFlags);

// Reads one design element. Items that the element states itself win over those made from attributes.
class DesignReader {
 public:
  // The reader stands at the element's start tag.
  DesignReader(const DesignKind& kind, ReadContext& context, Note& note);
  virtual ~DesignReader() = default;
  // The reader stands at a child that is neither prolog nor item. False when it was not consumed.
  virtual bool readChild() { return false; }
  // At the end tag: adds the items that come from attributes.
  virtual void finish();

 protected:
  // Attributes beyond the common ones that the kind uses; all others are kept as they are.
  void uses(std::initializer_list<QStringView> attributes);
  QString attribute(QStringView name) const;
  bool flag(QStringView name, bool otherwise = false) const;
  void addFlags(QStringView letters) { flags_ += letters; }
  void add(const QString& name, quint16 flags, const QByteArray& value);
  // The formula of a "code" element as an item; code that says more is kept as a whole.
  void readEventFormula(const QString& item, const QString& what);
  void addText(const QString& name, const QString& text, quint16 flags = itemflag::Summary);

  ReadContext& context_;
  DxlReader& in_;
  Note& note_;

 private:
  void keepAttributes();
  void addTitle();
  void addVisibility();

  const DesignKind& kind_;
  QXmlStreamAttributes attributes_;
  QStringList used_;
  QString flags_;
};

// The design element at hand, with all items that it stands for. Each child is offered to other first, which
// takes what every note has.
void readDesignElement(const DesignKind& kind, ReadContext& context, Note& note,
                       const std::function<bool()>& other);

// Joins the parts of a script library or agent as the design tool does; each part under its event.
class ScriptText {
 public:
  void add(const QString& event, const QString& source);
  bool isEmpty() const { return text_.isEmpty(); }
  const QString& text() const { return text_; }

 private:
  QString text_;
};

}  // namespace lens
