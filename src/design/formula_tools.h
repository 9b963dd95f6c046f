// The text of the content box as a formula: compiled with the place of a mistake marked, run over the
// current document with its results below the text, or searched with.
#pragma once

#include <optional>

#include "shell/desk.h"
#include "shell/error_modes.h"

namespace lens {

class FormulaTools {
 public:
  // Status of the mistake, the character that it begins at and how many it takes; all 0 for a formula
  // without a mistake.
  struct CompileReport {
    qint16 error = 0;
    qint16 offset = 0;
    qint16 length = 0;
  };
  // Texts and numbers, at least one; nothing when database or note could not be opened.
  using Results = std::optional<QVector<Value>>;

  explicit FormulaTools(Desk& desk);

  void cmdChkFormula_Click();
  void cmdCollbyFormula_Click();

  // Raises 6 for a text of more than 32767 characters.
  CompileReport CheckFormula(const QString& text);
  // Runs over the current document, or without one when the ID is empty. Raises 6 for a text that the
  // change of character set has no room for, from 16384 characters on.
  Results EvaluateFormula(const QString& noteId, const QString& formula);

 private:
  // What one evaluation holds of the library.
  struct Run {
    MemHandle code = 0, compute = 0, result = 0;
    DbHandle db = 0;
    NoteHandle note = 0;
    Statements step;
  };
  struct Compiled {
    Status status = 0;
    MemHandle code = 0;
    CompileReport report;
  };
  Compiled compile(const QByteArray& formula);
  Results evaluate(Run& run, const QString& noteId, const QByteArray& formula);
  void openNote(Run& run);
  QVector<Value> compute(Run& run);
  QString shownText(QByteArrayView stored);
  void releaseAfterFailure(Run& run);
  void evaluateOnDocument(const QString& formula);
  void append(const QString& lines);
  void showFault(const CompileReport& report);
  void listFound(const NotesDocumentCollection& found);

  Desk& desk_;
};

}  // namespace lens
