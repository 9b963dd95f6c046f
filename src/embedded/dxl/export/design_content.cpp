#include "embedded/dxl/export/design_content.h"

#include <QBuffer>
#include <algorithm>

#include "embedded/dxl/exact_marks.h"
#include "notes/literals.h"

namespace lens {

namespace {

struct ChildOrder {
  QStringView element;
  QStringView children;  // those with "!" must be there, those with "|" between them stand in any order
};
constexpr ChildOrder kOrders[] = {
    {u"form", u"globals code actionbar background body!"},
    {u"subform", u"globals code actionbar body!"},
    {u"page", u"globals code actionbar background body!"},
    {u"frameset", u"code frameset|frame!"},
    {u"view", u"globals code actionbar column viewbackground queryviewformat calendarformat"},
    {u"folder", u"globals code actionbar column folderbackground calendarformat"},
    {u"sharedfield", u"field!"},
    {u"sharedactions", u"action"},
    {u"sharedcolumn", u"column!"},
    {u"imageresource", u"gif|jpeg|png|notesbitmap|cgm!"},
    {u"fileresource", u"filedata"},
    {u"stylesheetresource", u"filedata"},
    {u"appletresource", u"code!"},
    {u"agent", u"designchange trigger! documentset code rundata"},
    {u"agentdata", u""},
    {u"webservice", u"designchange code webserviceopaquedata rundata"},
    {u"scriptlibrary", u"code"},
    {u"databasescript", u"code"},
    {u"helpaboutdocument", u"background body!"},
    {u"helpusingdocument", u"background body!"},
    {u"dataconnection", u""},
    {u"outline", u"outlineentry"},
    {u"db2accessview", u"db2accessviewentry"},
};

QStringView childrenOf(QStringView element) {
  for (const ChildOrder& order : kOrders) {
    if (order.element == element) return order.children;
  }
  return {};
}

QStringList orderOf(const DesignKind& kind) {
  QString words = u"textproperties "_s + childrenOf(QStringView(kind.element)).toString();
  return words.remove(u'!').split(u' ');
}

}  // namespace

DesignContent::DesignContent(const DesignKind& kind, const Note& note)
    : kind_(kind), note_(note), names_(orderOf(kind)), children_(names_.size()) {}

void DesignContent::attribute(const QString& name, const QString& value) {
  for (const auto& [known, before] : std::as_const(attributes_)) {
    if (known == name) return;
  }
  attributes_.push_back({name, value});
}

bool DesignContent::add(const QString& element, const QString& xml) {
  const qsizetype place = placeOf(element);
  if (place < 0) return false;
  children_[place] += xml + u'\n';
  return true;
}

qsizetype DesignContent::placeOf(QStringView element) const {
  for (qsizetype place = 0; place < names_.size(); ++place) {
    if (names_[place].split(u'|').contains(element)) return place;
  }
  return -1;
}

bool DesignContent::has(QStringView element) const {
  const qsizetype place = placeOf(element);
  return place >= 0 && !children_[place].isEmpty();
}

bool DesignContent::isComplete() const {
  const QStringList words = childrenOf(QStringView(kind_.element)).toString().split(u' ');
  for (qsizetype i = 0; i < words.size(); ++i) {
    if (words[i].endsWith(u'!') && children_[i + 1].isEmpty()) return false;
  }
  return true;
}

void DesignContent::begin(DxlWriter& out) const {
  out.begin(element());
  for (const auto& [name, value] : attributes_) out.attribute(name, value);
}

QString DesignContent::written(const std::function<void(DxlWriter&)>& write) {
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  DxlWriter out(bytes);
  write(out);
  return QString::fromUtf8(bytes.data());
}

}  // namespace lens
