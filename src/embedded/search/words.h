// Text as words: how the full-text index keeps it and how queries look for it.
//
// A word is a run of letters, digits and the marks on them. Case and accents do not count ("É" is "e"),
// nor do forms of the same letter (full width, ligatures). An ideograph or kana is a word of its own,
// since those scripts put no blanks between words. A word counts by its first 64 characters.
#pragma once

#include <QStringList>
#include <QStringView>
#include <functional>

namespace lens {

// Each word of the text, folded. The view is valid during the call.
void forEachWord(QStringView text, const std::function<void(QStringView)>& take);
// The same as a list; "*" and "?" are letters here, as patterns in queries need them.
QStringList patternWords(QStringView text);
// Whether a word with "*" (any letters) and "?" (any one letter) fits.
bool fitsPattern(QStringView word, QStringView pattern);
bool isPattern(QStringView word);

}  // namespace lens
