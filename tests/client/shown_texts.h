// Every text that a window shows or says, with where it stands: to be held against the same window in another
// language.
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>
#include <QWidget>

namespace lens {

struct ShownText {
  QString where;
  QString text;
};

// Of the window and all that it holds, in an order that does not depend on the language: captions, tips,
// names for screen readers, menus, the titles and cells of lists.
QVector<ShownText> shownTexts(const QWidget& window);

// Captions that have the access key of another one, each with that one: of what can be reached in the window
// at one time, and in each of its menus. Pressing such a key does nothing.
QStringList sharedKeys(const QWidget& window);

}  // namespace lens
