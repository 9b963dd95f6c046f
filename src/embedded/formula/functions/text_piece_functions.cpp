#include <QHash>
#include <QVarLengthArray>

#include "embedded/formula/functions/text_units.h"

namespace lens::formula {
namespace {

// Where a piece begins or ends: after a number of characters, or at a text. Of a list the first counts.
struct Mark {
  explicit Mark(const Value& value) : isText(value.isText()) {
    if (!isText && !value.isNumber()) throw Fault{fault::WrongType};
    if (isText)
      text = value.text();
    else
      count = countOf(value.number());
  }
  // An empty text marks nothing.
  qsizetype first(const Call& call, QStringView where, qsizetype from = 0) const {
    return text.isEmpty() ? -1 : findFirst(call, where, text, from);
  }
  qsizetype last(const Call& call, QStringView where) const {
    return text.isEmpty() ? -1 : findLast(call, where, text);
  }
  bool isText;
  QStringView text;
  qsizetype count = 0;
};

// Where the text stays whole it is shared.
Text shared(const Text& whole, QStringView piece) {
  return piece.size() == whole.size() ? whole : Text(piece);
}

// --- Left and right -------------------------------------------------------------------------------------

Value left(const Call& call) {
  const Mark mark(call[1]);
  return mapTexts(call, call[0], [&](const Text& whole) {
    const QStringView text = whole.view();
    if (mark.isText) return Text(text.first(qMax<qsizetype>(0, mark.first(call, text))));
    return mark.count < 0 ? whole : shared(whole, text.first(forward(text, 0, mark.count)));
  });
}

Value leftBack(const Call& call) {
  const Mark mark(call[1]);
  return mapTexts(call, call[0], [&](const Text& whole) {
    const QStringView text = whole.view();
    if (mark.isText) return Text(text.first(qMax<qsizetype>(0, mark.last(call, text))));
    return mark.count < 0 ? whole : shared(whole, text.first(backward(text, text.size(), mark.count)));
  });
}

Text behind(QStringView text, qsizetype hit, const Mark& mark) {
  return hit < 0 ? Text() : Text(text.sliced(hit + mark.text.size()));
}

Value right(const Call& call) {
  const Mark mark(call[1]);
  return mapTexts(call, call[0], [&](const Text& whole) {
    const QStringView text = whole.view();
    if (mark.isText) return behind(text, mark.first(call, text), mark);
    return mark.count < 0 ? whole : shared(whole, text.sliced(backward(text, text.size(), mark.count)));
  });
}

Value rightBack(const Call& call) {
  const Mark mark(call[1]);
  return mapTexts(call, call[0], [&](const Text& whole) {
    const QStringView text = whole.view();
    if (mark.isText) return behind(text, mark.last(call, text), mark);
    return mark.count < 0 ? whole : shared(whole, text.sliced(forward(text, 0, mark.count)));
  });
}

// --- Middle ---------------------------------------------------------------------------------------------

// Where a piece starts: what goes to the right begins at `behind`, what goes to the left ends at `before`;
// they differ by the start text.
struct Start {
  qsizetype before = -1, behind = -1;
};

Start startAt(qsizetype hit, const Mark& mark) {
  return hit < 0 ? Start() : Start{hit, hit + mark.text.size()};
}

QStringView counted(QStringView text, const Start& start, qsizetype count) {
  if (count >= 0) return text.sliced(start.behind, forward(text, start.behind, count) - start.behind);
  const qsizetype begin = backward(text, start.before, -count);
  return text.sliced(begin, start.before - begin);
}

Value middle(const Call& call) {
  const Mark from(call[1]), to(call[2]);
  return mapViews(call, call[0], [&](QStringView text) {
    Start start;
    if (from.isText) {
      start = startAt(from.first(call, text), from);
    } else {
      const qsizetype offset = qMax<qsizetype>(0, from.count);
      if (offset <= characterCount(text)) start.before = start.behind = forward(text, 0, offset);
    }
    if (start.before < 0) return QStringView();
    if (!to.isText) return counted(text, start, to.count);
    const qsizetype end = to.first(call, text, start.behind);
    return end < 0 ? text.sliced(start.behind) : text.sliced(start.behind, end - start.behind);
  });
}

// From the right: the end of the text is the first place, and an end text stands left of the start.
Value middleBack(const Call& call) {
  const Mark from(call[1]), to(call[2]);
  return mapViews(call, call[0], [&](QStringView text) {
    Start start;
    if (from.isText) {
      start = startAt(from.last(call, text), from);
    } else {
      const qsizetype offset = qMax<qsizetype>(1, from.count) - 1;
      if (offset <= characterCount(text)) start.before = start.behind = backward(text, text.size(), offset);
    }
    if (start.before < 0) return QStringView();
    if (!to.isText) return counted(text, start, to.count);
    const QStringView room = text.first(start.before);
    const qsizetype end = to.last(call, room);
    return end < 0 ? room : room.sliced(end + to.text.size());
  });
}

// --- Words ----------------------------------------------------------------------------------------------

// The word behind that many separators; a null view when there are fewer.
QStringView wordAt(const Call& call, QStringView text, QStringView separator, qsizetype place) {
  qsizetype begin = 0;
  for (; place > 0; --place) {
    const qsizetype hit = findFirst(call, text, separator, begin);
    if (hit < 0) return {};
    begin = hit + separator.size();
  }
  const qsizetype end = findFirst(call, text, separator, begin);
  return text.sliced(begin, (end < 0 ? text.size() : end) - begin);
}

qsizetype separatorCount(const Call& call, QStringView text, QStringView separator) {
  qsizetype count = 0;
  for (qsizetype at = findFirst(call, text, separator); at >= 0; ++count)
    at = findFirst(call, text, separator, at + separator.size());
  return count;
}

Value word(const Call& call) {
  const QStringView separator = call[1].text();
  const qsizetype number = countOf(call[2].number());
  return mapTexts(call, call[0], [&](const Text& whole) {
    const QStringView text = whole.view();
    if (separator.isEmpty()) return number >= -1 && number <= 1 ? whole : Text();
    if (number >= 0) return Text(wordAt(call, text, separator, qMax<qsizetype>(number, 1) - 1));
    const qsizetype place = separatorCount(call, text, separator) + 1 + number;
    return place < 0 ? Text() : Text(wordAt(call, text, separator, place));
  });
}

// --- Replacing ------------------------------------------------------------------------------------------

// Where an element stands in the list of what is replaced; -1 for nowhere. Long lists are looked up by
// hash.
class Finder {
 public:
  Finder(const Call& call, const Value& wanted, qsizetype lookups) : call_(call), wanted_(wanted) {
    constexpr qsizetype kShort = 16;
    if (wanted.count() <= kShort || lookups <= kShort) return;
    places_.reserve(wanted.count());
    for (qsizetype i = wanted.count() - 1; i >= 0; --i) places_.insert(wanted.text(i), i);
  }
  qsizetype find(QStringView text) const {
    if (!places_.isEmpty()) return places_.value(text, -1);
    const qsizetype count = wanted_.count();
    if (count > 1) call_.charge(count);
    for (qsizetype i = 0; i < count; ++i)
      if (sameText(wanted_.text(i), text)) return i;
    return -1;
  }

 private:
  const Call& call_;
  const Value& wanted_;
  QHash<QStringView, qsizetype> places_;
};

Value replace(const Call& call) {
  const Value& to = call[2];
  const Finder finder(call, call[1], call[0].count());
  return mapTexts(call, call[0], [&](const Text& whole) {
    const qsizetype place = finder.find(whole.view());
    if (place < 0) return whole;
    return place < to.count() ? to.sharedText(place) : Text();
  });
}

// All hits first, so that the new text is as long as it must be and is written once.
Text withReplaced(const Call& call, const Text& whole, QStringView from, QStringView to) {
  const QStringView text = whole.view();
  qsizetype hit = findFirst(call, text, from);
  if (hit < 0 || from.isEmpty()) return whole;
  QVarLengthArray<quint32, 64> hits;
  for (; hit >= 0; hit = findFirst(call, text, from, hit + from.size())) hits.append(quint32(hit));
  call.charge(hits.size() + text.size() / 16);
  const qint64 size = text.size() + qint64(hits.size()) * (to.size() - from.size());
  if (size > kMaxBytes) throw Fault{fault::TextTooLong};
  if (size == 0) return Text();
  char16_t* out;
  Text result = Text::ofSize(qsizetype(size), out);
  const auto copy = [&out](QStringView piece) {
    std::memcpy(out, piece.utf16(), size_t(piece.size()) * sizeof(char16_t));
    out += piece.size();
  };
  qsizetype at = 0;
  for (const quint32 place : hits) {
    copy(text.sliced(at, place - at));
    copy(to);
    at = place + from.size();
  }
  copy(text.sliced(at));
  return result;
}

Value replaceSubstring(const Call& call) {
  const Value &from = call[1], &to = call[2];
  return mapTexts(call, call[0], [&](Text text) {
    if (from.count() > 1) call.charge(from.count());
    for (qsizetype i = 0; i < from.count(); ++i)
      text = withReplaced(call, text, from.text(i), to.text(qMin(i, to.count() - 1)));
    return text;
  });
}

constexpr Function kTextPieceFunctions[] = {
    {"@Left", 2, 2, "tv", "texts; count or search",
     "The beginning of each text: that many characters, or all that stands before the first place where the "
     "search text is found. A negative number gives the whole text; a search text that is not found gives "
     "the empty text.",
     left, trait::Pure},
    {"@LeftBack", 2, 2, "tv", "texts; count or search",
     "The beginning of each text without that many characters at its end, or all that stands before the last "
     "place where the search text is found.",
     leftBack, trait::Pure},
    {"@Middle", 3, 3, "tvv", "texts; start; count or end",
     "A piece from within each text. It starts behind that many characters or behind the start text, and "
     "has that many characters or ends before the end text. A negative count takes what stands before the "
     "start.",
     middle, trait::Pure},
    {"@MiddleBack", 3, 3, "tvv", "texts; start; count or end",
     "The same as @Middle, looked for from the right: a number as start counts from the right, where 1 is "
     "the end of the text, and an end text is looked for to the left of the start.",
     middleBack, trait::Pure},
    {"@Replace", 3, 3, "ttt", "texts; from; to",
     "Exchanges whole elements: one that equals an element of the second list becomes the element at the "
     "same place of the third, or the empty text when the third is shorter.",
     replace, trait::Pure},
    {"@ReplaceSubstring", 3, 3, "ttt", "texts; from; to",
     "Exchanges pieces of each text wherever they stand. Several pieces are exchanged one after the other, "
     "each in what the one before left.",
     replaceSubstring, trait::Pure},
    {"@Right", 2, 2, "tv", "texts; count or search",
     "The end of each text: that many characters, or all that stands behind the first place where the search "
     "text is found.",
     right, trait::Pure},
    {"@RightBack", 2, 2, "tv", "texts; count or search",
     "The end of each text without that many characters at its beginning, or all that stands behind the last "
     "place where the search text is found.",
     rightBack, trait::Pure},
    {"@Word", 3, 3, "ttn", "texts; separator; number",
     "One word of each text, by its number from 1, where words lie between separators; -1 is the last word. "
     "Two separators side by side have an empty word between them.",
     word, trait::Pure},
};

}  // namespace

std::span<const Function> textPieceFunctions() {
  return kTextPieceFunctions;
}

}  // namespace lens::formula
