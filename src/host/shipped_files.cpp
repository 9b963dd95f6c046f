#include "host/shipped_files.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QTranslator>
#include <memory>

#include "notes/literals.h"

namespace lens {
namespace {

#ifdef Q_OS_WIN
// All that is unpacked lies in one folder.
const QString kShipped = u"/share/"_s;
#else
const QString kShipped = u"/../share/tessaly-lens/"_s;
#endif

QString placeOfShipped(const QString& name) {
  return QCoreApplication::applicationDirPath() + kShipped + name;
}

bool speak(const QLocale& locale, const QString& name, const QString& directory) {
  auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
  if (!translator->load(locale, name, u"_"_s, directory)) return false;
  return QCoreApplication::installTranslator(translator.release());
}

}  // namespace

QString shippedFile(const QString& name) {
  const QFileInfo file(placeOfShipped(name));
  return file.exists() ? file.absoluteFilePath() : QString();
}

// Half of a window in another language is worse than none. English, too, tells one from many.
void speakLanguageOf(const QLocale& locale) {
  const QString tables = placeOfShipped(u"translations"_s);
  if (speak(locale, u"tessaly-lens"_s, tables))
    speak(locale, u"qtbase"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
  else
    speak(QLocale(QLocale::English), u"tessaly-lens"_s, tables);
}

}  // namespace lens
