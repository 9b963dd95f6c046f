// Colours and fonts of the rich text box.
#include <QScopedValueRollback>
#include <algorithm>
#include <utility>

#include "controls/fonts.h"
#include "controls/look.h"
#include "controls/rich_text_box.h"

namespace lens {
namespace {

// The common value of all runs of the selection, or of the character before an empty one.
template <class Value, class Read>
std::optional<Value> commonValue(const TextLooks& looks, int start, int length, Read read) {
  if (length == 0) return read(looks.at(std::max(0, start - 1)));
  std::optional<Value> common;
  bool differs = false;
  looks.forEach(start, start + length, [&](int, int, const TextLook& look) {
    const Value value = read(look);
    differs = differs || (common && *common != value);
    common = value;
  });
  return differs ? std::nullopt : common;
}

quint32 bgrOf(const QColor& colour) {
  return quint32(colour.red()) | quint32(colour.green()) << 8 | quint32(colour.blue()) << 16;
}

QTextCharFormat formatOf(const TextLook& look, const QPalette& palette) {
  QTextCharFormat format;
  if (look.colour) {
    const QColor told(*look.colour & 0xFF, *look.colour >> 8 & 0xFF, *look.colour >> 16 & 0xFF);
    format.setForeground(colour::shownText(told, palette));
  }
  if (look.fontName) format.setFontFamilies({installedFamily(*look.fontName)});
  if (look.fontSize) format.setFontPointSize(*look.fontSize);
  if (look.bold) format.setFontWeight(QFont::Bold);
  if (look.italic) format.setFontItalic(true);
  if (look.underline) format.setFontUnderline(true);
  if (look.strikeThrough) format.setFontStrikeOut(true);
  return format;
}

}  // namespace

// One edit for all of the changed part, so that it is laid out once.
void RichTextBox::applyLooks() {
  QScopedValueRollback<bool> working(ownWork_, true);
  const int from = std::max(std::exchange(looksFrom_, 0), partFrom_);
  const int to = std::min(std::exchange(looksTo_, 0), partTo_);
  if (from >= to) return;
  QTextCursor cursor(document());
  cursor.beginEditBlock();
  looks_.forEach(from, to, [&](int runFrom, int runTo, const TextLook& look) {
    cursor.setPosition(toDocument(runFrom));
    cursor.setPosition(toDocument(runTo), QTextCursor::KeepAnchor);
    cursor.setCharFormat(formatOf(look, palette()));
  });
  cursor.endEditBlock();
}

void RichTextBox::touchLooks(int from, int to) {
  if (from >= to) return;
  const bool none = looksTo_ <= looksFrom_;
  looksFrom_ = none ? from : std::min(looksFrom_, from);
  looksTo_ = none ? to : std::max(looksTo_, to);
  viewport()->update();
}

template <class Change>
void RichTextBox::changeLook(Change change) {
  looks_.change(selStart_, selStart_ + selLength_, change);
  touchLooks(selStart_, selStart_ + selLength_);
}

void RichTextBox::setSelColor(quint32 bgr) {
  changeLook([&](TextLook& look) { look.colour = bgr & 0xFFFFFF; });
}

void RichTextBox::setSelFontName(const QString& family) {
  changeLook([&](TextLook& look) { look.fontName = family; });
}

void RichTextBox::setSelFontSize(int points) {
  changeLook([&](TextLook& look) { look.fontSize = std::max(1, points); });
}

void RichTextBox::setSelBold(bool bold) {
  changeLook([&](TextLook& look) { look.bold = bold; });
}

void RichTextBox::setSelItalic(bool italic) {
  changeLook([&](TextLook& look) { look.italic = italic; });
}

void RichTextBox::setSelUnderline(bool underline) {
  changeLook([&](TextLook& look) { look.underline = underline; });
}

void RichTextBox::setSelStrikeThru(bool strikeThrough) {
  changeLook([&](TextLook& look) { look.strikeThrough = strikeThrough; });
}

std::optional<quint32> RichTextBox::selColor() const {
  const quint32 inherited = bgrOf(palette().color(QPalette::Active, QPalette::Text));
  return commonValue<quint32>(looks_, selStart_, selLength_,
                              [&](const TextLook& look) { return look.colour.value_or(inherited); });
}

quint32 RichTextBox::colorAt(int position) const {
  const quint32 inherited = bgrOf(palette().color(QPalette::Active, QPalette::Text));
  return looks_.at(std::max(0, position)).colour.value_or(inherited);
}

std::optional<QString> RichTextBox::selFontName() const {
  return commonValue<QString>(looks_, selStart_, selLength_,
                              [&](const TextLook& look) { return look.fontName.value_or(font().family()); });
}

std::optional<int> RichTextBox::selFontSize() const {
  return commonValue<int>(looks_, selStart_, selLength_,
                          [&](const TextLook& look) { return look.fontSize.value_or(font().pointSize()); });
}

}  // namespace lens
