// The classes of notes that the design browser can list.
#pragma once

#include <QString>
#include <QVector>

namespace lens {

struct DesignClass {
  QString property;  // of the note collection; also the entry of lstDesigns
  QString label;     // how the window's caption names it
};

// In the order of lstDesigns.
const QVector<DesignClass>& designClasses();
// The classes that the older listing knows: it lacks the help index, has a property that no entry names,
// and labels profiles its own way.
const QVector<DesignClass>& designDocsClasses();

}  // namespace lens
