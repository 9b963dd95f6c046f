#include "embedded/evaluation/agent_run.h"

#include <QSet>
#include <QThread>

#include "embedded/design/design_elements.h"
#include "embedded/design/design_notes.h"
#include "embedded/evaluation/store_database.h"
#include "embedded/evaluation/workspace_environment.h"
#include "embedded/format/set_item.h"
#include "embedded/format/unid_set.h"
#include "embedded/formula_context/evaluated_note.h"
#include "embedded/search/selection.h"
#include "embedded/views/view_documents.h"
#include "notes/literals.h"

namespace lens {
namespace {

using formula::Evaluation;

[[noreturn]] void refuse(const AgentPlace& at, const Agent& agent, const QString& reason) {
  refuseAgent(at.store->path(), agent.title, reason);
}

std::shared_ptr<const formula::Formula> compiled(const AgentPlace& at, const Agent& agent,
                                                 const formula::Environment& environment) {
  try {
    return compiledFormula(agent.formula, environment);
  } catch (const RuntimeError& error) {
    refuse(at, agent, u"its formula has a mistake: %1"_s.arg(error.description()));
  }
}

QVector<NoteId> documentsInView(const AgentPlace& at, const Agent& agent) {
  const ClientState& client = at.workspace.client();
  NoteId view = at.seesClient && client.isOnTop(at.place) ? client.view() : NoteId();
  if (view.isNull()) view = at.store->notes().specialNote(noteclass::View | noteclass::Default);
  Note note;
  if (view.isNull() || !at.store->notes().read(view, note))
    refuse(at, agent,
           u"it runs on the documents of a view; none is open, and the database has no "
           "default view"_s);
  return viewDocuments(*at.store, note, [&at] { return at.workspace.isInterrupted(); });
}

QVector<NoteId> targetDocuments(const AgentPlace& at, const Agent& agent) {
  switch (agent.target()) {
    case AgentTarget::All:
    case AgentTarget::New:
    case AgentTarget::NewOrModified:
      return notesOfKinds(*at.store, {NoteKind::Documents});
    case AgentTarget::Selected: {
      const ClientState& client = at.workspace.client();
      return at.seesClient && client.isOnTop(at.place) ? client.visibleSelection() : QVector<NoteId>();
    }
    case AgentTarget::InView:
      return documentsInView(at, agent);
    case AgentTarget::Once:
      return {};
    case AgentTarget::None:
      refuse(at, agent, u"it waits for documents that arrive or change, and takes none by hand"_s);
    case AgentTarget::Unread:
      refuse(at, agent, u"it runs on unread documents, and no unread marks are kept"_s);
    case AgentTarget::Prompt:
      refuse(at, agent, u"it asks a person for its documents"_s);
  }
  refuse(at, agent, u"its settings name no known set of documents (%1)"_s.arg(agent.settings.search));
}

// A document may stand under several categories of a view.
QVector<NoteId> eachOnce(const QVector<NoteId>& ids) {
  QVector<NoteId> once;
  QSet<NoteId> seen;
  for (const NoteId id : ids) {
    if (seen.contains(id)) continue;
    seen.insert(id);
    once.push_back(id);
  }
  return once;
}

// One run of one agent.
class Run {
 public:
  Run(const AgentPlace& at, const Agent& agent)
      : at_(at),
        agent_(agent),
        environment_(at.workspace),
        database_(at.workspace, at.place, at.store),
        formula_(compiled(at, agent, environment_)),
        evaluation_(formula_, environment_),
        lastRun_(instantOf(agent.lastRun)) {}

  AgentRun over(const QVector<NoteId>& ids) {
    const QVector<NoteId> documents = eachOnce(ids);
    const bool withResponses = formula_->responses() != formula::Formula::Responses::None;
    // A response may stand before the document that it answers.
    if (withResponses)
      for (const NoteId id : documents) findSelected(id);
    for (const NoteId id : documents) process(id);
    return run_;
  }

  // What the formula writes into a document goes nowhere; profiles and other documents it may change.
  void once() {
    Note blank;
    EvaluatedNote document(&blank, nullptr);
    checked(evaluation_.run(&document, &database_), u"its single run"_s);
  }

 private:
  // Marked rows of a list may be design notes, and a document may have gone meanwhile.
  bool read(NoteId id, Note& note) const {
    try {
      if (!at_.store->notes().read(id, note)) return false;
    } catch (const RuntimeError& error) {
      if (error.number() != enginefault::Damaged) throw;
      return false;
    }
    if (noteclass::base(note.header.noteClass) != noteclass::Document || isProfile(note)) return false;
    if (!lastRun_.isValid()) return true;
    if (agent_.target() == AgentTarget::New) return instantOf(note.header.added) > lastRun_;
    return agent_.target() != AgentTarget::NewOrModified || instantOf(note.header.modified) > lastRun_;
  }

  // A user who has had enough ends the run between two documents too.
  const formula::Outcome& checked(const formula::Outcome& outcome, const QString& where) {
    if (outcome.value.isError()) fail(where, outcome.value.errorCode());
    if (environment_.interrupted()) fail(where, formula::fault::TooMuchTime);
    return outcome;
  }

  [[noreturn]] void fail(const QString& where, formula::FaultCode code) const {
    throw RuntimeError(agentfault::Failed,
                       u"%1: the agent \"%2\" failed over %3 and changed nothing: %4"_s.arg(
                           at_.store->path(), agent_.title, where, formula::faultText(code)));
  }

  formula::Outcome evaluate(EvaluatedNote& document, NoteId id, Evaluation::Writes writes) {
    return checked(evaluation_.run(&document, &database_, writes), u"document %1"_s.arg(id.hexText()));
  }

  // Which documents are selected by themselves.
  void findSelected(NoteId id) {
    Note note;
    if (!read(id, note)) return;
    EvaluatedNote document(note, at_.store.get());
    if (evaluate(document, id, Evaluation::Writes::Pretend).matches) selected_.insert(note.header.unid);
  }

  void process(NoteId id) {
    Note note;
    if (!read(id, note)) return;
    EvaluatedNote document(&note, at_.store.get());
    document.setSelected([this](const Unid& unid) { return selected_.contains(unid); });
    const formula::Outcome outcome = evaluate(document, id, Evaluation::Writes::Apply);
    if (formula_->hasSelect() && !outcome.matches) return;
    ++run_.processed;
    if (outcome.deletes) {
      at_.store->notes().remove(id);
      ++run_.deleted;
    } else if (outcome.modified) {
      at_.store->notes().save(note);
      ++run_.changed;
    }
  }

  const AgentPlace& at_;
  const Agent& agent_;
  WorkspaceEnvironment environment_;
  StoreDatabase database_;
  std::shared_ptr<const formula::Formula> formula_;
  Evaluation evaluation_;
  QDateTime lastRun_;
  UnidSet selected_;  // for a selection that takes in responses
  AgentRun run_;
};

// Each replica has its own last run, so the note keeps its sequence and times.
void recordRun(Database& store, Note note, const TimeDate& now, const AgentRun& run) {
  setItem(note, u"$AssistLastRun"_s, timeValue(now), 0);
  setItem(note, u"$AssistDocCount"_s, numberValue(run.processed), 0);
  store.notes().saveAsGiven(note);
}

// Times are hundredths of a second. What is saved right behind the run has to be later than the run, or
// the next one would miss it.
void waitUntilAfter(const TimeDate& time) {
  constexpr int kMostTries = 20;
  for (int i = 0; i < kMostTries && instantOf(timeDateNow()) <= instantOf(time); ++i) QThread::msleep(1);
}

}  // namespace

AgentRun runAgent(const AgentPlace& at, NoteId agentId) {
  // From here on nobody else changes the agent, which is written back at the end.
  Database::Transaction all(*at.store);
  Note note;
  if (!at.store->notes().read(agentId, note))
    throw RuntimeError(agentfault::CannotRun, u"%1: the agent is no longer there"_s.arg(at.store->path()));
  const Agent agent = readFormulaAgent(note, at.store->path());
  Run run(at, agent);
  AgentRun done;
  if (agent.target() == AgentTarget::Once)
    run.once();
  else
    done = run.over(targetDocuments(at, agent));
  const TimeDate now = timeDateNow();
  recordRun(*at.store, note, now, done);
  all.commit();
  at.workspace.notifyChanged(at.place);
  waitUntilAfter(now);
  return done;
}

}  // namespace lens
