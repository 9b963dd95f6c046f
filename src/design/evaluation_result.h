// What the library leaves of an evaluated formula: a block of memory with a type word in front.
//
//   0x0501  a list of texts, which the library walks for us
//   0x0301  a list of numbers: 32 bits of count at 2, an IEEE number of 8 bytes for each from 6 on
//
// Anything else, a time, a bare value or no block at all, reads as one empty text.
#pragma once

#include <QByteArrayView>
#include <QString>
#include <QVector>
#include <functional>

#include "notes/bridge.h"

namespace lens {

// How the library reads a list of texts. What it tells is checked against the block.
class TextListReader {
 public:
  virtual ~TextListReader() = default;
  virtual quint32 count() = 0;
  // Nothing for an entry that is empty and for one past the end.
  virtual QByteArrayView entry(quint16 index) = 0;
};

bool isTextList(QByteArrayView block);

// Texts and numbers of the block; nothing outside of it is read, whatever its counts and lengths say. A text
// that cannot be read is an empty value. Raises 9 when a list of numbers has none.
QVector<Value> readEvaluation(QByteArrayView block, TextListReader& list,
                              const std::function<QString(QByteArrayView)>& textOf);

}  // namespace lens
