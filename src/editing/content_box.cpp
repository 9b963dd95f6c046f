#include "editing/content_box.h"

#include "controls/keys.h"
#include "notes/literals.h"
#include "shell/text_routines.h"

namespace lens {

ContentBox::ContentBox(Form1& form, Globals& state, WindowLayout& layout)
    : form_(form), state_(state), layout_(layout) {
  form_.txtFieldContent->change = [this] { txtFieldContent_Change(); };
  form_.txtFieldContent->keyDown = [this](int keyCode, int shift) {
    txtFieldContent_KeyDown(keyCode, shift);
  };
  form_.txtFieldContent->selChange = [this] { txtFieldContent_SelChange(); };
  form_.cmdScroll->click = [this] { cmdScroll_Click(); };
  form_.cmdDelRT->click = [this] { cmdDelRT_Click(); };
}

void ContentBox::txtFieldContent_Change() {
  const QString text = trimBlanks(form_.txtFieldContent->text());
  if (text.isEmpty()) return;
  if (!state_.gContentPages.contains(text)) {
    contentPageKey_ += 1;
    state_.gContentPages += text;
  }
  if (state_.gContentPages.size() > 1) form_.cmdScroll->setVisible(true);
  if (state_.gContentPages.size() > 0) form_.cmdDelRT->setVisible(true);
}

void ContentBox::cmdScroll_Click() {
  const QStringList& pages = state_.gContentPages;
  const QString shown = form_.txtFieldContent->text();
  const qsizetype found = pages.indexOf(trimBlanks(shown)) + 1;
  // Behind the last page, and from a text that is none of them, it begins with the first.
  qsizetype page = found == 0 || found == pages.size() ? 0 : found;
  do {
    if (++page > pages.size()) return;
  } while (pages[page - 1] == shown);
  form_.txtFieldContent->setText(pages[page - 1]);
  if (form_.width() >= form_.screen()->size().width()) layout_.ResizeOneControl(u"txtFieldContent"_s);
}

void ContentBox::cmdDelRT_Click() {
  state_.gContentPages.clear();
  form_.txtFieldContent->setText(QString());
  form_.cmdScroll->setVisible(false);
  form_.cmdDelRT->setVisible(false);
}

void ContentBox::txtFieldContent_SelChange() {
  const RichTextBox& box = *form_.txtFieldContent;
  const int position = box.selStart();
  const int line = box.lineFromChar(position);
  int column = 0;
  LinesBackFromChar(box, line, position, column);
  form_.sbrMain->setPanelText(u"MainText"_s, u"Line %1     Pos %2"_s.arg(line + 1).arg(column + 1));
  QString font = u"Font: "_s;
  if (const auto name = box.selFontName()) font += *name;
  if (const auto size = box.selFontSize()) font += u' ' + QString::number(*size);
  form_.sbrMain->setPanelText(u"FontInfo"_s, font);
}

void ContentBox::txtFieldContent_KeyDown(int keyCode, int) {
  if (keyCode != key::Insert) return;
  const QString panel = u"Overwrite"_s;
  form_.sbrMain->setPanelEnabled(panel, !form_.sbrMain->isPanelEnabled(panel));
}

}  // namespace lens
