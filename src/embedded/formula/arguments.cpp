#include "embedded/formula/arguments.h"

#include <QLatin1StringView>

namespace lens::formula {
namespace {

// What a client's function does with its keywords is the client's affair.
bool checksKeywords(const Function& function) {
  return function.keywords && !(function.traits & trait::NeedsClient);
}

bool allListed(const Function& function, const Value& words) {
  for (qsizetype i = 0; i < words.count(); ++i)
    if (!listsKeyword(function.keywords, words.text(i))) return false;
  return true;
}

}  // namespace

bool listsKeyword(const char* keywords, QStringView word) {
  for (const QLatin1StringView one : QLatin1StringView(keywords).tokenize(u' '))
    if (word.compare(one, Qt::CaseInsensitive) == 0) return true;
  return false;
}

FaultCode argumentFault(const Function& function, const Value* const* arguments, int count) {
  const char* letter = function.types;
  for (int i = 0; i < count; ++i) {
    const Type type = arguments[i]->type();
    switch (*letter) {
      case 't':
        if (type != Type::Text) return fault::TextExpected;
        break;
      case 'n':
        if (type != Type::Number) return fault::NumberExpected;
        break;
      case 'd':
        if (type != Type::Time) return fault::TimeExpected;
        break;
      case 'k':
        if (type != Type::Keyword) return fault::KeywordExpected;
        // A keyword may come from a variable, where the compiler cannot see it.
        if (checksKeywords(function) && !allListed(function, *arguments[i])) return fault::WrongKeyword;
        break;
      default:
        // An error is a value to those few functions that ask for it.
        if (type < Type::Number && type != Type::Error) return fault::ValueExpected;
        break;
    }
    if (*letter != 0 && letter[1] != 0) ++letter;
  }
  return 0;
}

}  // namespace lens::formula
