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

void numberLines(Statements& step, QString content, QVector<Value>& places) {
  bool counts = true;
  for (Int16 place; counts && place < places.size(); counts = step([&] { place += 1; }))
    step([&] { places[place] = numberPrefix(element(content, kLineEnd)); });
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
  return Value::array(QVector<Value>(texts.begin(), texts.end()));
}

}  // namespace lens
