#include "design/evaluation_result.h"

#include <QtEndian>
#include <functional>
#include <limits>

#include "shell/error_modes.h"

namespace lens {
namespace {

constexpr quint16 kTextList = 0x0501;
constexpr quint16 kNumberList = 0x0301;
constexpr qsizetype kCountAt = 2;
constexpr qsizetype kLengthsAt = 4;
constexpr qsizetype kNumbersAt = 6;

// Hands out the library's entries one after the other, and only what lies in the block.
class CheckedEntries {
 public:
  CheckedEntries(QByteArrayView block, TextListReader& list) : block_(block), list_(list) {}

  // As many entries as the block has room for; a list that reports none has one all the same. The counter
  // of entries is a signed 16-bit number.
  qsizetype most() const {
    return qBound(qsizetype(1), (block_.size() - kLengthsAt) / 2,
                  qsizetype(std::numeric_limits<qint16>::max()));
  }
  qsizetype count() { return qBound(qsizetype(1), qsizetype(list_.count()), most()); }
  QByteArrayView at(qsizetype index) {
    const QByteArrayView entry = list_.entry(quint16(index));
    return isInside(entry) ? entry : QByteArrayView();
  }

 private:
  bool isInside(QByteArrayView entry) const {
    const std::less_equal<const char*> before;
    return !entry.isEmpty() && before(block_.begin(), entry.begin()) && before(entry.begin(), block_.end()) &&
           entry.size() <= block_.end() - entry.begin();
  }

  QByteArrayView block_;
  TextListReader& list_;
};

// From the first entry on no failure ends the reading: the statement behind it goes on with what was there.
QVector<Value> readTexts(QByteArrayView block, TextListReader& list,
                         const std::function<QString(QByteArrayView)>& textOf) {
  CheckedEntries entries(block, list);
  qsizetype count = entries.count();
  // Entries that overlap are no list; together they are never longer than the block.
  qsizetype left = block.size();
  Continue step;
  QByteArrayView entry;
  QVector<Value> values;
  for (;; ++count) {
    while (values.size() < count) {
      step([&] { entry = entries.at(values.size()); });
      left -= entry.size();
      Value value;
      step([&] { value = entry.isEmpty() || left < 0 ? QString() : textOf(entry); });
      values.push_back(value);
    }
    // The reported count may be short, which an entry behind it tells.
    step([&] { entry = entries.at(count); });
    if (entry.isEmpty() || count >= entries.most()) return values;
  }
}

// The count of ranges stands above that of the entries, so a list with ranges reads as a long one.
QVector<Value> readNumbers(QByteArrayView block) {
  if (block.size() < kNumbersAt) return {Value(QString())};
  const auto count = qFromLittleEndian<qint32>(block.data() + kCountAt);
  if (count < 1) throw RuntimeError(err::SubscriptOutOfRange);
  const qsizetype inside = qMin<qsizetype>(count, (block.size() - kNumbersAt) / qsizetype(sizeof(double)));
  if (inside == 0) return {Value(QString())};
  QVector<Value> values(inside);
  for (qsizetype i = 0; i < inside; ++i)
    values[i] = qFromLittleEndian<double>(block.data() + kNumbersAt + i * qsizetype(sizeof(double)));
  return values;
}

quint16 typeOf(QByteArrayView block) {
  return block.size() < kCountAt ? 0 : qFromLittleEndian<quint16>(block.data());
}

}  // namespace

bool isTextList(QByteArrayView block) {
  return typeOf(block) == kTextList;
}

QVector<Value> readEvaluation(QByteArrayView block, TextListReader& list,
                              const std::function<QString(QByteArrayView)>& textOf) {
  if (isTextList(block)) return readTexts(block, list, textOf);
  if (typeOf(block) == kNumberList) return readNumbers(block);
  return {Value(QString())};
}

}  // namespace lens
