// The formula functions of the C API. A formula in memory is laid out as items hold it: compiled, or as its
// source where the compiled form has no word for something in it. Callers keep it, lock it and free it like
// any other memory.
#include <algorithm>
#include <utility>

#include "embedded/capi/call_support.h"
#include "embedded/capi/embedded_capi.h"
#include "embedded/capi/status.h"
#include "embedded/evaluation/store_database.h"
#include "embedded/format/lmbcs.h"
#include "embedded/format/source_formula.h"
#include "embedded/formula/compiled/compiled_formula.h"
#include "embedded/formula/compiled/compiled_writer.h"
#include "embedded/formula_context/evaluated_note.h"
#include "embedded/formula_context/item_conversion.h"
#include "notes/code_page.h"

namespace lens {
namespace {

// Text comes in the code page, as everywhere at this door, save for what OSTranslate has just made of it.
QString formulaSource(QByteArrayView given, bool translated) {
  return translated ? fromLmbcs(given) : fromCodePage(given);
}

// The source of what lies in memory that the library gave out, of which so much can be read.
Status readFormula(QByteArrayView memory, const formula::Environment& environment, QString& source) {
  if (const qsizetype size = formula::compiledSize(memory)) {
    const formula::CompiledReading reading = formula::readCompiled(memory.first(size), environment);
    if (reading.state == formula::CompiledReading::State::Hidden) return formula::fault::Hidden;
    // The compiler will refuse a code without a name by the name that was made for it.
    source = reading.source;
    return reading.source.isEmpty() ? status::BadHandle : status::Ok;
  }
  // Zeros end a source.
  constexpr qsizetype kMark = 2;  // the zero word in front of it
  const qsizetype end = memory.sliced(std::min(kMark, memory.size())).indexOf('\0');
  if (end >= 0) memory = memory.first(kMark + end);
  return readSourceFormula(memory, source) ? status::Ok : status::BadHandle;
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
  formula::Written written = formula::writeCompiled(source, environment_);
  // What has no compiled form may be too large all the same.
  if (written.error.reason == 0 && written.bytes.isEmpty())
    written.error = formula::compile(source, {&environment_}).error;
  if (const formula::CompileError& found = written.error; found.reason != 0) {
    error = found.reason;
    line = quint16(found.line);
    offset = bytesBefore(source, found.offset, given.size());
    column = quint16(offset - bytesBefore(source, found.offset - found.column, given.size()));
    errorLength = quint16(bytesBefore(source, found.offset + found.length, given.size()) - offset);
    return formula::fault::FormulaError;
  }
  const QByteArray code = written.bytes.isEmpty() ? sourceFormula(source) : written.bytes;
  if (code.size() > 0xFFFF) return formula::fault::CodeTooLong;
  compiled = memory_.add(code);
  if (compiled == 0) return status::NoMemory;
  compiledLength = quint16(code.size());
  return status::Ok;
}

Status EmbeddedCApi::NSFComputeStart(quint16, const char* formula, MemHandle& compute) {
  compute = 0;
  // Only memory that this library gave out is read.
  const qsizetype readable = formula ? memory_.readable(formula) : -1;
  if (readable < 0) return status::BadHandle;
  QString source;
  if (const Status status = readFormula(QByteArrayView(formula, readable), environment_, source))
    return status;
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
