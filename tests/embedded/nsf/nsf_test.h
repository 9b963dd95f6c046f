// What the tests of real databases share.
#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "embedded/nsf/made_samples.h"
#include "embedded/nsf/maker/made_bytes.h"
#include "embedded/nsf/maker/made_values.h"
#include "embedded/nsf/nsf_compare.h"
#include "embedded/support/store_test.h"
#include "notes/literals.h"

namespace lens::made {

inline int problemsOf(const NsfReport& report, NsfProblemKind kind, quint32 id = 0) {
  int count = 0;
  for (const NsfProblem& problem : report.problems)
    if (problem.kind == kind && (id == 0 || problem.id == id)) ++count;
  return count;
}

inline bool isShown(const NsfDatabase& database, quint32 id) {
  return database.noteIds().contains(NoteId(id));
}

// The sample with changes made to its pieces before checksums and marks are put in place.
struct ChangedSample {
  using Change = std::function<void(QByteArray& bytes)>;
  // Changes one piece: which is not the one of that number stays as it is.
  ChangedSample& with(MadePart part, quint32 number, Change change) {
    changes.push_back({part, number, std::move(change)});
    return *this;
  }
  MadeFile file() {
    described.change = [this](MadePart part, quint32 number, QByteArray& bytes) {
      for (const One& one : changes)
        if (one.part == part && one.number == number) one.change(bytes);
    };
    return makeFile(described);
  }
  std::unique_ptr<NsfDatabase> read(NsfReading reading = NsfReading::Proven) {
    return readBytes(file().bytes, reading);
  }

  struct One {
    MadePart part;
    quint32 number;
    Change change;
  };
  SampleIds ids;
  MadeDatabase described = sampleDatabase(&ids);
  std::vector<One> changes;
};

inline NsfNote noteOf(NsfDatabase& database, quint32 id) {
  NsfNote note;
  EXPECT_TRUE(database.readNote(NoteId(id), note)) << std::hex << id;
  return note;
}

inline QString attachmentOf(NsfDatabase& database, const NsfItem& item, QByteArray& content) {
  FileObject file;
  if (!readFileObject(item.item.data(), file)) return QStringLiteral("no file");
  return database.readAttachment(file, [&](QByteArrayView piece) {
    content.append(piece);
    return true;
  });
}

}  // namespace lens::made
