#include <vector>

#include "embedded/formula/collation.h"
#include "embedded/formula/functions/abstracts.h"
#include "embedded/formula/functions/letters.h"
#include "embedded/formula/functions/number_text.h"
#include "embedded/formula/functions/passwords.h"
#include "embedded/formula/functions/patterns.h"
#include "embedded/formula/functions/text_units.h"
#include "embedded/formula/functions/url_text.h"
#include "embedded/formula/time_text.h"

namespace lens::formula {
namespace {

constexpr qsizetype kMostRepeated = 1024;  // characters that @Repeat gives

// --- Searching and comparing ----------------------------------------------------------------------------

Value begins(const Call& call) {
  return anyPair(call, [](QStringView text, QStringView piece) {
    return piece.size() <= text.size() && sameText(text.first(piece.size()), piece);
  });
}

Value ends(const Call& call) {
  return anyPair(call, [](QStringView text, QStringView piece) {
    return piece.size() <= text.size() && sameText(text.last(piece.size()), piece);
  });
}

Value contains(const Call& call) {
  return anyPair(call,
                 [&](QStringView text, QStringView piece) { return findFirst(call, text, piece) >= 0; });
}

CollationRules rulesOf(const Value& keywords) {
  CollationRules rules;
  for (qsizetype i = 0; i < keywords.count(); ++i) {
    const QStringView word = keywords.text(i);
    const bool sensitive = !word.contains(u"INSENSITIVE");
    if (word.startsWith(u"CASE")) rules.caseSensitive = sensitive;
    if (word.startsWith(u"ACCENT")) rules.accentSensitive = sensitive;
    if (word.startsWith(u"PITCH")) rules.pitchSensitive = sensitive;
  }
  return rules;
}

Value compare(const Call& call) {
  const Value &left = call[0], &right = call[1];
  const CollationRules rules = call.has(2) ? rulesOf(call[2]) : CollationRules();
  const qsizetype count = qMax(left.count(), right.count());
  ListBuilder result(Type::Number, count);
  for (qsizetype i = 0; i < count; ++i) {
    const QStringView a = left.text(qMin(i, left.count() - 1)), b = right.text(qMin(i, right.count() - 1));
    call.charge(1 + qMin(a.size(), b.size()) / 4);
    result.addNumber(compareTexts(a, b, rules));
  }
  return result.take();
}

// Patterns are read once, however many texts they meet.
template <typename Pattern, typename Fits>
Value anyFits(const Call& call, const std::vector<Pattern>& patterns, Fits&& fits) {
  const Value& texts = call[0];
  for (qsizetype i = 0; i < texts.count(); ++i)
    for (const Pattern& pattern : patterns) {
      call.charge(pattern.work(texts.text(i).size()));
      if (fits(pattern, texts.text(i))) return Value::truth(true);
    }
  return Value::truth(false);
}

Value like(const Call& call) {
  qsizetype at = 0;
  const QStringView escape = call.has(2) ? call[2].text() : QStringView();
  const char32_t escapeCharacter = escape.isEmpty() ? U'\0' : nextCharacter(escape, at);
  std::vector<PatternRow> patterns;
  patterns.reserve(size_t(call[1].count()));
  for (qsizetype i = 0; i < call[1].count(); ++i)
    patterns.push_back(likePattern(call[1].text(i), escapeCharacter));
  return anyFits(call, patterns,
                 [](const PatternRow& row, QStringView text) { return row.matches(text, false); });
}

Value matches(const Call& call) {
  std::vector<MatchPattern> patterns;
  patterns.reserve(size_t(call[1].count()));
  for (qsizetype i = 0; i < call[1].count(); ++i) patterns.emplace_back(call[1].text(i));
  return anyFits(call, patterns,
                 [](const MatchPattern& pattern, QStringView text) { return pattern.matches(text); });
}

// --- Putting together and trimming ----------------------------------------------------------------------

void copyTo(char16_t*& out, QStringView piece) {
  std::memcpy(out, piece.utf16(), size_t(piece.size()) * sizeof(char16_t));
  out += piece.size();
}

Value implode(const Call& call) {
  const Value& list = call[0];
  const qsizetype count = list.count();
  if (count == 1) return list;
  const QStringView separator = call.has(1) ? call[1].text() : QStringView(u" ");
  call.charge(count);
  qint64 size = qint64(count - 1) * separator.size();
  for (qsizetype i = 0; i < count; ++i) size += list.text(i).size();
  if (size > kMaxBytes) throw Fault{fault::TextTooLong};
  if (size == 0) return Value::text(Text());
  char16_t* out;
  Text text = Text::ofSize(qsizetype(size), out);
  for (qsizetype i = 0; i < count; ++i) {
    if (i > 0) copyTo(out, separator);
    copyTo(out, list.text(i));
  }
  return Value::text(std::move(text));
}

Value length(const Call& call) {
  const Value& list = call[0];
  if (list.count() == 1) {
    chargeText(call, list.text().size());
    return Value::number(double(characterCount(list.text())));
  }
  Toll toll(call);
  ListBuilder result(Type::Number, list.count());
  for (qsizetype i = 0; i < list.count(); ++i) {
    toll.add(1 + list.text(i).size() / 8);
    result.addNumber(double(characterCount(list.text(i))));
  }
  return result.take();
}

Value newLine(const Call&) {
  return Value::text(u"\n");
}

Value repeat(const Call& call) {
  const qsizetype times = qMax<qsizetype>(0, countOf(call[1].number()));
  const qsizetype most =
      call.has(2) ? qBound<qsizetype>(0, countOf(call[2].number()), kMostRepeated) : kMostRepeated;
  return mapTexts(call, call[0], [&](const Text& whole) {
    const QStringView text = whole.view();
    const qsizetype each = characterCount(text);
    if (each == 0 || times == 0 || most == 0) return Text();
    const qsizetype all = qMin(qMin(times, most) * each, most);
    const QStringView rest = text.first(forward(text, 0, all % each));
    const qsizetype size = all / each * text.size() + rest.size();
    char16_t* out;
    Text result = Text::ofSize(size, out);
    for (qsizetype copies = all / each; copies > 0; --copies) copyTo(out, text);
    copyTo(out, rest);
    return result;
  });
}

// Units that are left without blanks at the ends and with one blank for each run inside.
qsizetype trimmedSize(QStringView text) {
  qsizetype size = 0;
  bool blank = true;
  for (const QChar c : text) {
    const bool nowBlank = c == u' ';
    size += !(nowBlank && blank);
    blank = nowBlank;
  }
  return blank && size > 0 ? size - 1 : size;
}

Text trimmed(const Text& whole) {
  const qsizetype size = trimmedSize(whole.view());
  if (size == whole.size()) return whole;
  if (size == 0) return Text();
  char16_t* out;
  Text result = Text::ofSize(size, out);
  char16_t* const end = out + size;
  bool blank = true;
  for (const QChar c : whole.view()) {
    const bool nowBlank = c == u' ';
    if (out < end && !(nowBlank && blank)) *out++ = c.unicode();
    blank = nowBlank;
  }
  return result;
}

Value trim(const Call& call) {
  const Value& list = call[0];
  if (list.count() == 1) {
    chargeText(call, list.text().size());
    return Value::text(trimmed(list.sharedText()));
  }
  Toll toll(call);
  ListBuilder result(Type::Text, list.count());
  for (qsizetype i = 0; i < list.count(); ++i) {
    toll.add(1 + list.text(i).size() / 8);
    Text text = trimmed(list.sharedText(i));
    if (text.size() > 0) result.addText(std::move(text));
  }
  return result.take();
}

// --- Numbers and times ----------------------------------------------------------------------------------

Value numbersAsTexts(const Call& call, const Value& numbers) {
  const Region& region = call.region();
  const bool formatted = call.has(1);
  const NumberFormat format = formatted ? readNumberFormat(call[1].text()) : NumberFormat();
  const auto text = [&](double number) {
    return formatted ? Text(numberText(number, format, region)) : numberAsText(number, region);
  };
  if (numbers.count() == 1) return Value::text(text(numbers.number()));
  ListBuilder result(Type::Text, numbers.count());
  for (qsizetype i = 0; i < numbers.count(); ++i) result.addText(text(numbers.number(i)));
  return result.take();
}

Value timesAsTexts(const Call& call, const Value& times) {
  const TimeFormat format = call.has(1) ? readTimeFormat(call[1].text()) : TimeFormat();
  const TimeReading reading{call.region(), call.zone(), call.environment().now()};
  const bool ranges = times.type() == Type::TimeRange;
  ListBuilder result(Type::Text, times.count());
  for (qsizetype i = 0; i < times.count(); ++i) {
    call.charge(4);
    if (!ranges) {
      result.addText(timeText(times.time(i), format, reading));
      continue;
    }
    const TimePair range = times.range(i);
    const bool single = packTime(range.from) == packTime(range.to);
    result.addText(single ? timeText(range.from, format, reading) : rangeText(range, format, reading));
  }
  return result.take();
}

Value text(const Call& call) {
  const Value& value = call[0];
  switch (value.type()) {
    case Type::Text:
      return value;
    case Type::Number:
      return numbersAsTexts(call, value);
    case Type::Time:
    case Type::TimeRange:
      return timesAsTexts(call, value);
    case Type::Keyword:
      return Value::texts(value.toTexts());
    case Type::Unavailable:
      throw Fault{fault::UnavailableUsed};
    default:
      return Value::text(Text());
  }
}

Value textToNumber(const Call& call) {
  const Value& texts = call[0];
  const Region& region = call.region();
  ListBuilder result(Type::Number, texts.count());
  for (qsizetype i = 0; i < texts.count(); ++i) {
    double number = 0;
    if (!readNumber(texts.text(i), region, number)) return Value::error(fault::NotANumber);
    result.addNumber(number);
  }
  return result.take();
}

Value toNumber(const Call& call) {
  if (call[0].isNumber()) return call[0];
  return call[0].isText() ? textToNumber(call) : Value::error(fault::NotANumber);
}

// --- The table ------------------------------------------------------------------------------------------

constexpr Function kTextFunctions[] = {
    {"@Abstract", 4, 4, "kntt", "[keywords]; size; beginning; names",
     "Puts together the texts of the named items behind a beginning, shortened as the keywords say and cut "
     "at "
     "the size, in characters.",
     abstract, 0, Form::Call, nullptr,
     "Of the keywords, DROPVOWELS, TRIMPUNCT, TRIMWHITE, INITCAPS and TRYFIT have an effect; there is no "
     "list "
     "of abbreviated words."},
    {"@AbstractSimple", 1, 1, "t", "names",
     "The first 100 characters or the first two paragraphs of the named items, whichever is less.",
     abstractSimple},
    {"@Ascii", 1, 2, "tk", "texts; [ALLINRANGE]",
     "Writes each text with plain ASCII characters: letters lose their accents, and what has no counterpart "
     "becomes a question mark. With ALLINRANGE, a text with a question mark gives the empty text.",
     ascii, trait::Pure, Form::Call, "ALLINRANGE"},
    {"@Begins", 2, 2, "tt", "texts; pieces",
     "True when any of the texts begins with any of the pieces. Case counts.", begins, trait::Pure},
    {"@Char", 1, 1, "n", "codes", "The character with each code of code page 850, from 0 to 255.",
     characterOfCode, trait::Pure},
    {"@Compare", 2, 3, "ttk", "texts; texts; [options]",
     "Compares texts pair by pair in the order of dictionaries, small letters before capitals of the same "
     "letter: -1, 0 or 1 for each pair.",
     compare, trait::Pure, Form::Call,
     "CASESENSITIVE CASEINSENSITIVE ACCENTSENSITIVE ACCENTINSENSITIVE PITCHSENSITIVE PITCHINSENSITIVE"},
    {"@Contains", 2, 2, "tt", "texts; pieces",
     "True when any of the texts has any of the pieces in it. Case counts; an empty piece is always found.",
     contains, trait::Pure},
    {"@Ends", 2, 2, "tt", "texts; pieces",
     "True when any of the texts ends with any of the pieces. Case counts.", ends, trait::Pure},
    {"@HashPassword", 1, 1, "t", "texts",
     "A digest of each password that differs every time and that @VerifyPassword can check.", hashPassword, 0,
     Form::Call, nullptr,
     "The digest is made by a way of its own: a Domino server does not take it, nor this program a "
     "server's."},
    {"@Implode", 1, 2, "tt", "texts; separator",
     "Joins the elements of a list to one text, with a blank or the separator between them.", implode,
     trait::Pure},
    {"@Length", 1, 1, "t", "texts", "The number of characters of each text.", length, trait::Pure},
    {"@Like", 2, 3, "ttt", "texts; patterns; escape",
     "True when a whole text fits a pattern, where _ is any one character and % any number of them. The "
     "escape makes the sign behind it stand for itself. Case counts.",
     like, trait::Pure},
    {"@LowerCase", 1, 1, "t", "texts", "Each text in small letters.", lowerCase, trait::Pure},
    {"@Matches", 2, 2, "tt", "texts; patterns",
     "True when a whole text fits a pattern: ? is one character, * any number, {A-F} one of a set, {!A-F} "
     "one "
     "that is not in it, + before a character or set any number of it; ! & | are not, and, or. Case counts "
     "in sets only; a backslash makes a sign stand for itself.",
     matches, trait::Pure},
    {"@Narrow", 1, 1, "t", "texts", "Each text with full width characters turned to half width.", narrow,
     trait::Pure},
    {"@NewLine", 0, 0, "", "", "A line break.", newLine, trait::Pure},
    {"@Password", 1, 1, "t", "texts", "A digest of each password: 32 hexadecimal digits in parentheses.",
     password, trait::Pure, Form::Call, nullptr,
     "The digits are not those that a Domino server makes of the same password."},
    {"@PasswordQuality", 1, 1, "t", "texts", "How hard each password is to guess, from 0 to 16.",
     passwordQuality, trait::Pure, Form::Call, nullptr,
     "An estimate by length and kinds of characters; words of a dictionary are not known."},
    {"@ProperCase", 1, 1, "t", "texts",
     "Each text with the first letter of every word as a capital and the rest small.", properCase,
     trait::Pure},
    {"@Repeat", 2, 3, "tnn", "texts; number; most",
     "Each text that many times over, cut at the most characters given, and at 1,024.", repeat, trait::Pure},
    {"@Soundex", 1, 1, "t", "texts",
     "A letter and three digits for how each text sounds in English, so that names can be found in spite of "
     "their spelling.",
     soundex, trait::Pure},
    {"@Text", 1, 2, "vt", "values; format",
     "Values as text. Numbers take G, F, S or C for general, fixed, scientific or currency, a number of "
     "digits, and a comma, % or () for thousands, percent and negative numbers. Times take D0-D3, T0-T1, "
     "Z0-Z2, and S0-S3 or Sx for what is shown of them.",
     text},
    {"@TextToNumber", 1, 2, "tv", "texts; option",
     "The number that each text begins with; an error when one begins with none.", textToNumber},
    {"@ToNumber", 1, 1, "v", "values",
     "Texts as the numbers that they begin with; numbers stay. An error when one cannot be read.", toNumber},
    {"@Trim", 1, 1, "t", "texts",
     "Each text without blanks at its ends and with single blanks inside; elements that become empty are "
     "left "
     "out.",
     trim, trait::Pure},
    {"@UpperCase", 1, 1, "t", "texts", "Each text in capitals.", upperCase, trait::Pure},
    {"@URLDecode", 2, 2, "tt", "character set; texts",
     "Texts from an Internet address with their %XX turned back to characters. The character set is "
     "\"Domino\" for UTF-8, \"Platform\", or a MIME name.",
     urlDecode, trait::Pure},
    {"@URLEncode", 2, 2, "tt", "character set; texts",
     "Texts as they may stand in an Internet address: what could be taken for a sign of it becomes %XX.",
     urlEncode, trait::Pure},
    {"@VerifyPassword", 2, 2, "tt", "texts; digests",
     "True when the passwords belong to the digests of @Password or @HashPassword.", verifyPassword,
     trait::Pure, Form::Call, nullptr, "Digests that a Domino server made are not known."},
    {"@Wide", 1, 1, "t", "texts", "Each text with half width characters turned to full width.", wide,
     trait::Pure},
};

}  // namespace

std::span<const Function> textFunctions() {
  return kTextFunctions;
}

}  // namespace lens::formula
