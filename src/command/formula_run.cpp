#include "command/formula_run.h"
#include "command/command_text.h"

#include "embedded/format/item_value.h"
#include "notes/code_page.h"
#include "notes/literals.h"
#include "notes/numbers.h"

namespace lens {
namespace {

constexpr Status kFormulaError = 0x0501;
constexpr qsizetype kMostBytes = 0xFFFF;
constexpr quint16 kToLmbcs = 0;

QByteArray bytesOf(const QString& source) {
  const QByteArray bytes = toCodePage(source);
  if (fromCodePage(bytes) != source)
    throw RuntimeError(err::InvalidCall,
                       CommandText::tr("the formula has characters that the code page of the system lacks"));
  if (bytes.size() > kMostBytes)
    throw RuntimeError(err::InvalidCall,
                       CommandText::tr("the formula is longer than %1 bytes").arg(kMostBytes));
  return bytes;
}

QString statusText(CApi& api, Status status) {
  QByteArray buffer(256, '\0');
  api.OSLoadString(0, status & kErrorMask, buffer, quint16(buffer.size() - 1));
  const QString text = fromCodePage(upToNul(buffer));
  return text.isEmpty() ? CommandText::tr("error %1").arg(status & kErrorMask) : text;
}

[[noreturn]] void fail(CApi& api, Status status) {
  throw RuntimeError(err::InvalidCall, statusText(api, status));
}

// What the library gave out, given back in turn.
class Taken {
 public:
  explicit Taken(CApi& api) : api_(api) {}
  ~Taken() {
    if (compute) api_.NSFComputeStop(compute);
    if (isResultLocked) api_.OSUnlockObject(result);
    if (result) api_.OSMemFree(result);
    if (isCodeLocked) api_.OSUnlockObject(code);
    if (code) api_.OSMemFree(code);
    if (note) api_.NSFNoteClose(note);
    if (db) api_.NSFDbClose(db);
  }
  Taken(const Taken&) = delete;
  Taken& operator=(const Taken&) = delete;

  MemHandle code = 0, compute = 0, result = 0;
  bool isCodeLocked = false, isResultLocked = false;
  DbHandle db = 0;
  NoteHandle note = 0;

 private:
  CApi& api_;
};

struct Compilation {
  Status status = 0, reason = 0;
  quint16 line = 0, column = 0, offset = 0, length = 0;
};

Compilation compileInto(CApi& api, const QByteArray& source, Taken& taken) {
  Compilation result;
  quint16 codeLength = 0;
  result.status = api.NSFFormulaCompile(source, quint16(source.size()), taken.code, codeLength, result.reason,
                                        result.line, result.column, result.offset, result.length);
  return result;
}

std::optional<FormulaMistake> mistakeOf(CApi& api, const Compilation& compilation) {
  if (compilation.status == 0) return std::nullopt;
  if (compilation.status != kFormulaError) fail(api, compilation.status);
  return FormulaMistake{statusText(api, compilation.reason), compilation.line + 1, compilation.column + 1,
                        compilation.offset, compilation.length};
}

QByteArray translated(CApi& api, const QByteArray& source) {
  if (source.isEmpty()) return source;
  QByteArray lmbcs(kMostBytes, '\0');
  const quint16 length =
      api.OSTranslate(kToLmbcs, source, quint16(source.size()), lmbcs, quint16(lmbcs.size()));
  return lmbcs.first(length);
}

// The block has the layout of a stored value.
QVector<Value> valuesIn(QByteArrayView block) {
  if (block.size() < 2) return {};
  const Value values = itemValues({QString(), 0, block.toByteArray()});
  return values.isArray() ? values.values() : QVector<Value>();
}

}  // namespace

QString FormulaMistake::text() const {
  return CommandText::tr("%1 (line %2, character %3)").arg(reason).arg(line).arg(character);
}

std::optional<FormulaMistake> mistakeIn(CApi& api, const QString& source) {
  const QByteArray bytes = bytesOf(source);
  const NotesInit init(api);
  Taken taken(api);
  return mistakeOf(api, compileInto(api, bytes, taken));
}

QVector<Value> evaluateOn(CApi& api, const QString& source, const QByteArray& database,
                          const QString& noteId) {
  if (const auto mistake = mistakeIn(api, source))
    throw RuntimeError(err::InvalidCall, CommandText::tr("the formula is broken: %1").arg(mistake->text()));
  const QByteArray bytes = bytesOf(source);
  const NotesInit init(api);
  Taken taken(api);
  const auto require = [&api](Status status) {
    if (status != 0) fail(api, status);
  };
  require(compileInto(api, translated(api, bytes), taken).status);
  require(api.NSFDbOpen(database, taken.db));
  require(api.NSFNoteOpen(taken.db, hexToInt32(noteId), 0, taken.note));
  const char* const code = api.OSLockObject(taken.code);
  taken.isCodeLocked = true;
  require(api.NSFComputeStart(0, code, taken.compute));
  quint16 length = 0;
  bool matches = false, deletes = false, modified = false;
  require(
      api.NSFComputeEvaluate(taken.compute, taken.note, taken.result, length, matches, deletes, modified));
  if (taken.result == 0) return {};
  const char* const block = api.OSLockObject(taken.result);
  taken.isResultLocked = true;
  return valuesIn(QByteArrayView(block, block ? length : 0));
}

}  // namespace lens
