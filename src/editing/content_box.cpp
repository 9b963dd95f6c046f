#include "editing/content_box.h"

#include "controls/fonts.h"
#include "controls/keys.h"
#include "notes/literals.h"
#include "shell/text_routines.h"

namespace lens {

ContentBox::ContentBox(Desk& desk) : desk_(desk) {
  desk_.form.txtFieldContent->change = [this] { txtFieldContent_Change(); };
  desk_.form.txtFieldContent->keyDown = [this](int keyCode, int shift) {
    txtFieldContent_KeyDown(keyCode, shift);
  };
  desk_.form.txtFieldContent->selChange = [this] { txtFieldContent_SelChange(); };
  desk_.form.cmdScroll->click = [this] { cmdScroll_Click(); };
  desk_.form.cmdDelRT->click = [this] { cmdDelRT_Click(); };
}

void ContentBox::txtFieldContent_Change() {
  const QString text = trimBlanks(desk_.form.txtFieldContent->text());
  if (text.isEmpty()) return;
  if (!desk_.state.gContentPages.contains(text)) {
    contentPageKey_ += 1;
    desk_.state.gContentPages += text;
  }
  if (desk_.state.gContentPages.size() > 1) desk_.form.cmdScroll->setVisible(true);
  if (!desk_.state.gContentPages.isEmpty()) desk_.form.cmdDelRT->setVisible(true);
}

void ContentBox::cmdScroll_Click() {
  const QStringList& pages = desk_.state.gContentPages;
  const QString shown = desk_.form.txtFieldContent->text();
  const qsizetype found = pages.indexOf(trimBlanks(shown)) + 1;
  // Behind the last page, and from a text that is none of them, it begins with the first.
  qsizetype page = found == 0 || found == pages.size() ? 0 : found;
  do {
    if (++page > pages.size()) return;
  } while (pages[page - 1] == shown);
  desk_.form.txtFieldContent->setText(pages[page - 1]);
  if (desk_.form.width() >= desk_.form.screen()->size().width())
    desk_.layout.ResizeOneControl(u"txtFieldContent"_s);
}

void ContentBox::cmdDelRT_Click() {
  desk_.state.gContentPages.clear();
  desk_.form.txtFieldContent->setText(QString());
  desk_.form.cmdScroll->setVisible(false);
  desk_.form.cmdDelRT->setVisible(false);
}

void ContentBox::txtFieldContent_SelChange() {
  const RichTextBox& box = *desk_.form.txtFieldContent;
  const int position = box.selStart();
  const int line = box.lineFromChar(position);
  int column = 0;
  LinesBackFromChar(box, line, position, column);
  desk_.form.sbrMain->setPanelText(u"MainText"_s, u"Line %1     Pos %2"_s.arg(line + 1).arg(column + 1));
  QString font = u"Font: "_s;
  // The family that is seen: another one stands in where the wanted one is not installed.
  if (const auto name = box.selFontName()) font += installedFamily(*name);
  if (const auto size = box.selFontSize()) font += u' ' + QString::number(*size);
  desk_.form.sbrMain->setPanelText(u"FontInfo"_s, font);
}

void ContentBox::txtFieldContent_KeyDown(int keyCode, int) {
  if (keyCode != key::Insert) return;
  const QString panel = u"Overwrite"_s;
  desk_.form.sbrMain->setPanelEnabled(panel, !desk_.form.sbrMain->isPanelEnabled(panel));
}

}  // namespace lens
