// "Replace in Source": replaces text in the marked items of all documents of a view where they are.
//
// A document that has one of the items is saved, whether the text occurs in it or not. Nothing is copied and
// nothing can be taken back.
#pragma once

#include "bulk/replic_desk.h"

namespace lens {

class SourceReplacement {
 public:
  explicit SourceReplacement(ReplicDesk& desk);

  // Without a trap: a failure is the caller's, and what was saved until then stays.
  void cmdReplace_Click();

 private:
  void replaceInDocument(const NotesDocument& document);

  ReplicDesk& desk_;
};

}  // namespace lens
