// The program's own pictures. They are drawn, so they are sharp at every scale of the screen. Those that
// stand on a button's ground are drawn for the colours of the application as they are now.
#pragma once

#include <QIcon>
#include <QPixmap>
#include <QSize>

namespace lens::pictures {

QIcon program();       // a document under a lens: window, tray and Picture1
QIcon history();       // an arrow back: cmdScroll
QIcon clearHistory();  // a page with a cross: cmdDelRT
QIcon folder();        // a folder: choosing a file
QIcon cross();         // a cross: emptying a box or a list
QIcon check();         // a checked box: marking all rows
QPixmap about(const QSize& size);

}  // namespace lens::pictures
