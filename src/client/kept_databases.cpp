#include "client/kept_databases.h"

#include <QCryptographicHash>

#include "notes/literals.h"

namespace lens {
namespace {

constexpr qsizetype kMostRecent = 9;  // as many as have a digit for a key
constexpr qsizetype kGroupDigits = 12;
constexpr QLatin1String kBetween = "!!"_L1;

QString textOf(const DatabasePlace& place) {
  return place.server + kBetween + place.path;
}

std::optional<DatabasePlace> placeOf(const QString& text) {
  const qsizetype mark = text.indexOf(kBetween);
  if (mark < 0 || mark + kBetween.size() == text.size()) return std::nullopt;
  return DatabasePlace{text.first(mark), text.sliced(mark + kBetween.size())};
}

}  // namespace

KeptDatabases::KeptDatabases(KeptSettings& settings, const Workspace& workspace) : settings_(settings) {
  const QByteArray digest =
      QCryptographicHash::hash(workspace.directory().toUtf8(), QCryptographicHash::Sha256).toHex();
  group_ = u"workspaces/"_s + QString::fromLatin1(digest.first(kGroupDigits)) + u'/';
}

std::optional<KeptDatabases::Top> KeptDatabases::top() const {
  const std::optional<DatabasePlace> place = placeOf(settings_.value(group_ + u"top"_s).toString());
  if (!place) return std::nullopt;
  return Top{*place, NoteId(settings_.value(group_ + u"document"_s).toUInt())};
}

void KeptDatabases::keepTop(const std::optional<Top>& top) {
  settings_.set(group_ + u"top"_s, top ? QVariant(textOf(top->place)) : QVariant());
  settings_.set(group_ + u"document"_s, top && top->document ? QVariant(top->document.value()) : QVariant());
}

QVector<DatabasePlace> KeptDatabases::recent() const {
  QVector<DatabasePlace> places;
  for (const QString& text : settings_.value(group_ + u"recent"_s).toStringList())
    if (const std::optional<DatabasePlace> place = placeOf(text)) places += *place;
  return places.first(qMin(kMostRecent, places.size()));
}

void KeptDatabases::addRecent(const DatabasePlace& place) {
  QVector<DatabasePlace> places = recent();
  places.removeAll(place);
  places.prepend(place);
  keepRecent(places.first(qMin(kMostRecent, places.size())));
}

void KeptDatabases::removeRecent(const DatabasePlace& place) {
  QVector<DatabasePlace> places = recent();
  places.removeAll(place);
  keepRecent(places);
}

void KeptDatabases::clearRecent() {
  keepRecent({});
}

void KeptDatabases::keepRecent(const QVector<DatabasePlace>& places) {
  QStringList texts;
  for (const DatabasePlace& place : places) texts += textOf(place);
  settings_.set(group_ + u"recent"_s, texts.isEmpty() ? QVariant() : QVariant(texts));
}

bool isToBeRead(const Workspace& workspace, const DatabasePlace& place) {
  try {
    const QString file = workspace.absolutePath(place);
    return RealDatabases::isReal(file) && !RealDatabases(workspace.directory()).isRead(file);
  } catch (const RuntimeError&) {
    return false;  // opening it says why
  }
}

std::shared_ptr<Database> openKeptDatabase(Workspace& workspace, KeptSettings& settings) {
  const std::optional<KeptDatabases::Top> top = KeptDatabases(settings, workspace).top();
  if (!top) return nullptr;
  try {
    const DatabasePlace place = workspace.place(top->place.server, top->place.path);
    if (isToBeRead(workspace, place)) return nullptr;
    const std::shared_ptr<Database> database = workspace.database(place.server, place.path);
    Note document;
    const bool isThere = top->document && database->notes().read(top->document, document);
    workspace.client().showDatabase(place);
    if (isThere) workspace.client().showDocument(top->document);
    return database;
  } catch (const RuntimeError&) {
    return nullptr;  // gone or damaged meanwhile: the program starts as if it had not been kept
  }
}

}  // namespace lens
