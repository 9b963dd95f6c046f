// The formula functions of the C API. A compiled formula in memory is its source, laid out as items hold it:
// callers keep it, lock it and free it like any other memory, and never look inside.
#include <algorithm>
#include <utility>

#include "embedded/capi/call_support.h"
#include "embedded/capi/embedded_capi.h"
#include "embedded/capi/status.h"
#include "embedded/evaluation/store_database.h"
#include "embedded/format/lmbcs.h"
#include "embedded/format/source_formula.h"
#include "embedded/formula_context/evaluated_note.h"
#include "embedded/formula_context/item_conversion.h"
#include "notes/code_page.h"

namespace lens {
namespace {

// Text comes in the code page, as everywhere at this door, save for what OSTranslate has just made of it.
QString formulaSource(QByteArrayView given, bool translated) {
  return translated ? fromLmbcs(given) : fromCodePage(given);
}

// Places come in bytes of what was given, as callers count them.
quint16 bytesBefore(const QString& source, qsizetype characters, qsizetype bytes) {
  if (source.size() == bytes) return quint16(characters);
  return quint16(toLmbcs(QStringView(source).first(characters)).size());
}

}  // namespace

Status EmbeddedCApi::NSFFormulaCompile(const QByteArray& formula, quint16 length, MemHandle& compiled,
                                       quint16& compiledLength, Status& error, quint16& line, quint16& column,
                                       quint16& offset, quint16& errorLength) {
  compiled = 0;
  compiledLength = error = line = column = offset = errorLength = 0;
  const QByteArray given = formula.first(std::min<qsizetype>(length, formula.size()));
  const QString source = formulaSource(given, given == std::exchange(translated_, {}));
  const formula::Compiled result = formula::compile(source, {&environment_});
  if (!result) {
    const formula::CompileError& found = result.error;
    error = found.reason;
    line = quint16(found.line);
    offset = bytesBefore(source, found.offset, given.size());
    column = quint16(offset - bytesBefore(source, found.offset - found.column, given.size()));
    errorLength = quint16(bytesBefore(source, found.offset + found.length, given.size()) - offset);
    return formula::fault::FormulaError;
  }
  const QByteArray code = sourceFormula(source);
  if (code.size() > 0xFFFF) return formula::fault::CodeTooLong;
  compiled = memory_.add(code);
  if (compiled == 0) return status::NoMemory;
  compiledLength = quint16(code.size());
  return status::Ok;
}

Status EmbeddedCApi::NSFComputeStart(quint16, const char* formula, MemHandle& compute) {
  compute = 0;
  // Only memory that this library gave out is read, and zeros end the source in it.
  const qsizetype readable = formula ? memory_.readable(formula) : -1;
  if (readable < 0) return status::BadHandle;
  constexpr qsizetype kMark = 2;  // the zero word in front of a source
  QByteArrayView bytes(formula, readable);
  const qsizetype end = bytes.sliced(std::min(kMark, readable)).indexOf('\0');
  if (end >= 0) bytes = bytes.first(std::min(kMark, readable) + end);
  QString source;
  if (!readSourceFormula(bytes, source)) return status::BadHandle;
  const formula::Compiled compiled = formula::compile(source, {&environment_});
  if (!compiled) return compiled.error.reason;
  compute = give(computations_, std::make_unique<formula::Evaluation>(compiled.formula, environment_));
  return compute ? status::Ok : status::NoMemory;
}

Status EmbeddedCApi::NSFComputeEvaluate(MemHandle compute, NoteHandle note, MemHandle& result,
                                        quint16& length, bool& matches, bool& deletes, bool& modified) {
  result = 0;
  length = 0;
  matches = deletes = modified = false;
  formula::Evaluation* evaluation = computations_.find(compute);
  OpenNote* open = note ? notes_.find(note) : nullptr;
  if (!evaluation || (note && !open)) return status::BadHandle;
  return guarded([&]() -> Status {
    const formula::Outcome outcome = evaluate(*evaluation, open);
    matches = outcome.matches;
    deletes = outcome.deletes;
    modified = outcome.modified;
    // A failed evaluation leaves no block to read.
    if (outcome.value.isError()) return outcome.value.errorCode();
    const QByteArray block = storedValue(outcome.value);
    if (block.size() > 0xFFFF) return formula::fault::ResultTooLong;
    result = memory_.add(block);
    if (result == 0) return status::NoMemory;
    length = quint16(block.size());
    return status::Ok;
  });
}

formula::Outcome EmbeddedCApi::evaluate(formula::Evaluation& evaluation, OpenNote* note) {
  if (!note) return evaluation.run(nullptr, nullptr);
  const OpenDb* open = dbs_.find(note->db);
  EvaluatedNote document(&note->note, open ? open->store.get() : nullptr);
  if (!open) return evaluation.run(&document, nullptr);
  StoreDatabase database(*workspace_, open->place, open->store);
  const formula::Outcome outcome = evaluation.run(&document, &database);
  // Items may have moved: what was handed out stays valid until the note is closed, and is not found again.
  if (outcome.modified)
    for (const MemHandle value : std::exchange(note->values, {})) note->outdated.push_back(value);
  return outcome;
}

Status EmbeddedCApi::NSFComputeStop(MemHandle compute) {
  return computations_.take(compute) ? status::Ok : status::BadHandle;
}

}  // namespace lens
