#include "embedded/formula/function_page.h"

#include "embedded/formula/compiled/codes.h"
#include "embedded/formula/faults.h"
#include "embedded/formula/function.h"
#include "embedded/formula/spelling.h"
#include "notes/literals.h"

namespace lens::formula {
namespace {

// --- What stands before the tables ---------------------------------------------------------------------

constexpr const char* kIntroduction = R"(# Formulas

How the formula language works in this program: its rules in short, then every function. The tables are made
from the program's own table of functions.

## A formula

```
REM {Who is late?};
days := (@Now - Due) / 86400;
FIELD State := @If(days > 7; "very late"; days > 0; "late"; "in time");
SELECT Form = "Memo" & days > 0
```

A formula is a row of statements with `;` between. A statement is one of these:

| Statement | What it does |
|---|---|
| `name := value` | gives a temporary variable a value; the document is not touched |
| `FIELD name := value` | writes an item of the document, and makes it when there is none; `@Unavailable` removes it |
| `DEFAULT name := value` | the value that the name has when the document lacks the item |
| `ENVIRONMENT name := text` | writes an entry of notes.ini, with a `$` before its name |
| `REM "text"` or `REM {text}` | a remark; one without a text, `REM;`, is taken too |
| `SELECT value` | whether the document belongs to the selection: any number but 0 |
| a value alone | is computed; the last one is the value of the formula |

One statement at least must be a value or a SELECT, and there is one SELECT at most. Inside parentheses `;` parts
the arguments of a function. `name := value` may stand there too.

## How it is written

- Upper and lower case matter in texts only. Blanks, tabs and line ends may stand anywhere between the parts.
- **Names** begin with a letter, `_` or `$`; digits may follow. A variable hides the item of the same name. One
  of the signs `.` `\` `}` alone is a name too: designs in use have such variables.
- **Texts** stand in `"quotes"` or `{braces}`. A backslash takes the next character as it is: `\"`, `\}`, `\\`.
- **Numbers**: `12`, `.5`, `1.5E-3`. The mark is a point everywhere.
- **Dates and times** stand in brackets: `[03/15/2024]`, `[14:30]`, `[03/15/2024 2:30 PM]`; `[a - b]` is a range.
  The order of day, month and year is the machine's. Years of two digits: 50 to 99 are 19xx, the others 20xx.
- **Keywords** stand in brackets too: `[CN]`. Several are a list: `[OK]:[NoSort]`.
- Operators are read longest first: `2*-3` has the operator `*-`, `2 * -3` a product and a sign.

## Values

A value is a list of texts, numbers, times or time ranges, and a single one is a list of one. Nothing is converted
on its own: `@Text`, `@ToNumber`, `@TextToTime` and the like do it. Truth is the number 1, falsehood 0. A name that
is neither variable nor item reads as the empty text wherever a text fits, in comparisons with texts too; compared with
a number or a time it gives 0, whatever the operator. A selection sees summary items only.

## Operators

From the tightest to the loosest; those of one level go from left to right.

| Level | Operators | |
|---|---|---|
| 1 | `x[n]` | an element, counted from 1 |
| 2 | `:` | joins lists of one type |
| 3 | `+` `-` | signs |
| 4 | `*` `/` `**` `*/` | |
| 5 | `+` `-` `*+` `*-` | `+` also joins texts; time minus time is seconds |
| 6 | `=` `<>` `!=` `<` `>` `<=` `>=` and with `*` in front | 1 when any tested pair fits, otherwise 0 |
| 7 | `!` `&` `\|` | not, and, or; both sides are computed |

- `:` binds tighter than a sign: `1:-2:3` is 1, -2, -3. Write `1:(-2):3`.
- Plain operators work on pairs: first with first, second with second; the shorter list repeats its last element.
- Operators with `*` in front take every element of the left with every element of the right, the left one slowest:
  `"A":"B" *+ "1":"2"` is A1, A2, B1, B2.
- So `A = B` asks whether any pair is equal, and `A != B` whether any differs; both can be 1.

## Errors

An error is a value. What is computed with it becomes the same error, until `@IsError` or `@IfError` looks at it;
inside the second argument of `@IfError` the variable `$Error` holds its text. What is not computed cannot fail: `@If`
computes only the value that it gives. A formula that cannot be compiled is turned down with a reason and a place.

## Limits

| What | How much |
|---|---|
| a text, and the result of a formula | 65,535 bytes |
| elements of a list | 65,535 |
| conditions of one `@If` | 99 |
| statements in one `@While` or `@DoWhile` / `@For` | 254 / 252 |

A formula that runs too long, takes too much memory or nests too deep is ended with an error.

)";

// --- The tables ----------------------------------------------------------------------------------------

struct Family {
  const char* title;
  std::span<const Function> (*functions)();
};

constexpr Family kFamilies[] = {
    {"Text", textFunctions},
    {"Pieces of text", textPieceFunctions},
    {"Names of people", nameFunctions},
    {"Lists", listFunctions},
    {"Numbers", numberFunctions},
    {"Dates and times", timeFunctions},
    {"Conditions, loops and tests", logicFunctions},
    {"The document", documentFunctions},
    {"The database", databaseFunctions},
    {"The user and the machine", environmentFunctions},
    {"In the client or on a server", clientFunctions},
};

// Signs that would mean something in Markdown stand for themselves.
QString cell(const char* text) {
  QString plain = QString::fromUtf8(text);
  plain.replace(u'<', u"&lt;"_s);
  for (QChar sign : {u'|', u'*', u'_'}) plain.replace(sign, u"\\"_s + sign);
  return plain;
}

QString code(QString text) {
  return u'`' + text.replace(u'|', u"\\|"_s) + u'`';
}

QString argumentCount(const Function& function) {
  const int least = function.least, most = function.most;
  if (most == 0) return u"none"_s;
  if (most == least) return QString::number(least);
  if (most == kAnyCount) return u"%1 or more"_s.arg(least);
  return u"%1 %2 %3"_s.arg(least).arg(most == least + 1 ? u"or"_s : u"to"_s).arg(most);
}

QString row(const Function& function) {
  QString does = cell(function.help);
  if (function.note) does += u" *"_s + cell(function.note) + u'*';
  const bool client = (function.traits & trait::NeedsClient) != 0;
  return u"| %1 | %2 | %3 | %4 |\n"_s.arg(code(callForm(function)), argumentCount(function), does,
                                          client ? u"needs the client"_s : u"implemented"_s);
}

QString table(const Family& family) {
  QString text = u"### %1\n\n| Call | Arguments | What it does | Here |\n|---|---|---|---|\n"_s.arg(
      QString::fromUtf8(family.title));
  for (const Function& function : family.functions()) text += row(function);
  return text + u'\n';
}

QString messages() {
  QString text =
      u"## Messages\n\nThe first part is found when a formula is compiled, the second when it runs.\n\n"
      "| Number | Text |\n|---|---|\n"_s;
  for (FaultCode code = fault::FormulaError; code <= fault::CodeTooLong; ++code)
    if (const QString message = faultText(code); !message.isEmpty())
      text += u"| %1 | %2 |\n"_s.arg(QString::number(code, 16).toUpper(), message);
  return text;
}

// --- The compiled form ---------------------------------------------------------------------------------

constexpr const char* kCompiled = R"(## Compiled formulas

Databases hold formulas in the platform's compiled form: `$Formula` of views, columns, fields, window titles, actions,
hide-when formulas and agents, also where a DXL file says `compiled='true'`. That form keeps no source text, and
nothing of what makes it: names, constants, order, parentheses, remarks, blanks and line breaks come back as they were
written. What is not kept: small and capital letters in names of functions and keywords, the way in which a number, a
date, `!=` or the quotes of a text were written, white space in front of a `;`, and a `;` at the end.

| What is met | What is shown | Does it run? |
|---|---|---|
| a formula whose names are all proven | its source | yes |
| one with names from the context of their use, or with guessed names | its source, and which names these are | yes |
| one with a code that nobody knows the name of | its source with `@Function_0C1(...)` or `[#123]` in that place | no; the error names the code |
| a hidden formula | `Formula is hidden` | no |
| damaged bytes | nothing, with the reason and the place | no |

They are looked for in items of type formula, in columns of views, in fields, agents, actions, hide-when conditions,
hotspots, buttons, navigators and entries of outlines, and in what an import kept as XML: `formulas DB` lists all of a
database, *Show formula* in the client window those of a note, and the report of an import names those that cannot run.
Not read are formulas in encrypted items, and in records of design whose layout is not known.

Nothing is made up: bytes that no source can stand for are not shown as one. Parentheses that the code does not have,
and the source needs, are added. A view that was stored without the word SELECT is shown with it.

Formulas are written in that form too, so that other programs can take them, but never with a guessed code. What holds
a function, keyword or operator without a sure code, a range of dates, or DEFAULT and ENVIRONMENT inside an expression
is kept as source text behind a zero word, and exported as source. Design elements are exported with the source of all
formulas; where a note is exported raw, formulas that were stored as source are compiled if they have a form, a view's
selection with the names of its columns, and a mark beside them keeps what was stored.

)";

QStringList functionsOf(Sureness sureness) {
  QStringList names;
  for (const FunctionCode& row : functionCodes())
    if (row.sureness == sureness) names += code(QString::fromLatin1(row.name));
  return names;
}

QStringList keywordsOf(Sureness sureness) {
  QStringList names;
  for (const KeywordCode& row : keywordCodes())
    if (row.sureness == sureness) names += code(u"[%1]"_s.arg(QLatin1StringView(row.name)));
  return names;
}

QStringList operatorsOf(Sureness sureness) {
  QStringList names;
  for (const OperatorCode& row : operatorCodes())
    if (row.sureness == sureness)
      names += code((row.operands == 1 ? u"%1a"_s : u"a %1 b"_s).arg(signOf(row.op)));
  if (kAssignFieldSureness == sureness) names += code(u"FIELD a := b"_s) + u" inside an expression"_s;
  return names;
}

QStringList functionsWithoutCode() {
  QStringList names;
  for (const Function* const function : allFunctions())
    if (!functionCodeOf(*function)) names += code(QString::fromLatin1(function->name));
  return names;
}

QString compiledForm() {
  const auto all = [](Sureness sureness) {
    return operatorsOf(sureness) + functionsOf(sureness) + keywordsOf(sureness);
  };
  QString page = QString::fromUtf8(kCompiled);
  const auto add = [&](const QString& title, const QStringList& names) {
    page += u"- %1: %2.\n"_s.arg(title, names.join(u", "_s));
  };
  add(u"Proven, by comparison with the source of the same formulas"_s, all(Sureness::Proven));
  add(u"From the context of their use; read and written"_s, all(Sureness::Context));
  add(u"Guessed from their place among others; read and never written"_s, all(Sureness::Guess));
  add(u"Without a known code, as all keywords that are not named here"_s, functionsWithoutCode());
  return page + u'\n';
}

}  // namespace

QString functionPage() {
  QString page = QString::fromUtf8(kIntroduction);
  page +=
      u"## Functions\n\nFunctions without arguments take no parentheses. Those that need the client compile "
      "and are an error when they run. What stands in *slanted* letters is where this program does less than "
      "the platform, or something else.\n\n"_s;
  for (const Family& family : kFamilies) page += table(family);
  return page + compiledForm() + messages();
}

}  // namespace lens::formula
