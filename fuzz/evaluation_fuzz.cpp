// Results of evaluations from the fuzzer, with a library that walks the list as it is and with one that
// tells anything: what is read lies in the block, and all of it is there.
#include <cstring>
#include <functional>

#include "check.h"
#include "design/evaluation_result.h"

namespace lens {
namespace {

quint16 wordAt(QByteArrayView bytes, qsizetype at) {
  return at + 2 > bytes.size() ? quint16(0) : quint16(quint8(bytes[at]) | quint8(bytes[at + 1]) << 8);
}

// The entries that lie in the block one behind the other, as a library finds them.
class HonestList : public TextListReader {
 public:
  explicit HonestList(QByteArrayView block) : count_(wordAt(block, 2)) {
    qsizetype at = 4 + 2 * qsizetype(count_);
    for (int i = 0; i < count_ && at <= block.size(); ++i) {
      const quint16 length = wordAt(block, 4 + 2 * i);
      if (length > block.size() - at) break;
      entries_ += block.sliced(at, length);
      at += length;
    }
  }
  quint32 count() override { return count_; }
  QByteArrayView entry(quint16 index) override {
    return index < entries_.size() ? entries_[index] : QByteArrayView();
  }
  bool isWhole() const { return entries_.size() == count_; }
  const QVector<QByteArrayView>& entries() const { return entries_; }

 private:
  quint16 count_;
  QVector<QByteArrayView> entries_;
};

// Counts, places and lengths are what the input says; now and then a call fails.
class AnyList : public TextListReader {
 public:
  explicit AnyList(QByteArrayView input) : input_(input) {}
  quint32 count() override { return quint32(wordAt(input_, 0)) << (input_.size() % 17); }
  QByteArrayView entry(quint16 index) override {
    const qsizetype at = 3 * qsizetype(index) % input_.size();
    const qsizetype from = wordAt(input_, at) % input_.size();
    if (from % 7 == 6) throw RuntimeError(70);
    return input_.sliced(from, wordAt(input_, at + 1) % (input_.size() - from + 1));
  }

 private:
  QByteArrayView input_;
};

QVector<Value> read(QByteArrayView block, TextListReader& list) {
  const auto text = [&](QByteArrayView entry) {
    const std::less_equal<const char*> before;
    check(before(block.begin(), entry.begin()) && before(entry.end(), block.end()),
          "Memory outside of the block is read.");
    return QString::fromLatin1(entry);
  };
  try {
    const QVector<Value> values = readEvaluation(block, list, text);
    check(!values.isEmpty(), "There is no value.");
    return values;
  } catch (const RuntimeError& error) {
    check(error.number() == err::SubscriptOutOfRange, "A reading fails for another reason.");
    check(wordAt(block, 0) == 0x0301, "Other values than numbers fail.");
    return {};
  }
}

void checkTexts(const HonestList& list, const QVector<Value>& values) {
  if (!list.isWhole()) return;
  check(values.size() == qMax<qsizetype>(1, list.entries().size()), "Entries are missing.");
  for (qsizetype i = 0; i < list.entries().size(); ++i)
    check(values[i].text() == QString::fromLatin1(list.entries()[i]), "An entry reads as another text.");
}

void checkNumbers(QByteArrayView block, const QVector<Value>& values) {
  for (qsizetype i = 0; i < values.size(); ++i) {
    if (values[i].kind() != Value::Kind::Number) continue;
    const double number = values[i].number();
    check(6 + 8 * (i + 1) <= block.size(), "A number outside of the block is read.");
    check(std::memcmp(&number, block.data() + 6 + 8 * i, sizeof number) == 0,
          "A number reads as another one.");
  }
}

// The first byte tells how much of the input lies in front of the block and how much behind it.
void tryBlock(QByteArrayView input) {
  if (input.isEmpty()) return;
  const qsizetype before = qMin<qsizetype>(input.size(), 1 + quint8(input[0]) % 8);
  const qsizetype behind = qMin<qsizetype>(input.size() - before, quint8(input[0]) / 8 % 8);
  const QByteArrayView block = input.sliced(before, input.size() - before - behind);
  HonestList honest(block);
  const QVector<Value> values = read(block, honest);
  if (wordAt(block, 0) == 0x0501) checkTexts(honest, values);
  if (wordAt(block, 0) == 0x0301) checkNumbers(block, values);
  AnyList any(input);
  qsizetype length = 0;
  for (const Value& value : read(block, any)) length += value.text().size();
  if (wordAt(block, 0) == 0x0501) check(length <= block.size(), "More text is read than the block holds.");
}

}  // namespace
}  // namespace lens

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  lens::tryBlock(QByteArrayView(reinterpret_cast<const char*>(data), qsizetype(size)));
  return 0;
}
