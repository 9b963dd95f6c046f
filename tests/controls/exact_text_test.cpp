#include "controls/exact_text.h"

#include <random>

#include "control_test.h"

namespace lens {
namespace {

// Line ends found one after the other from the beginning, and every answer counted over all of them.
class PlainModel {
 public:
  explicit PlainModel(const QString& text) : text_(text) {
    for (int at = 0; at < text.size();) {
      const QStringView rest = QStringView(text).sliced(at);
      int length = 0;
      for (const char16_t* end : {u"\r\r\n", u"\r\n", u"\r", u"\n"})
        if (length == 0 && rest.startsWith(QStringView(end))) length = int(QStringView(end).size());
      if (length > 0) ends_.push_back({at, length});
      at += std::max(1, length);
    }
  }
  int lineEnds() const { return int(ends_.size()); }
  bool isInside(int position) const {
    for (const auto& [at, length] : ends_)
      if (position > at && position < at + length) return true;
    return false;
  }
  int toDocument(int position) const {
    int shift = 0;
    for (const auto& [at, length] : ends_) {
      if (position > at && position < at + length) return at - shift;
      if (at + length <= position) shift += length - 1;
    }
    return position - shift;
  }
  int lineOf(int position) const {
    int line = 0;
    for (const auto& [at, length] : ends_) line += at + length <= position;
    return line;
  }
  int lineStart(int line) const {
    if (line <= 0) return 0;
    if (line > lineEnds()) return int(text_.size());
    return ends_[line - 1].first + ends_[line - 1].second;
  }

 private:
  QString text_;
  QVector<QPair<int, int>> ends_;
};

void expectLikeModel(const ExactText& exact, const QString& text) {
  const PlainModel model(text);
  ASSERT_EQ(exact.text(), text);
  ASSERT_EQ(exact.lineEndCount(), model.lineEnds());
  ASSERT_EQ(exact.documentLength(), model.toDocument(int(text.size())));
  for (int position = 0; position <= text.size(); ++position) {
    const int place = model.toDocument(position);
    ASSERT_EQ(exact.toDocument(position), place) << position;
    ASSERT_EQ(exact.isInsideLineEnd(position), model.isInside(position)) << position;
    ASSERT_EQ(exact.lineOf(position), model.lineOf(position)) << position;
    if (model.isInside(position)) continue;
    ASSERT_EQ(exact.fromDocument(place), position);
  }
  for (int line = -1; line <= model.lineEnds() + 1; ++line)
    ASSERT_EQ(exact.lineStart(line), model.lineStart(line)) << line;
}

QString randomText(std::mt19937& random, int length, int lineEndsInTen) {
  QString text;
  for (int i = 0; i < length; ++i)
    text += int(random() % 10) < lineEndsInTen ? QChar(random() % 2 ? u'\r' : u'\n') : QChar(u'a');
  return text;
}

TEST(ExactText, AnswersAsAPlainCountOverAllLineEnds) {
  std::mt19937 random(3);
  for (const int often : {0, 1, 5, 9, 10}) {
    for (const int length : {0, 1, 2, 511, 512, 513, 514, 1100}) {
      const QString text = randomText(random, length, often);
      ExactText exact;
      exact.setText(text);
      expectLikeModel(exact, text);
      ASSERT_FALSE(testing::Test::HasFailure()) << often << ' ' << length;
    }
  }
}

TEST(ExactText, EveryReplacementIsCountedAnew) {
  std::mt19937 random(5);
  QString text = randomText(random, 1300, 6);
  ExactText exact;
  exact.setText(text);
  for (int round = 0; round < 12; ++round) {
    const int position = int(random() % (text.size() + 1));
    const int removed = int(random() % std::min<qsizetype>(30, text.size() - position + 1));
    const QString added = randomText(random, int(random() % 30), 8);
    text.replace(position, removed, added);
    exact.replace(position, removed, added);
    expectLikeModel(exact, text);
    ASSERT_FALSE(testing::Test::HasFailure()) << round << ' ' << position;
  }
}

}  // namespace
}  // namespace lens
