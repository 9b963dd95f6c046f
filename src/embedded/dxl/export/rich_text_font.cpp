#include "embedded/dxl/export/rich_text_font.h"

#include "embedded/dxl/rich_text_records.h"
#include "notes/literals.h"

namespace lens {

namespace {

bool isNamed(const RichFont& font) {
  quint8 styled = 0;
  return !fontFaceName(font.face).isEmpty() && !fontColorName(font.color).isEmpty() &&
         fontStyle(fontStyleWords(font.attributes), styled) && styled == font.attributes &&
         font.points >= 1 && font.points <= 250;
}

}  // namespace

bool writeFontElement(DxlWriter& out, const RichFont& font) {
  if (!isNamed(font)) return false;
  out.begin(u"font"_s);
  if (font.face != RichFont().face) out.attribute(u"name"_s, fontFaceName(font.face));
  out.attribute(u"size"_s, u"%1pt"_s.arg(font.points));
  if (font.attributes != 0) out.attribute(u"style"_s, fontStyleWords(font.attributes));
  if (font.color != 0) out.attribute(u"color"_s, fontColorName(font.color));
  out.end();
  return true;
}

bool beginRun(DxlWriter& out, const RichFont& font) {
  if (!isNamed(font)) return false;
  out.begin(u"run"_s);
  return writeFontElement(out, font);
}

}  // namespace lens
