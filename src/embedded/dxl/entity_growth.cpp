#include "embedded/dxl/entity_growth.h"

namespace lens {

namespace {

// More than any file may have; sums of it do not overflow.
constexpr qint64 kEndless = qint64(1) << 40;
constexpr qsizetype kLongestName = 1024;

bool isBuiltIn(QByteArrayView name) {
  return name.startsWith('#') || name == "lt" || name == "gt" || name == "amp" || name == "quot" ||
         name == "apos";
}

// What stands between an ampersand that begins no reference and some semicolon.
bool isNoName(QByteArrayView name) {
  for (const char c : name)
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '<' || c == '>' || c == '"' || c == '\'')
      return true;
  return name.isEmpty();
}

}  // namespace

void EntityGrowth::declare(const QXmlStreamEntityDeclarations& entities) {
  for (const QXmlStreamEntityDeclaration& entity : entities)
    entities_.insert(entity.name().toUtf8(), {entity.value().toUtf8(), -1});
  const QByteArrayList names = entities_.keys();
  for (const QByteArray& name : names) longest_ = qMax(longest_, lengthOf(name, 0));
}

// Entities that hold each other, or more levels than anybody writes, are endless.
qint64 EntityGrowth::lengthOf(const QByteArray& name, int depth) {
  constexpr int kDeepest = 64;
  const auto entity = entities_.constFind(name);
  if (entity == entities_.cend()) return 0;
  if (entity->length >= 0) return entity->length;
  if (depth > kDeepest) return kEndless;
  const qint64 length = lengthOfText(QByteArray(entity->text), depth + 1);
  entities_[name].length = length;
  return length;
}

qint64 EntityGrowth::lengthOfText(QByteArrayView text, int depth) {
  qint64 length = text.size();
  for (qsizetype at = text.indexOf('&'); at >= 0; at = text.indexOf('&', at + 1)) {
    const qsizetype end = text.indexOf(';', at);
    if (end < 0) break;
    const QByteArrayView name = text.sliced(at + 1, end - at - 1);
    if (!isBuiltIn(name)) length += lengthOf(name.toByteArray(), depth);
    if (length >= kEndless) return kEndless;
  }
  return length;
}

void EntityGrowth::count(QByteArrayView bytes) {
  while (!bytes.isEmpty()) {
    if (!inReference_) {
      const qsizetype begin = bytes.indexOf('&');
      if (begin < 0) return;
      bytes = bytes.sliced(begin + 1);
      inReference_ = true;
      reference_.clear();
      continue;
    }
    const qsizetype end = bytes.indexOf(';');
    QByteArrayView part = end < 0 ? bytes : bytes.first(end);
    if (const qsizetype again = part.lastIndexOf('&'); again >= 0) {
      reference_.clear();
      part = part.sliced(again + 1);
    }
    reference_.append(part.first(qMin(part.size(), qMax<qsizetype>(0, kLongestName - reference_.size()))));
    if (end < 0) return;
    bytes = bytes.sliced(end + 1);
    inReference_ = false;
    if (isBuiltIn(reference_) || isNoName(reference_)) continue;
    // A name in letters of another encoding is taken for the longest.
    characters_ += entities_.contains(reference_) ? lengthOf(reference_, 0) : longest_;
    characters_ = qMin(characters_, kEndless);
  }
}

}  // namespace lens
