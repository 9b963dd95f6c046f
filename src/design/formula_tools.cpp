#include "design/formula_tools.h"

#include <utility>

#include "design/evaluation_result.h"
#include "notes/code_page.h"
#include "notes/literals.h"
#include "notes/note_reading.h"
#include "notes/numbers.h"
#include "shell/error_modes.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

constexpr Status kFormulaError = 0x0501;
constexpr int kToLmbcs = 0, kFromLmbcs = 1;
constexpr quint32 kRed = 0x0000FF;  // blue, green, red
constexpr int kWithTypeWord = -1;
constexpr qsizetype kMostPages = 1000;

// The library's own walk over a list whose memory it gave out.
class LibraryList : public TextListReader {
 public:
  LibraryList(CApi& api, const char* list) : api_(api), list_(list) {}

  quint32 count() override { return api_.ListGetNumEntries(list_, kWithTypeWord); }
  QByteArrayView entry(quint16 index) override {
    const char* text = nullptr;
    quint16 length = 0;
    api_.ListGetText(list_, kWithTypeWord, index, text, length);
    return QByteArrayView(text, text ? length : 0);
  }

 private:
  CApi& api_;
  const char* list_;
};

// Results as they come into the box, one after the other: each then has its page in the history of the box.
// Thousands of them come at once, lest the pages fill the memory.
QStringList newLines(const FormulaTools::Results& results) {
  if (!results) return {};
  QStringList lines;
  for (const Value& result : *results) lines += u"\r\n" + result.text();
  return lines.size() > kMostPages ? QStringList(lines.join(QString())) : lines;
}

}  // namespace

FormulaTools::FormulaTools(Desk& desk) : desk_(desk) {
  desk_.form.cmdChkFormula->click = [this] { cmdChkFormula_Click(); };
  desk_.form.cmdCollbyFormula->click = [this] { cmdCollbyFormula_Click(); };
}

void FormulaTools::cmdChkFormula_Click() {
  const QString formula = desk_.form.txtFieldContent->text();
  const CompileReport report = CheckFormula(formula);
  if (report.error != 0)
    showFault(report);
  else if (desk_.state.gDoc.isNothing())
    for (const QString& lines : newLines(EvaluateFormula(QString(), formula))) append(lines);
  else
    evaluateOnDocument(formula);
}

// With a document at hand every failure is silent. One that has no ID, or cannot tell it, is left aside.
void FormulaTools::evaluateOnDocument(const QString& formula) {
  Continue step;
  QString noteId;
  step([&] { noteId = desk_.state.gDoc.noteId(); });
  QStringList lines;
  step([&] { lines = newLines(EvaluateFormula(noteId, formula)); });
  for (const QString& line : lines) step([&] { append(line); });
}

void FormulaTools::append(const QString& lines) {
  desk_.form.txtFieldContent->setText(desk_.form.txtFieldContent->text() + lines);
}

void FormulaTools::showFault(const CompileReport& report) {
  desk_.form.txtFieldContent->setSelStart(report.offset);
  desk_.form.txtFieldContent->setSelLength(report.length);
  desk_.form.txtFieldContent->setSelColor(kRed);
  const QString reason = desk_.routines.GetAPIError(Status(report.error));
  const Int16 end = report.offset + report.length;
  desk_.host.messageBox(reason + u"\nError starts at character: " + QString::number(report.offset) +
                            u" and ends at character: " + QString::number(end),
                        box::Plain, u"Formula error!"_s);
}

FormulaTools::Compiled FormulaTools::compile(const QByteArray& formula) {
  const Int16 length = formula.size();
  Compiled result;
  Status error = 0;
  quint16 codeLength = 0, line = 0, column = 0, offset = 0, errorLength = 0;
  result.status = desk_.api.NSFFormulaCompile(formula, quint16(length), result.code, codeLength, error, line,
                                              column, offset, errorLength);
  if (result.status == kFormulaError) result.report = {qint16(error), qint16(offset), qint16(errorLength)};
  return result;
}

// Any other status counts as clean: it tells of the library and not of the text.
FormulaTools::CompileReport FormulaTools::CheckFormula(const QString& text) {
  const NotesInit init(desk_.api);
  const Compiled compiled = compile(toCodePage(text));
  if (compiled.code != 0) desk_.api.OSMemFree(compiled.code);
  return compiled.report;
}

FormulaTools::Results FormulaTools::EvaluateFormula(const QString& noteId, const QString& formula) {
  const QByteArray translated = toCodePage(desk_.routines.ConvertTranslate(kToLmbcs, formula));
  const NotesInit init(desk_.api);
  Run run;
  try {
    return evaluate(run, noteId, translated);
  } catch (const RuntimeError&) {
    releaseAfterFailure(run);
    throw;
  }
}

// Without database or note the compiled formula is left to the end of the library.
FormulaTools::Results FormulaTools::evaluate(Run& run, const QString& noteId, const QByteArray& formula) {
  run.code = compile(formula).code;
  if (!noteId.isEmpty()) {
    openNote(run);
    if (run.db == 0) return {};
  }
  Results results;
  if (noteId.isEmpty() || run.note != 0) results = compute(run);
  run.step([&] { desk_.api.NSFDbClose(std::exchange(run.db, 0)); });
  return results;
}

// The note is that of the current document. It is not closed: closing the database ends it.
void FormulaTools::openNote(Run& run) {
  const NotesDatabase database = desk_.state.gDoc.parentDatabase();
  desk_.api.NSFDbOpen(networkPath(desk_.api, database), run.db);
  if (run.db != 0) desk_.api.NSFNoteOpen(run.db, hexToInt32(desk_.state.gDoc.noteId()), 0, run.note);
}

QVector<Value> FormulaTools::compute(Run& run) {
  desk_.api.NSFComputeStart(0, desk_.api.OSLockObject(run.code), run.compute);
  quint16 length = 0;
  bool matches = false, deletes = false, modified = false;
  desk_.api.NSFComputeEvaluate(run.compute, run.note, run.result, length, matches, deletes, modified);
  // A failed evaluation leaves no block; then there is no memory to look at.
  const char* block = desk_.api.OSLockObject(run.result);
  LibraryList list(desk_.api, block);
  const QVector<Value> values = readEvaluation(QByteArrayView(block, block ? length : 0), list,
                                               [this](QByteArrayView stored) { return shownText(stored); });
  // Texts were read without a trap, and it stays off: what was read is worth more than a failing release.
  if (isTextList(QByteArrayView(block, block ? length : 0))) run.step.switchTrapOff();
  run.step([&] { desk_.api.NSFComputeStop(std::exchange(run.compute, 0)); });
  run.step([&] { desk_.api.OSUnlockObject(run.result); });
  run.step([&] { desk_.api.OSMemFree(std::exchange(run.result, 0)); });
  run.step([&] { desk_.api.OSUnlockObject(run.code); });
  run.step([&] { desk_.api.OSMemFree(std::exchange(run.code, 0)); });
  return values;
}

// A translation ends at a NUL, which in stored text breaks the line; so each line is translated by itself.
QString FormulaTools::shownText(QByteArrayView stored) {
  QStringList lines;
  for (const QByteArray& line : stored.toByteArray().split('\0'))
    lines += desk_.routines.ConvertTranslate(kFromLmbcs, fromCodePage(line));
  return lines.join(u"\r\n"_s);
}

void FormulaTools::releaseAfterFailure(Run& run) {
  Continue step;
  if (run.compute != 0) step([&] { desk_.api.NSFComputeStop(run.compute); });
  for (const MemHandle memory : {run.result, run.code}) {
    if (memory == 0) continue;
    step([&] { desk_.api.OSUnlockObject(memory); });
    step([&] { desk_.api.OSMemFree(memory); });
  }
  if (run.db != 0) step([&] { desk_.api.NSFDbClose(run.db); });
}

void FormulaTools::cmdCollbyFormula_Click() {
  const QString formula = desk_.form.txtFieldContent->text();
  if (!formula.isEmpty()) {
    const NotesDocumentCollection found = desk_.state.gDb.search(formula, 0);
    if (!found.isNothing()) {
      if (found.count() > 0) listFound(found);
      desk_.form.lblCounter->setText(QString::number(desk_.form.idList->listCount()));
    }
  }
  desk_.host.setPointer(pointer::Default);
}

void FormulaTools::listFound(const NotesDocumentCollection& found) {
  desk_.form.idList->clear();
  desk_.host.setPointer(pointer::Hourglass);
  NotesDocument document = found.firstDocument();
  while (!document.isNothing()) {
    desk_.form.idList->addItem(eightDigits(document.noteId()));
    document = found.nextDocument(document);
  }
}

}  // namespace lens
