// What is in folders, on both sides.
#include "embedded/views/folder_documents.h"

#include "replica_fixture.h"

namespace lens {
namespace {
using namespace Qt::Literals::StringLiterals;

TEST_F(Pair, WhatIsInFoldersTravelsAndTheLaterChangeCounts) {
  Note folder = noteWith(u"Kept"_s, noteclass::View);
  folder.add(u"$Flags"_s, itemflag::Summary, textValue(u"F"));
  a->notes().save(folder);
  const Unid kept = folder.header.unid, other = add(*a, u"other"_s), late = add(*a, u"late"_s);
  const auto idIn = [](const Database& database, const Unid& note) {
    NoteVersion version;
    EXPECT_TRUE(database.versions().findVersion(note, version));
    return version.id;
  };
  const auto shown = [&](const Database& database) {
    QStringList subjects;
    for (const NoteId id : folderDocuments(database, kept)) {
      Note note;
      if (database.notes().read(id, note)) subjects << note.text(u"Subject");
    }
    subjects.sort();
    return subjects.join(u' ');
  };
  addToFolder(*a, folder.header.id, {idIn(*a, unid), idIn(*a, other)});
  replicate(*a, *b);
  EXPECT_EQ(shown(*b), u"first other"_s);
  removeFromFolder(*b, idIn(*b, kept), {idIn(*b, unid)});
  addToFolder(*a, folder.header.id, {idIn(*a, late)});
  replicate(*a, *b);
  for (const auto& side : {a, b}) EXPECT_EQ(shown(*side), u"late other"_s);
  // Back again on one side, behind the removal on the other.
  addToFolder(*a, folder.header.id, {idIn(*a, unid)});
  remove(*b, other);
  replicate(*b, *a);
  for (const auto& side : {a, b}) EXPECT_EQ(shown(*side), u"first late"_s);
  createReplica(*a, path(u"new"_s));
  EXPECT_EQ(shown(*Database::open(path(u"new"_s))), u"first late"_s);
}

}  // namespace
}  // namespace lens
