// A formula, compiled once and evaluated as often as wanted.
//
//   Compiled compiled = compile(source, options);
//   if (!compiled) show(compiled.error);
//   Evaluation evaluation(compiled.formula, environment);
//   Outcome outcome = evaluation.run(&document, &database);
//
// A compiled formula never changes. An evaluation holds the memory of its runs, so that the next run over
// another document costs no more than the formula itself.
#pragma once

#include <QString>
#include <QStringView>
#include <memory>
#include <vector>

#include "embedded/formula/evaluation_context.h"
#include "embedded/formula/function.h"
#include "embedded/formula/value.h"

namespace lens::formula {

// All counted from 0, in characters (UTF-16) of the source. A line ends with CR LF, CR or LF.
struct CompileError {
  FaultCode reason = 0;  // one of 0x0502 ... 0x056E; 0: none
  int line = 0, column = 0, offset = 0, length = 0;
};

struct Program;  // program.h

// How constants are read: time constants follow the region, and a date without a year is this year's.
struct CompileOptions {
  const Environment* environment = nullptr;  // null: the machine's
};

class Formula {
 public:
  explicit Formula(std::shared_ptr<const Program> program) : program_(std::move(program)) {}
  const Program& program() const { return *program_; }
  // Names that the formula may read from a document, in order of appearance: what a search has to fetch.
  const std::vector<Name>& itemNames() const;
  bool hasSelect() const;
  // Responses that a selection takes in beside the documents that match.
  enum class Responses { None, Children, Descendants };
  Responses responses() const;

 private:
  std::shared_ptr<const Program> program_;
};

struct Compiled {
  std::shared_ptr<const Formula> formula;  // null with an error
  CompileError error;
  explicit operator bool() const { return formula != nullptr; }
};

Compiled compile(QStringView source, const CompileOptions& options = {});

// What a run may do and use.
struct Limits {
  qint64 steps = 500'000'000;           // fault::TooMuchTime beyond
  qsizetype memory = 64 * 1024 * 1024;  // bytes in values; fault::TooMuchMemory beyond
  int evalDepth = 16;                   // @Eval in @Eval
};

struct Outcome {
  Value value;            // of the last bare expression or SELECT; may be an error
  bool matches = false;   // the selection: SELECT's value, or the last expression's
  bool modified = false;  // items were written
  bool deletes = false;   // @DeleteDocument was computed
};

class Evaluation {
 public:
  Evaluation(std::shared_ptr<const Formula> formula, Environment& environment, Limits limits = {});
  ~Evaluation();
  Evaluation(const Evaluation&) = delete;
  Evaluation& operator=(const Evaluation&) = delete;

  // In a search, fields that the formula assigns are seen by the formula and not written.
  enum class Writes { Apply, Pretend };
  // Document and database may be null. Never throws: a failure is an error value.
  Outcome run(Document* document, Database* database, Writes writes = Writes::Apply);

  // --- For functions; see Call -------------------------------------------------------------------------
  Environment& environment() const { return environment_; }
  Document* document() const { return document_; }
  Database* database() const { return database_; }
  void charge(qint64 steps) {
    stepsUntilAsked_ -= steps;
    if (stepsUntilAsked_ <= 0) askWhetherToGoOn();
  }
  // Items as the formula sees them: what it assigned before what the document holds.
  bool item(const Name& name, Value& value) const;
  QStringList itemNames() const;
  // Unavailable removes the item.
  void writeItem(const QString& name, const Value& value);
  void markDeleted(bool deleted) { deletes_ = deleted; }
  bool mayWrite() const { return writes_ == Writes::Apply; }

 private:
  friend class Machine;
  struct State;
  void askWhetherToGoOn();
  std::shared_ptr<const Formula> formula_;
  Environment& environment_;
  Limits limits_;
  Document* document_ = nullptr;
  Database* database_ = nullptr;
  Writes writes_ = Writes::Apply;
  bool modified_ = false, deletes_ = false;
  qint64 stepsLeft_ = 0;
  qint64 stepsUntilAsked_ = 0;
  std::unique_ptr<State> state_;
};

}  // namespace lens::formula
