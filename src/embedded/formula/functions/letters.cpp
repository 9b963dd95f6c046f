#include "embedded/formula/functions/letters.h"

#include <QHash>
#include <QVarLengthArray>
#include <array>

#include "embedded/formula/functions/text_units.h"

namespace lens::formula {
namespace {

using Units = QVarLengthArray<char16_t, 256>;

Text textOf(const Units& units) {
  return Text(QStringView(units.constData(), units.size()));
}

// --- Capitals -----------------------------------------------------------------------------------------

// In ASCII without a branch, so that many characters are changed at a time.
struct ToLower {
  static char16_t ascii(char16_t unit) {
    return char16_t(unit + (unit >= u'A' && unit <= u'Z') * (u'a' - u'A'));
  }
  static char32_t any(char32_t character) { return QChar::toLower(character); }
};
struct ToUpper {
  static char16_t ascii(char16_t unit) {
    return char16_t(unit - (unit >= u'a' && unit <= u'z') * (u'a' - u'A'));
  }
  static char32_t any(char32_t character) { return QChar::toUpper(character); }
};

// Every character has a counterpart as long as itself, so the result has the size of the text.
template <typename Case>
void changeAll(QStringView text, char16_t* out) {
  for (qsizetype at = 0; at < text.size();) {
    const char32_t changed = Case::any(nextCharacter(text, at));
    if (QChar::requiresSurrogates(changed)) {
      *out++ = QChar::highSurrogate(changed);
      *out++ = QChar::lowSurrogate(changed);
    } else {
      *out++ = char16_t(changed);
    }
  }
}

template <typename Case>
Text changed(const Text& text) {
  const qsizetype size = text.size();
  if (size == 0) return text;
  const char16_t* const from = text.view().utf16();
  char16_t* to;
  Text result = Text::ofSize(size, to);
  char16_t seen = 0;
  for (qsizetype i = 0; i < size; ++i) {
    seen |= from[i];
    to[i] = Case::ascii(from[i]);
  }
  if (seen >= 0x80) changeAll<Case>(text.view(), to);
  return result;
}

Text proper(QStringView text) {
  char16_t* out;
  Text result = Text::ofSize(text.size(), out);
  bool begins = true;
  for (qsizetype at = 0; at < text.size();) {
    const char32_t character = nextCharacter(text, at);
    const char32_t written = begins ? QChar::toTitleCase(character) : QChar::toLower(character);
    begins = QChar::isSpace(character);
    if (QChar::requiresSurrogates(written)) {
      *out++ = QChar::highSurrogate(written);
      *out++ = QChar::lowSurrogate(written);
    } else {
      *out++ = char16_t(written);
    }
  }
  return result;
}

// --- Plain letters ------------------------------------------------------------------------------------

// Letters and signs that do not come apart into an ASCII letter and a mark.
QStringView asciiOf(char32_t character) {
  switch (character) {
    case U'Æ':
      return u"AE";
    case U'æ':
      return u"ae";
    case U'Œ':
      return u"OE";
    case U'œ':
      return u"oe";
    case U'ß':
      return u"ss";
    case U'Ø':
      return u"O";
    case U'ø':
      return u"o";
    case U'Đ':
    case U'Ð':
      return u"D";
    case U'đ':
    case U'ð':
      return u"d";
    case U'Þ':
      return u"Th";
    case U'þ':
      return u"th";
    case U'Ł':
      return u"L";
    case U'ł':
      return u"l";
    case U'ı':
      return u"i";
    case U'‘':
    case U'’':
    case U'‚':
      return u"'";
    case U'“':
    case U'”':
    case U'„':
    case U'«':
    case U'»':
      return u"\"";
    case U'‐':
    case U'‑':
    case U'–':
    case U'—':
    case U'−':
      return u"-";
    case U'⁄':
      return u"/";
    default:
      return u"?";
  }
}

bool isAscii(QStringView text) {
  char16_t seen = 0;
  for (const QChar c : text) seen |= c.unicode();
  return seen < 0x80;
}

QString plain(QStringView text) {
  const QString apart = text.toString().normalized(QString::NormalizationForm_KD);
  QString result;
  result.reserve(apart.size());
  for (qsizetype at = 0; at < apart.size();) {
    const char32_t character = nextCharacter(apart, at);
    if (character < 0x80)
      result.append(QChar(char16_t(character)));
    else if (!QChar::isMark(character))
      result.append(asciiOf(character));
  }
  return result;
}

char soundexCode(char16_t letter) {
  static constexpr char kCodes[] = "01230120022455012623010202";
  return kCodes[letter - u'A'];
}

// Equal codes count once when they stand side by side, or with H or W between; vowels part them.
QString soundexOf(QStringView text) {
  QString result;
  char last = '0';
  const QString letters = isAscii(text) ? text.toString() : plain(text);
  for (const QChar c : letters) {
    const char16_t letter = ToUpper::ascii(c.unicode());
    if (letter < u'A' || letter > u'Z') continue;
    const char code = soundexCode(letter);
    if (result.isEmpty())
      result.append(QChar(letter));
    else if (code != '0' && code != last)
      result.append(QLatin1Char(code));
    if (letter != u'H' && letter != u'W') last = code;
    if (result.size() == 4) break;
  }
  return result.isEmpty() ? result : result.leftJustified(4, u'0');
}

// --- Widths -------------------------------------------------------------------------------------------

// Half width forms of Japanese letters, and their full width ones.
struct Kana {
  std::array<char16_t, 0xFFA0 - 0xFF61> full{};
  QHash<char16_t, char16_t> half;
  Kana() {
    for (char16_t unit = 0xFF61; unit <= 0xFF9F; ++unit) {
      const QString wide = QChar(unit).decomposition();
      full[unit - 0xFF61] = wide.isEmpty() ? unit : wide[0].unicode();
      half.insert(full[unit - 0xFF61], unit);
    }
  }
};

const Kana& kana() {
  static const Kana instance;
  return instance;
}

constexpr char16_t kWideBlank = 0x3000, kWideFirst = 0xFF01, kWideLast = 0xFF5E, kWideOffset = 0xFEE0;

void appendNarrow(Units& units, char16_t unit) {
  if (unit == kWideBlank) return units.append(u' ');
  if (unit >= kWideFirst && unit <= kWideLast) return units.append(char16_t(unit - kWideOffset));
  if (const char16_t half = kana().half.value(unit)) return units.append(half);
  // A letter with a sound mark has one half width form for the letter and one for the mark.
  const QString apart = unit > kWideBlank && unit < 0x3100 ? QChar(unit).decomposition() : QString();
  const char16_t letter = apart.size() == 2 ? kana().half.value(apart[0].unicode()) : u'\0';
  const char16_t mark = apart.size() == 2 ? kana().half.value(apart[1].unicode()) : u'\0';
  if (!letter || !mark) return units.append(unit);
  units.append(letter);
  units.append(mark);
}

char16_t wideUnit(char16_t unit) {
  if (unit == u' ') return kWideBlank;
  if (unit > u' ' && unit < 0x7F) return char16_t(unit + kWideOffset);
  return unit >= 0xFF61 && unit <= 0xFF9F ? kana().full[unit - 0xFF61] : unit;
}

// Code page 850 from 0x80 on; what stands below is ASCII.
constexpr char16_t kCodePage[] =
    u"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜø£Ø×ƒáíóúñÑªº¿®¬½¼¡«»░▒▓│┤ÁÂÀ©╣║╗╝¢¥┐└┴┬├─┼ãÃ╚╔╩╦╠═╬¤"
    u"ðÐÊËÈıÍÎÏ┘┌█▄¦Ì▀ÓßÔÒõÕµþÞÚÛÙýÝ¯´\u00AD±‗¾¶§÷¸°¨·¹³²■\u00A0";
static_assert(std::size(kCodePage) == 129);

}  // namespace

Value lowerCase(const Call& call) {
  return mapTexts(call, call[0], changed<ToLower>);
}

Value upperCase(const Call& call) {
  return mapTexts(call, call[0], changed<ToUpper>);
}

Value properCase(const Call& call) {
  return mapViews(call, call[0], proper);
}

Value soundex(const Call& call) {
  return mapViews(call, call[0], [](QStringView text) { return Text(soundexOf(text)); });
}

Value ascii(const Call& call) {
  const bool allOrNone = call.has(1);
  return mapTexts(call, call[0], [&](const Text& text) {
    const Text mapped = isAscii(text.view()) ? text : Text(plain(text.view()));
    return allOrNone && mapped.view().contains(u'?') ? Text() : mapped;
  });
}

Value characterOfCode(const Call& call) {
  const Value& codes = call[0];
  ListBuilder result(Type::Text, codes.count());
  for (qsizetype i = 0; i < codes.count(); ++i) {
    const qsizetype code = countOf(codes.number(i));
    if (code < 0 || code > 255) throw Fault{fault::CannotCompute};
    const char16_t unit = code < 0x80 ? char16_t(code) : kCodePage[code - 0x80];
    result.addText(QStringView(&unit, 1));
  }
  return result.take();
}

Value narrow(const Call& call) {
  return mapViews(call, call[0], [](QStringView text) {
    Units units;
    for (const QChar c : text) appendNarrow(units, c.unicode());
    return textOf(units);
  });
}

Value wide(const Call& call) {
  return mapViews(call, call[0], [](QStringView text) {
    Units units;
    for (const QChar c : text) {
      const char16_t unit = wideUnit(c.unicode());
      // A sound mark joins the letter before it where there is a letter with it.
      const bool isMark = unit == 0x3099 || unit == 0x309A;
      if (!isMark || units.isEmpty()) {
        units.append(unit);
        continue;
      }
      const QString joined =
          QString(QChar(units.last())).append(QChar(unit)).normalized(QString::NormalizationForm_C);
      units.removeLast();
      for (const QChar part : joined) units.append(part.unicode());
    }
    return textOf(units);
  });
}

}  // namespace lens::formula
