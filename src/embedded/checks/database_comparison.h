// What two databases, or two notes, differ in.
//
// Notes belong together by their UNID, items by their name and their place among those of that name. What a
// database numbers for itself (note IDs, numbers of objects) and when a note was changed makes no difference;
// an attachment is the same where its name, dates and bytes are.
#pragma once

#include "embedded/checks/note_walk.h"

namespace lens {

enum class Difference { OnlyInFirst, OnlyInSecond, Changed };

struct ItemDifference {
  QString name;
  Difference kind = Difference::Changed;
};

struct NoteDifference {
  Difference kind = Difference::Changed;
  NoteHeader first, second;  // a header without an ID where the note is missing
  QString title;             // subject or title, "" where it has none
  // Of a note that both have.
  bool otherClass = false, otherParent = false;
  QVector<ItemDifference> items;
};

// An item of the first note and the one of the second that belongs to it, by their places in the notes; -1
// where a note has none.
struct ItemPair {
  qsizetype first = -1, second = -1;
  bool same = false;
};

// Every item of both, in the order of the first note's items, then those that only the second one has.
QVector<ItemPair> pairItems(const Database& firstDatabase, const Note& first, const Database& secondDatabase,
                            const Note& second);
// The pairs that differ. In the order of the first note's items, then those that only the second one has.
QVector<ItemDifference> compareItems(const Database& firstDatabase, const Note& first,
                                     const Database& secondDatabase, const Note& second);

// Tells each difference as it is found: notes of the first database in their order, then those that only the
// second one has. Raises when a note of either is damaged: nobody can say then whether it differs. False when
// the progress ended it.
bool compareDatabases(const Database& first, const Database& second,
                      const std::function<void(const NoteDifference&)>& tell,
                      const CheckProgress& progress = {});

}  // namespace lens
