// What is shipped with the program besides itself: documents to read, texts in other languages.
#pragma once

#include <QLocale>
#include <QString>

namespace lens {

// The full path of a shipped file ("docs/guide.md"), "" where it is not there. Beside an installed program
// they lie in share/tessaly-lens, and so they do in the directory that it is built in; on Windows in share.
// Needs the application object.
QString shippedFile(const QString& name);

// The program's texts, and those of the library that it is built on, in the first of the user's languages
// that is there; English otherwise. The application object is there, and no window yet.
void speakLanguageOf(const QLocale& locale);

}  // namespace lens
