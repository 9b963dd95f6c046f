// How the lists and tables of the client window are set up alike.
#pragma once

#include <QAction>
#include <QKeySequence>
#include <QString>
#include <QTableView>
#include <QWidget>

#include "controls/rich_text_box.h"

namespace lens {

// The monospace font, so that rows line up as in the tool's own lists.
void useListFont(QWidget& widget);

// Rows of the height that tables have.
void giveRowsRoom(QAbstractItemView& view);

// A table of whole rows of one height that Tab leaves.
void prepareTable(QTableView& table);

// A box in which a value of any length is read and copied; setText() fills it. Tab leaves it.
RichTextBox* readingBox(const QString& name, QWidget* parent);

// Keys of an action that work only inside a widget.
void giveKeys(QAction& action, const QList<QKeySequence>& keys, QWidget& where);
QList<QKeySequence> enterKeys();

// A pane with a label above; the label's mnemonic leads to the content, which is called so where it has no
// name of its own.
QWidget* labelled(const QString& caption, QWidget* content);

}  // namespace lens
