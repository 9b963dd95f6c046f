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

// "cmdGetDoc_Click in inspector/document_capture.cpp"
QString procedureIn(const QString& control, QString event, const QString& file) {
  event[0] = event[0].toUpper();
  return control + u'_' + event + u" in "_s + file;
}

struct IndexRow {
  QString control;
  QString caption;  // as it is on the screen; empty where there is none
  QStringList events;
  QString file;
};

QVector<IndexRow> indexOfControls() {
  static const QRegularExpression line(u"^\\| `(\\w+)` \\| ([^|]*) \\| ([^|]+) \\| `([\\w/]+\\.cpp)` \\|$"_s,
                                       QRegularExpression::MultilineOption);
  static const QRegularExpression code(u"`(\\w+)`"_s);
  const QString document = textOfFile(u"docs/architecture.md"_s);
  const QString section = document.section(u"## From a control to its file\n"_s, 1).section(u"\n## "_s, 0, 0);
  QVector<IndexRow> rows;
  for (const QRegularExpressionMatch& match : line.globalMatch(section)) {
    IndexRow row{match.captured(1), match.captured(2).trimmed(), {}, match.captured(4)};
    for (const QRegularExpressionMatch& event : code.globalMatch(match.captured(3)))
      row.events += event.captured(1);
    rows += row;
  }
  return rows;
}

// Every event of the main window and its controls that a source connects to a procedure. The window's own are
// called by other names than its procedures.
QSet<QString> connectedProcedures() {
  static const QRegularExpression ofControl(u"form_?\\.(\\w+)->(\\w+)\\s*=\\s*\\["_s);
  static const QRegularExpression ofMenu(u"\\*\\S*form_?\\.(mnu\\w+)\\s*=\\s*\\["_s);
  static const QRegularExpression ofWindow(u"form_?\\.(\\w+)\\s*=\\s*\\["_s);
  static const QHash<QString, QString> windowEvents = {{u"resized"_s, u"Resize"_s}};
  const QString root = QStringLiteral(LENS_SOURCE_DIR "/src/");
  QSet<QString> found;
  QDirIterator files(root, {u"*.cpp"_s}, QDir::Files, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString file = files.next().mid(root.size());
    const QString text = textOfFile(u"src/"_s + file);
    for (const QRegularExpressionMatch& match : ofControl.globalMatch(text))
      found += procedureIn(match.captured(1), match.captured(2), file);
    for (const QRegularExpressionMatch& match : ofMenu.globalMatch(text))
      found += procedureIn(match.captured(1), u"click"_s, file);
    for (const QRegularExpressionMatch& match : ofWindow.globalMatch(text)) {
      const QString event = match.captured(1);
      if (!event.startsWith(u"mnu"_s))
        found += procedureIn(u"Form"_s, windowEvents.value(event, event), file);
    }
  }
  return found;
}

QString captionOf(const QString& control) {
  const QString ui = textOfFile(u"src/shell/form1.ui"_s);
  const QString widget = ui.section(u"name=\"%1\">"_s.arg(control), 1).section(u"<widget "_s, 0, 0);
  QString caption = widget.section(u"name=\"text\"><string>"_s, 1).section(u"</string>"_s, 0, 0);
  return caption.replace(u"&amp;"_s, u"&"_s).remove(u'&');
}

TEST(ControlIndex, NamesTheFileOfEachProcedure) {
  const QVector<IndexRow> rows = indexOfControls();
  EXPECT_GT(rows.size(), 50);
  for (const IndexRow& row : rows) {
    const QString source = textOfFile(u"src/"_s + row.file);
    EXPECT_FALSE(row.events.isEmpty()) << row.control.toStdString();
    for (const QString& event : row.events)
      EXPECT_TRUE(source.contains(u"::%1_%2("_s.arg(row.control, event)))
          << row.file.toStdString() << " has no " << row.control.toStdString() << '_' << event.toStdString();
  }
}

TEST(ControlIndex, HoldsEveryConnectedEventAndNoOther) {
  QSet<QString> told;
  for (const IndexRow& row : indexOfControls())
    for (const QString& event : row.events) told += procedureIn(row.control, event, row.file);
  const QSet<QString> connected = connectedProcedures();
  EXPECT_GT(connected.size(), 60);
  for (const QString& procedure : connected - told)
    ADD_FAILURE() << "not in the index: " << procedure.toStdString();
  for (const QString& procedure : told - connected)
    ADD_FAILURE() << "connected nowhere: " << procedure.toStdString();
}

TEST(ControlIndex, HasTheCaptionsOfTheScreen) {
  for (const IndexRow& row : indexOfControls())
    EXPECT_EQ(row.caption.toStdString(), captionOf(row.control).toStdString()) << row.control.toStdString();
}

}  // namespace
