#include "editing/value_lines.h"

#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

const QString kLineEnd = u"\r\n"_s;

template <class Use>
void forEachLine(QString& content, const Use& use) {
  Int16 counter;
  while (!content.isEmpty()) {
    use(element(content, kLineEnd));
    counter += 1;
  }
}

template <class List>
Value arrayOf(const List& list) {
  return Value::array(QVector<Value>(list.begin(), list.end()));
}

}  // namespace

QStringList textLines(QString content) {
  QStringList lines;
  forEachLine(content, [&](const QString& line) { lines += line; });
  return lines;
}

QStringList overwriteLines(QString content) {
  QStringList lines;
  forEachLine(content, [&](QString line) { lines += element(line, u"\r"_s); });
  return lines;
}

QVector<double> numberLines(QString content, int places) {
  QVector<double> numbers;
  for (Int16 place; place < places; place += 1) numbers.push_back(numberPrefix(element(content, kLineEnd)));
  return numbers;
}

QVector<Value> dateLines(Statements& step, QString content, const Regional& regional) {
  QVector<Value> dates;
  Int16 counter;
  while (!content.isEmpty()) {
    const qsizetype before = content.size();
    dates.resize(counter + 1);
    Continue& untrapped = step.switchTrapOff();
    untrapped([&] { dates[counter] = regional.dateTime(element(content, kLineEnd)); });
    if (untrapped.number() < 1) {
      untrapped([&] { counter += 1; });
    } else {
      untrapped.clear();
      if (counter >= 1) dates.resize(counter);
    }
    // A line end too far away cuts nothing off, and would never.
    if (content.size() >= before) break;
  }
  return dates;
}

Value valueList(const QStringList& texts) {
  return arrayOf(texts);
}
Value valueList(const QVector<double>& numbers) {
  return arrayOf(numbers);
}

}  // namespace lens
