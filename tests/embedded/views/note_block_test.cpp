// Documents of a view packed by their IDs.
#include "embedded/views/note_block.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace lens::testbed {
namespace {

QByteArray blockRows(const NoteBlock& block, NoteId note) {
  QByteArrayView rows;
  return block.find(note, rows) ? rows.toByteArray() : QByteArray("(none)");
}

TEST(NoteBlocks, HoldDocumentsWhoseIdsDifferInTheLastEightBits) {
  EXPECT_EQ(NoteBlock::of(NoteId(0x8FA)), NoteBlock::of(NoteId(0x800)));
  EXPECT_NE(NoteBlock::of(NoteId(0x8FA)), NoteBlock::of(NoteId(0x9FA)));
  EXPECT_EQ(NoteBlock::of(NoteId(0xFFFFFFFC)), 0xFFFFFFU);
}

TEST(NoteBlocks, SayAfterAnySequenceOfChangesWhatAMapSays) {
  std::mt19937 random(7);
  NoteBlock block;
  std::map<NoteId, QByteArray> expected;
  for (int turn = 0; turn < 20000; ++turn) {
    const NoteId note(quint32(0x4200 + 4 * (random() % 64)));
    if (random() % 3 == 0) {
      EXPECT_EQ(block.remove(note), expected.erase(note) == 1);
    } else {
      expected[note] = QByteArray(qsizetype(random() % 9), char(random()));
      block.put(note, expected[note]);
    }
    const NoteId asked(quint32(0x4200 + 4 * (random() % 64)));
    ASSERT_EQ(blockRows(block, asked), expected.contains(asked) ? expected[asked] : QByteArray("(none)"));
  }
  NoteBlock filled;
  for (const auto& [note, rows] : expected) filled.append(note, rows);
  EXPECT_EQ(filled.bytes(), block.bytes());
}

TEST(NoteBlocks, OfDamagedBytesGiveWhatStandsBeforeTheFault) {
  NoteBlock whole;
  for (quint32 note = 0; note < 0x40; note += 4) whole.append(NoteId(note), "0123456789");
  for (qsizetype size = 0; size < whole.bytes().size(); ++size) {
    NoteBlock cut(whole.bytes().first(size));
    for (quint32 note = 0; note < 0x40; note += 4)
      EXPECT_EQ(blockRows(cut, NoteId(note)),
                note / 4 < size / 15 ? QByteArray("0123456789") : QByteArray("(none)"));
    cut.put(NoteId(0x3C), "new");
    EXPECT_EQ(blockRows(cut, NoteId(0x3C)), "new");
    cut.remove(NoteId(0x3C));
    EXPECT_EQ(blockRows(cut, NoteId(0x3C)), "(none)");
  }
}

}  // namespace
}  // namespace lens::testbed
