// Which item values the elements of DXL give back byte by byte. Each function tells what would stand in
// the elements, and false when reading that would make another value: such a value is exported raw.
// Data is an item value without its type word.
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVector>

#include "embedded/format/timedate.h"

namespace lens {

// Line feeds are the line breaks of the stored text.
bool nativeText(QByteArrayView data, QString& text);
bool nativeTexts(QByteArrayView data, QStringList& texts);
bool nativeNumber(QByteArrayView data, QString& number);
// DXL has no pairs of numbers.
bool nativeNumbers(QByteArrayView data, QStringList& numbers);
bool nativeTime(QByteArrayView data, TimeDate& time);
// Single times, then the two ends of each pair.
bool nativeTimes(QByteArrayView data, QVector<TimeDate>& singles, QVector<TimeDate>& pairEnds);
// A formula that is stored as source text.
bool nativeFormula(QByteArrayView data, QString& source);

}  // namespace lens
