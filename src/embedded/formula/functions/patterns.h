// The patterns of @Like and @Matches. Matching takes at most pattern times text steps and no more memory
// than the pattern, whatever either says.
#pragma once

#include <QStringView>
#include <QVarLengthArray>
#include <vector>

namespace lens::formula {

// One character of a pattern, and whether it may stand any number of times.
struct PatternPart {
  enum class Kind : quint8 { Literal, Any, Set };
  Kind kind = Kind::Literal;
  bool repeated = false;
  bool negated = false;  // of a set
  char32_t literal = 0;  // folded where case does not count
  quint32 set = 0;       // first range of a set in the pattern's ranges
  quint32 setSize = 0;   // ranges of the set
};

// A row of parts that a whole text must fit.
class PatternRow {
 public:
  struct Range {
    char32_t first, last;
  };
  void addLiteral(char32_t literal, bool repeated = false);
  void addAny(bool repeated = false);
  // The part stands before its ranges are added.
  void beginSet(bool negated, bool repeated);
  void addRange(char32_t first, char32_t last);

  bool matches(QStringView text, bool foldsCase) const;
  // Steps that matching a text of that size may take.
  qint64 work(qint64 textSize) const;

 private:
  bool fits(const PatternPart& part, char32_t character, char32_t folded) const;
  bool matchesWithRuns(QStringView text, bool foldsCase) const;
  bool matchesWithStates(QStringView text, bool foldsCase) const;

  QVarLengthArray<PatternPart, 16> parts_;  // short patterns need no memory of their own
  std::vector<Range> ranges_;
  bool repeatsOthers_ = false;  // something but "any character" is repeated
};

// A pattern of @Like: "_" one character, "%" any run, the escape makes the next character literal. An
// escape of 0 is none.
PatternRow likePattern(QStringView pattern, char32_t escape);

// A pattern of @Matches: rows joined with "&" and "|" ("&" binds tighter), each with "!" for not.
// Malformed patterns are read as they can be: a sign with nothing to act on stands for itself.
class MatchPattern {
 public:
  explicit MatchPattern(QStringView pattern);
  bool matches(QStringView text) const;
  qint64 work(qint64 textSize) const;

 private:
  struct Term {
    PatternRow row;
    bool negated = false;
    bool endsGroup = false;  // "|" or the end follows
  };
  qsizetype readTerm(QStringView pattern, qsizetype at);
  QVarLengthArray<Term, 1> terms_;
};

}  // namespace lens::formula
