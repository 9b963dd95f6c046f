#include "embedded/search/selection.h"

#include <algorithm>

#include "embedded/format/unid_set.h"
#include "embedded/formula_context/evaluated_packed_note.h"
#include "notes/literals.h"

namespace lens {
namespace {

using formula::Evaluation;
using formula::Formula;

class Search {
 public:
  Search(const Database& documents, const SelectionRequest& request)
      : documents_(documents),
        request_(request),
        evaluation_(request.formula, request.environment),
        document_(request.formula->itemNames(), &documents) {}

  QVector<NoteId> run() {
    const bool withResponses = request_.formula->responses() != Formula::Responses::None;
    documents_.notes().scanPacked(noteclass::Document, [&](const PackedNote& note) {
      if (isProfile(note) || !recentEnough(note)) return true;
      if (matches(note)) {
        found_.push_back(note.header.id);
        if (withResponses) selected_.insert(note.header.unid);
      }
      return withResponses || !full();
    });
    if (withResponses && !selected_.isEmpty()) addResponses();
    if (full()) found_.resize(request_.most);
    return std::move(found_);
  }

 private:
  bool recentEnough(const PackedNote& note) const {
    return !request_.since.isValid() || instantOf(note.header.modified) >= request_.since;
  }
  bool full() const { return request_.most > 0 && found_.size() >= request_.most; }
  // A formula without an end would have none over the next document either; and the user may have enough.
  bool matches(const PackedNote& note) {
    document_.show(note);
    const formula::Outcome outcome =
        evaluation_.run(&document_, request_.database, Evaluation::Writes::Pretend);
    const bool endless = outcome.value.isError() && outcome.value.errorCode() == formula::fault::TooMuchTime;
    if (endless || request_.environment.interrupted())
      throw RuntimeError(kFormulaError,
                         u"%1: %2"_s.arg(documents_.path(), formula::faultText(formula::fault::TooMuchTime)));
    return outcome.matches;
  }

  // Responses are asked again when it is known which documents were selected: a response may stand
  // before the document that it answers.
  void addResponses() {
    document_.setSelected([this](const Unid& unid) { return selected_.contains(unid); });
    const qsizetype first = found_.size();
    documents_.notes().scanPacked(noteclass::Document, [&](const PackedNote& note) {
      if (parentOf(note).isNull() || isProfile(note) || !recentEnough(note)) return true;
      if (selected_.contains(note.header.unid)) return true;
      if (matches(note)) found_.push_back(note.header.id);
      return true;
    });
    std::inplace_merge(found_.begin(), found_.begin() + first, found_.end());
  }

  const Database& documents_;
  const SelectionRequest& request_;
  Evaluation evaluation_;
  EvaluatedPackedNote document_;
  QVector<NoteId> found_;
  UnidSet selected_;
};

}  // namespace

QVector<NoteId> selectDocuments(const Database& documents, const SelectionRequest& request) {
  return Search(documents, request).run();
}

std::shared_ptr<const Formula> compiledFormula(QStringView source, const formula::Environment& environment) {
  const formula::Compiled compiled = formula::compile(source, {&environment});
  if (compiled) return compiled.formula;
  const formula::CompileError& error = compiled.error;
  QString text = u"%1 (line %2, character %3)"_s.arg(formula::faultText(error.reason))
                     .arg(error.line + 1)
                     .arg(error.column + 1);
  if (error.length > 0) text += u": '%1'"_s.arg(source.mid(error.offset, qMin(error.length, 80)));
  throw RuntimeError(kFormulaError, text);
}

std::shared_ptr<const Formula> searchFormula(const Database& database, QStringView source,
                                             const formula::Environment& environment) {
  try {
    return compiledFormula(source, environment);
  } catch (const RuntimeError& error) {
    throw RuntimeError(error.number(), u"%1: %2"_s.arg(database.path(), error.description()));
  }
}

}  // namespace lens
