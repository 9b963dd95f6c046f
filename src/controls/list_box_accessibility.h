// What a list box tells screen readers: a list, its rows, and which of them is current.
#pragma once

#include <QAccessible>

class QAbstractItemView;

namespace lens {

// For a list of one column, which it must not outlive.
QAccessibleInterface* accessibleList(QAbstractItemView* list);

}  // namespace lens
