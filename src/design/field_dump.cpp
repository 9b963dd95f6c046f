#include "design/field_dump.h"

#include "host/dump_file.h"
#include "host/paths.h"
#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/error_modes.h"

namespace lens {
namespace {

constexpr int kUsualWidth = 80;

Procedure ofWindow(const char16_t* name) {
  return {QString::fromUtf16(name), u"Formular frmDumpToFile"_s};
}

int widthOf(const QString& text) {
  const Int16 width = roundToInt32(numberPrefix(text));
  return width > 0 ? int(width) : kUsualWidth;
}

}  // namespace

FieldDump::FieldDump(Desk& desk) : desk_(desk) {
  desk_.form.cmdDump->click = [this] { cmdDump_Click(); };
}

void FieldDump::cmdDump_Click() {
  if (desk_.form.fldList->listCount() < 1) return;
  auto* window = new DumpToFile(&desk_.form);
  window->cmdOpenFile->click = [this, window] { cmdOpenFile_Click(*window); };
  window->cmdOK->click = [this, window] { cmdOK_Click(*window); };
  window->cmdCancel->click = [this, window] { cmdCancel_Click(*window); };
  Form_Load(*window);
  // Before it is shown: a window that changes its place in the pile vanishes for a moment.
  desk_.routines.StayNotOnTop(*window);
  window->show();
}

void FieldDump::Form_Load(DumpToFile& window) {
  trapped(desk_.host, ofWindow(u"Form_Load"), [&] { desk_.routines.CenterForm(window); });
}

// Giving up empties the box.
void FieldDump::cmdOpenFile_Click(DumpToFile& window) {
  trapped(desk_.host, ofWindow(u"cmdOpenFile_Click"), [&] {
    window.cmdDialog1->showSave();
    window.txtDumpFile->setText(window.cmdDialog1->fileName());
  });
}

void FieldDump::cmdCancel_Click(DumpToFile& window) {
  trapped(desk_.host, ofWindow(u"cmdCancel_Click"), [&] { window.close(); });
}

void FieldDump::cmdOK_Click(DumpToFile& window) {
  trapped(desk_.host, ofWindow(u"cmdOK_Click"), [&] {
    const int width = widthOf(window.txtWidth->text());
    const QString path = typedPath(window.txtDumpFile->text());
    DumpFile file(path);
    file.write(lines(width, window.chkContent->value() == 1));
    if (openFile) openFile(path);
    window.hide();
    window.close();
  });
}

// The width counts before line ends are replaced, so a pair of them that it cuts apart leaves its half.
QStringList FieldDump::lines(int width, bool content) {
  QStringList lines;
  for (int row = 0; row < desk_.form.fldList->listCount(); ++row) {
    const QString text = desk_.form.fldList->list(row);
    lines += content ? desk_.routines.ReplaceAll(text.left(width), u"\r\n"_s, u";"_s)
                     : desk_.routines.LeftFrom(text, u":"_s);
  }
  return lines;
}

}  // namespace lens
