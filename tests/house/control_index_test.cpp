// The index of controls in docs/architecture.md leads a stranger from what is on the screen to the procedure
// behind it: each row is true, and no connected event lacks in it.

#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>

namespace {
using namespace Qt::StringLiterals;

QString textOfFile(const QString& path) {
  QFile file(QStringLiteral(LENS_SOURCE_DIR "/") + path);
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// "cmdGetDoc_Click"
QString procedureOf(const QString& control, QString event) {
  event[0] = event[0].toUpper();
  return control + u'_' + event;
}

struct IndexRow {
  QString control;
  QString caption;  // as it is on the screen; empty where there is none
  QStringList events;
  QString file;
};

// A window with its own index.
struct IndexedWindow {
  QString heading;   // of its index
  QString ui;        // its file
  QString variable;  // as sources call it
  QString folder;    // of these sources; other windows may be called so too in theirs
  int events;        // so many at least are connected
};

QVector<IndexedWindow> indexedWindows() {
  return {{u"## From a control to its file\n"_s, u"src/shell/form1.ui"_s, u"form"_s, QString(), 60},
          {u"### Controls of the bulk tool\n"_s, u"src/bulk/frm_replic.ui"_s, u"window"_s, u"bulk"_s, 15}};
}

QVector<IndexRow> indexOfControls(const IndexedWindow& window) {
  static const QRegularExpression line(u"^\\| `(\\w+)` \\| ([^|]*) \\| ([^|]+) \\| `([\\w/]+\\.cpp)` \\|$"_s,
                                       QRegularExpression::MultilineOption);
  static const QRegularExpression code(u"`(\\w+)`"_s);
  const QString document = textOfFile(u"docs/architecture.md"_s);
  static const QRegularExpression nextHeading(u"\n##+ "_s);
  const QString section = document.section(window.heading, 1).section(nextHeading, 0, 0);
  QVector<IndexRow> rows;
  for (const QRegularExpressionMatch& match : line.globalMatch(section)) {
    IndexRow row{match.captured(1), match.captured(2).trimmed(), {}, match.captured(4)};
    for (const QRegularExpressionMatch& event : code.globalMatch(match.captured(3)))
      row.events += event.captured(1);
    rows += row;
  }
  return rows;
}

// Every event of a window and its controls that a source connects to a procedure. The window's own are called
// by other names than its procedures.
QSet<QString> connectedProcedures(const IndexedWindow& window) {
  const QString variable = u"\\b"_s + window.variable + u"_?"_s;
  const QRegularExpression ofControl(variable + u"\\.(\\w+)->(\\w+)\\s*=\\s*\\["_s);
  const QRegularExpression ofMenu(u"\\*\\S*"_s + variable + u"\\.(mnu\\w+)\\s*=\\s*\\["_s);
  const QRegularExpression ofWindow(variable + u"\\.(\\w+)\\s*=\\s*\\["_s);
  static const QHash<QString, QString> windowEvents = {{u"resized"_s, u"Resize"_s}};
  const QString root = QStringLiteral(LENS_SOURCE_DIR "/src/");
  QSet<QString> found;
  QDirIterator files(root + window.folder, {u"*.cpp"_s}, QDir::Files, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString text = textOfFile(u"src/"_s + files.next().mid(root.size()));
    for (const QRegularExpressionMatch& match : ofControl.globalMatch(text))
      found += procedureOf(match.captured(1), match.captured(2));
    for (const QRegularExpressionMatch& match : ofMenu.globalMatch(text))
      found += procedureOf(match.captured(1), u"click"_s);
    for (const QRegularExpressionMatch& match : ofWindow.globalMatch(text)) {
      const QString event = match.captured(1);
      if (!event.startsWith(u"mnu"_s)) found += procedureOf(u"Form"_s, windowEvents.value(event, event));
    }
  }
  return found;
}

QString captionOf(const QString& control, const QString& uiFile) {
  const QString ui = textOfFile(uiFile);
  const QString widget = ui.section(u"name=\"%1\">"_s.arg(control), 1).section(u"<widget "_s, 0, 0);
  // What a box holds at first is no caption.
  if (!widget.isEmpty() && (control.startsWith(u"txt"_s) || control == u"Form")) return {};
  QString caption = widget.section(u"name=\"text\"><string>"_s, 1).section(u"</string>"_s, 0, 0);
  return caption.replace(u"&amp;"_s, u"&"_s).remove(u'&');
}

TEST(ControlIndex, NamesTheFileOfEachProcedure) {
  for (const IndexedWindow& window : indexedWindows()) {
    for (const IndexRow& row : indexOfControls(window)) {
      const QString source = textOfFile(u"src/"_s + row.file);
      EXPECT_FALSE(row.events.isEmpty()) << row.control.toStdString();
      for (const QString& event : row.events)
        EXPECT_TRUE(source.contains(u"::%1_%2("_s.arg(row.control, event)))
            << row.file.toStdString() << " has no " << row.control.toStdString() << '_'
            << event.toStdString();
    }
  }
}

TEST(ControlIndex, HoldsEveryConnectedEventAndNoOther) {
  for (const IndexedWindow& window : indexedWindows()) {
    QSet<QString> told;
    for (const IndexRow& row : indexOfControls(window))
      for (const QString& event : row.events) told += procedureOf(row.control, event);
    const QSet<QString> connected = connectedProcedures(window);
    EXPECT_GE(connected.size(), window.events) << window.ui.toStdString();
    for (const QString& procedure : connected - told)
      ADD_FAILURE() << "not in the index: " << procedure.toStdString();
    for (const QString& procedure : told - connected)
      ADD_FAILURE() << "connected nowhere: " << procedure.toStdString();
  }
}

TEST(ControlIndex, HasTheCaptionsOfTheScreen) {
  for (const IndexedWindow& window : indexedWindows())
    for (const IndexRow& row : indexOfControls(window))
      EXPECT_EQ(row.caption.toStdString(), captionOf(row.control, window.ui).toStdString())
          << row.control.toStdString();
}

}  // namespace
