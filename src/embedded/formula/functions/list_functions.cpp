// Lists: counting, finding, splitting and sorting their elements.
#include <QRandomGenerator>
#include <bitset>
#include <cmath>
#include <string>

#include "embedded/formula/function.h"
#include "embedded/formula/functions/sorting.h"
#include "embedded/formula/functions/text_set.h"
#include "embedded/formula/functions/text_units.h"

namespace lens::formula {
namespace {

bool isEmptyText(const Value& value) {
  return value.isText() && value.count() == 1 && value.text().isEmpty();
}

Value count(const Call& call) {
  return Value::number(double(call[0].count()));
}
Value elements(const Call& call) {
  return Value::number(isEmptyText(call[0]) ? 0.0 : double(call[0].count()));
}

// --- Finding -------------------------------------------------------------------------------------------

// The place of a text, from 0; -1 when it is not there.
qsizetype indexIn(QStringView text, const Value& list) {
  const qsizetype count = list.count();
  for (qsizetype i = 0; i < count; ++i)
    if (list.text(i) == text) return i;
  return -1;
}

TextSet setOf(const Value& list) {
  TextSet texts(list.count());
  for (qsizetype i = 0; i < list.count(); ++i) texts.insert(list.text(i));
  return texts;
}

// Whether every text of the first list is in the second one, or none is.
bool allAre(const Value& texts, const Value& list, bool members) {
  constexpr qsizetype kFewComparisons = 64;
  const qsizetype count = texts.count();
  if (count == 1 || qint64(count) * list.count() <= kFewComparisons) {
    for (qsizetype i = 0; i < count; ++i)
      if ((indexIn(texts.text(i), list) >= 0) != members) return false;
    return true;
  }
  const TextSet known = setOf(list);
  for (qsizetype i = 0; i < count; ++i)
    if (known.contains(texts.text(i)) != members) return false;
  return true;
}

Value isMember(const Call& call) {
  call.charge(call[0].count() + call[1].count());
  return Value::truth(allAre(call[0], call[1], true));
}
Value isNotMember(const Call& call) {
  call.charge(call[0].count() + call[1].count());
  return Value::truth(allAre(call[0], call[1], false));
}
Value member(const Call& call) {
  call.charge(call[1].count());
  return Value::number(double(indexIn(call[0].text(), call[1]) + 1));
}

Value unique(const Call& call) {
  if (!call.has(0)) {
    static constexpr char kSigns[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    QString text;
    for (int i = 0; i < 10; ++i) {
      if (i == 4) text += u'-';
      text += QLatin1Char(kSigns[QRandomGenerator::system()->bounded(int(sizeof kSigns) - 1)]);
    }
    return Value::text(text);
  }
  const Value& list = call[0];
  const qsizetype count = list.count();
  if (count == 1) return list;
  call.charge(count);
  TextSet seen(count);
  ListBuilder result(Type::Text, count);
  for (qsizetype i = 0; i < count; ++i)
    if (seen.insert(list.text(i))) result.addElement(list, i);
  return result.take();
}

// --- Splitting -----------------------------------------------------------------------------------------

// The characters that end a word; a pair of surrogates is one.
class Separators {
 public:
  void add(QStringView characters) {
    for (qsizetype at = 0; at < characters.size();) {
      const char32_t character = nextCharacter(characters, at);
      if (character < low_.size())
        low_.set(character);
      else
        others_ += character;
    }
  }
  bool has(char32_t character) const {
    return character < low_.size() ? low_.test(character) : others_.find(character) != std::u32string::npos;
  }

 private:
  std::bitset<256> low_;
  std::u32string others_;
};

// Hands on what stands between separators; a CR LF pair counts as one.
template <typename Word>
void splitText(QStringView text, const Separators& separators, Word&& word) {
  qsizetype from = 0;
  for (qsizetype at = 0; at < text.size();) {
    const qsizetype here = at;
    const char32_t character = nextCharacter(text, at);
    if (!separators.has(character)) continue;
    word(text.sliced(from, here - from));
    if (character == U'\r' && at < text.size() && text[at] == u'\n' && separators.has(U'\n')) ++at;
    from = at;
  }
  word(text.sliced(from));
}

void addDays(const TimePair& range, const LocalZone& zone, ListBuilder& result) {
  const Civil from = civilOf(range.from, zone), to = civilOf(range.to, zone);
  if (!from.hasDate || !to.hasDate) throw Fault{fault::TimeExpected};
  if (qint64(to.day) - from.day >= kMaxElements - result.count()) throw Fault{fault::TooManyDays};
  for (qint32 day = from.day; day <= to.day; ++day) result.addTime(timeDateOf({true, false, day, 0}, zone));
}

Value daysOf(const Call& call) {
  const Value& ranges = call[0];
  ListBuilder result(Type::Time);
  for (qsizetype i = 0; i < ranges.count(); ++i) {
    const bool single = ranges.isTime();
    const qsizetype before = result.count();
    addDays(single ? TimePair{ranges.time(i), ranges.time(i)} : ranges.range(i), call.zone(), result);
    call.charge(1 + result.count() - before);
  }
  return result.take();
}

Value explode(const Call& call) {
  const Value& texts = call[0];
  if (texts.isTime() || texts.type() == Type::TimeRange) return daysOf(call);
  if (!texts.isText()) return Value::error(fault::TextExpected);
  Separators separators;
  if (call.has(1))
    for (qsizetype i = 0; i < call[1].count(); ++i) separators.add(call[1].text(i));
  else
    separators.add(u" ,;");
  const bool keepEmpty = call.has(2) && call[2].number() != 0;
  if (!call.has(3) || call[3].number() != 0) separators.add(u"\r\n");
  ListBuilder result(Type::Text);
  for (qsizetype i = 0; i < texts.count(); ++i) {
    call.charge(1 + texts.text(i).size());
    splitText(texts.text(i), separators, [&](QStringView word) {
      if (keepEmpty || !word.isEmpty()) result.addText(word);
    });
  }
  return result.take();
}

// Whether a run of characters anywhere in the texts is the wanted one.
bool anyContains(const Call& call, const Value& texts, QStringView wanted) {
  for (qsizetype i = 0; i < texts.count(); ++i) {
    call.charge(1 + texts.text(i).size());
    if (texts.text(i).contains(wanted)) return true;
  }
  return false;
}

Value keywords(const Call& call) {
  const Value &texts = call[0], &wanted = call[1];
  Separators separators;
  bool anyRun = call.has(2);
  if (call.has(2)) {
    for (qsizetype i = 0; i < call[2].count(); ++i) {
      separators.add(call[2].text(i));
      anyRun = anyRun && call[2].text(i).isEmpty();
    }
  } else {
    separators.add(u"?. ,!;:[](){}\"<>");
  }
  TextSet wantedWords = setOf(wanted), found(wanted.count());
  if (!anyRun)
    for (qsizetype i = 0; i < texts.count(); ++i) {
      call.charge(1 + texts.text(i).size());
      splitText(texts.text(i), separators, [&](QStringView word) {
        if (wantedWords.contains(word)) found.insert(word);
      });
    }
  call.charge(wanted.count());
  ListBuilder result(Type::Text);
  for (qsizetype i = 0; i < wanted.count(); ++i) {
    const QStringView word = wanted.text(i);
    if (word.isEmpty()) continue;
    if (anyRun ? anyContains(call, texts, word) : found.contains(word)) result.addElement(wanted, i);
  }
  return result.take();
}

// --- Choosing and sorting ------------------------------------------------------------------------------

Value select(const Call& call) {
  const double place = call[0].number();
  const int last = call.count() - 1;
  return call[place >= last ? last : place >= 1 ? int(place) : 1];
}

Value subset(const Call& call) {
  const Value& list = call[0];
  const qsizetype count = list.count();
  const double wanted = std::trunc(call[1].number());
  if (wanted == 0) return Value::error(fault::SubsetOfZero);
  if (!(std::abs(wanted) < double(count))) return list;
  const qsizetype size = qsizetype(std::abs(wanted)), from = wanted < 0 ? count - size : 0;
  if (size == 1) return list.element(from);
  call.charge(size);
  ListBuilder result(list.type(), size);
  for (qsizetype i = 0; i < size; ++i) result.addElement(list, from + i);
  return result.take();
}

Value sort(const Call& call) {
  const SortOrder order = call.has(1) ? readSortOrder(call[1]) : SortOrder();
  // Without the expression that compares there is nothing to sort by.
  if (order.custom) return Value::error(fault::WrongKeyword);
  const qsizetype count = call[0].count();
  qsizetype rounds = 1;
  while (qsizetype(1) << rounds < count) ++rounds;
  call.charge(count * rounds);
  return sorted(call[0], order, call.zone());
}

constexpr const char* kSortKeywords =
    "ASCENDING DESCENDING CASESENSITIVE CASEINSENSITIVE ACCENTSENSITIVE ACCENTINSENSITIVE PITCHSENSITIVE "
    "PITCHINSENSITIVE CUSTOMSORT";

constexpr Function kListFunctions[] = {
    {"@Count", 1, 1, "v", "list", "How many elements the list has. The empty text counts as one element.",
     count, trait::Pure},
    {"@Elements", 1, 1, "v", "list", "How many elements the list has; 0 for the empty text.", elements,
     trait::Pure},
    {"@Explode", 1, 4, "vtn", "text; separators; empties; line breaks",
     "Splits texts into a list wherever one of the separators stands; without them at blanks, commas and "
     "semicolons. Empty pieces are left out unless the third argument is true, and line breaks separate "
     "unless the fourth one is false. Of a time range it gives the days.",
     explode},
    {"@IsMember", 2, 2, "t", "texts; list",
     "1 when the text is an element of the list; of several texts all must be. Case counts.", isMember,
     trait::Pure},
    {"@IsNotMember", 2, 2, "t", "texts; list",
     "1 when the text is no element of the list; of several texts none may be. Case counts.", isNotMember,
     trait::Pure},
    {"@Keywords", 2, 3, "t", "texts; words; separators",
     "Those of the words that occur in the texts as whole words. The separators say where a word ends; with "
     "an empty text as separators a word is found inside other words too. Case counts.",
     keywords, trait::Pure},
    {"@Member", 2, 2, "t", "text; list",
     "The place of the text in the list, counted from 1; 0 when it is not there. Case counts.", member,
     trait::Pure},
    {"@Nothing", 0, 0, "", "", "As the result of one round of @Transform: adds no element to the list.",
     nullptr, 0, Form::Nothing},
    {"@Select", 2, kAnyCount, "nv", "number; values...",
     "The value at that place among the ones that follow, counted from 1. A number that is too large takes "
     "the last value, one below 1 the first.",
     select, trait::Pure},
    {"@Sort", 1, 3, "vkv", "list; [order]; expression",
     "Sorts the list, ascending and with case, accents and width told apart unless keywords say otherwise. "
     "With [CUSTOMSORT] the expression compares $A with $B; a number above 0 puts $A behind $B.",
     sort, 0, Form::Sort, kSortKeywords},
    {"@Subset", 2, 2, "vn", "list; count",
     "The first elements of the list, as many as the number says, or the last ones for a negative number.",
     subset, trait::Pure},
    {"@Transform", 3, 3, "vtv", "list; variable name; expression",
     "Computes the expression for each element, which it finds in the variable, and gives the results as a "
     "list. A round may give several elements, or none with @Nothing.",
     nullptr, 0, Form::Transform},
    {"@Unique", 0, 1, "t", "list",
     "The list with each text only once, where it stood first. Case counts. Without a list: a random text.",
     unique},
};

}  // namespace

std::span<const Function> listFunctions() {
  return kListFunctions;
}

}  // namespace lens::formula
