// A console command as the words that it is made of.
#pragma once

#include <QStringList>
#include <QStringView>

namespace lens {

// Blanks and control characters part words. Between quotation marks a blank is part of its word; quotes that
// are not closed reach to the end.
QStringList commandWords(QStringView command);

}  // namespace lens
