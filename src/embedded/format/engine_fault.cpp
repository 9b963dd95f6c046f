#include "embedded/format/engine_fault.h"

#include "notes/literals.h"

namespace lens {

std::span<const EngineFault> engineFaults() {
  static constexpr EngineFault kFaults[] = {
      {enginefault::NotADatabase, "the file is no database"_L1},
      {enginefault::NewerSchema, "a newer version of the program made the database"_L1},
      {enginefault::Damaged, "the bytes of a database are damaged"_L1},
      {enginefault::CannotOpen, "a file or directory cannot be opened or read"_L1},
      {enginefault::NotSaved, "a change could not be written"_L1},
      {enginefault::BadDxl, "the DXL is malformed or says what cannot be imported"_L1},
      {enginefault::NoDxl, "the file is no DXL"_L1},
      {workspacefault::UnknownServer, "the workspace has no such server"_L1},
      {workspacefault::BadPath, "the path leads out of the directory of databases"_L1},
      {workspacefault::NoSuchFile, "there is no such database"_L1},
      {workspacefault::FileExists, "there is a database of that name already"_L1},
      {enginefault::UnknownNote, "the database has no such note"_L1},
      {modelfault::NotInitialized, "the session was not initialized"_L1},
      {modelfault::DatabaseClosed, "the database was closed or removed"_L1},
      {kNoFormulaSource, "the selection of a view is there in compiled form only"_L1},
      {modelfault::WrongKind, "an argument is an object of another kind"_L1},
      {modelfault::NoSuchDocument, "the document is not there, or no longer"_L1},
      {kFormulaError, "a formula cannot be compiled or does not come to an end"_L1},
      {kQueryError, "the full-text query has a mistake"_L1},
      {kNoFullTextIndex, "the database has no full-text index"_L1},
      {modelfault::ItemRemoved, "the item was removed from its document"_L1},
      {modelfault::ItemRefused, "the item cannot become a plain value"_L1},
      {modelfault::ChangedMeanwhile, "somebody else changed the document since it was read"_L1},
      {kSecondSingleNote, "the database has its one note of the class already"_L1},
      {replicationfault::NotReplicas, "the databases have other replica IDs, or are the same file"_L1},
      {replicationfault::NoReplica, "the server has no replica"_L1},
      {replicationfault::NotesLeftOut, "damaged notes stayed on their side"_L1},
      {agentfault::CannotRun, "the agent cannot run here"_L1},
      {agentfault::Failed, "the agent failed over a document"_L1},
      {kNoFolder, "the view is no folder"_L1},
      {enginefault::InUse, "another program, thread or window has the database open"_L1},
  };
  return kFaults;
}

}  // namespace lens
