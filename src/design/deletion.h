// "Del marked documents": removes the notes of the marked rows of idList.
//
// A note that the object model finds is removed through it and its row goes. One that it does not find is
// deleted by its ID through the C API, for good and without a stub; its row stays, marked, and is tried
// again after each removal. Nothing is asked.
#pragma once

#include "controls/event.h"
#include "shell/desk.h"

namespace lens {

class Deletion {
 public:
  explicit Deletion(Desk& desk);

  // Refreshes the view on top in the client; the inspector knows how.
  Event<> refreshCurrentView;

  void cmdDelete_Click();
  // Deletes a note by its ID of eight hexadecimal digits. Empty on success, otherwise what went wrong.
  QString DeleteNoteLowLevel(const NotesDatabase& database, const QString& noteIdText);

 private:
  enum class Walk { GoesOn, StartsAnew, Ends };
  void removeMarkedRows();
  Walk removeNoteOf(int row);
  void removeDocument(int row);
  Walk removeById(const QString& noteId);

  Desk& desk_;
};

}  // namespace lens
