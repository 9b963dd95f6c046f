// What a value keeps of the one that it replaces.
#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace lens {

// The value with the stored bytes of each place whose text is still the same: a time keeps its zone, its
// fractions of a second and which of two equal hours it meant, a number the digits that its text leaves out,
// a text the bytes that no character stands for. Places belong together by their order; when their count
// differs, by their text. Pairs stay pairs while the count stays. Both are values of items, type word first;
// `stored` may be anything, and what it does not fit to is written as it is.
QByteArray withKeptPlaces(const QByteArray& written, QByteArrayView stored);

}  // namespace lens
