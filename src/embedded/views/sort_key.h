// Sort keys: values as bytes that stand in the order of the values when they are compared as bytes.
//
// Numbers go before times and times before texts; texts are ordered as formulas order them, without regard
// to case, so that the empty text, and with it a missing value, is the first of them. The elements of a list
// follow one another. No key is the beginning of another one, so keys can be strung together.
#pragma once

#include <QByteArray>
#include <QStringView>
#include <QVector>

#include "embedded/formula/times.h"
#include "embedded/formula/value.h"

namespace lens {

// Longer keys are cut there: what differs only behind counts as equal.
inline constexpr qsizetype kMostKeyBytes = 512;

namespace sortkey {
inline constexpr quint8 End = 0x00, Number = 0x20, Time = 0x30, Text = 0x40;
}

// One element, without the mark of the end.
void appendElementKey(QByteArray& key, const formula::Value& value, qsizetype element,
                      const formula::LocalZone& zone);
void appendTextKey(QByteArray& key, QStringView text);
// The whole value with its end.
void appendSortKey(QByteArray& key, const formula::Value& value, const formula::LocalZone& zone);
// Key of a text that begins so: the beginning of the keys of all these texts.
QByteArray textKeyBeginning(QStringView text);

void invert(QByteArray& key, qsizetype from);  // what sorts descending
void cut(QByteArray& key, qsizetype from);

// The bytes behind all that begin with these; empty when there are none.
QByteArray behindAll(QByteArray beginning);

// Reads the number or time that the key begins with; false for anything else.
bool readNumberKey(QByteArrayView key, double& number);
bool readTimeKey(QByteArrayView key, const formula::LocalZone& zone, formula::Civil& time);
inline constexpr qsizetype kNumberKeySize = 9, kTimeKeySize = 10;

}  // namespace lens
