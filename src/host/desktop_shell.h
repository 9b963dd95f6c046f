// What a file browser asks of the desktop: opening a file, choosing a program for it, showing its properties.
#pragma once

#include <QString>
#include <QWidget>

namespace lens {

// Codes as Host::shellOpen tells them.
int openWithDesktop(const QString& path);
// Lets the user choose a program and starts it; its process ID, 0 when none was chosen or started.
qint64 openWithChosenProgram(QWidget* owner, const QString& path);
// A window of its own that blocks nothing.
void showFileProperties(QWidget* owner, const QString& path);

}  // namespace lens
