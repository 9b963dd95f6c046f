// What a list box tells screen readers: a list, its rows, and which of them is current.
#pragma once

#include <QAccessible>

namespace lens {

// Null for whatever is no list box. For QAccessible::installFactory.
QAccessibleInterface* accessibleListBox(const QString& className, QObject* object);

}  // namespace lens
