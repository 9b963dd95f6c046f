// Attachments as they were attached, whatever they are packed by; and the list of those who may open the
// database.
#include <random>

#include "embedded/nsf/nsf_acl_items.h"
#include "embedded/nsf/nsf_test.h"

namespace lens::made {
namespace {

using Attached = MadeDatabase::Attached;

struct WithFile {
  WithFile(const QByteArray& content, Attached how) {
    MadeNote note = document(1);
    object = described.attach(note, "paper.bin", content, how);
    id = described.add(note);
  }
  QString read(QByteArray& content) {
    database = readBytes(makeFile(described).bytes);
    return attachmentOf(*database, noteOf(*database, id).items.last(), content);
  }
  QString read() {
    QByteArray content;
    return read(content);
  }
  MadeObject& madeObject() { return described.objects[0]; }
  MadeItem& item() { return described.notes[0].items.last(); }

  MadeDatabase described;
  quint32 object = 0, id = 0;
  std::unique_ptr<NsfDatabase> database;
};

constexpr Attached kAll[] = {Attached::Plain, Attached::Frequency, Attached::FrequencyInBlocks,
                             Attached::Bits, Attached::BitsBehindSize};

TEST(NsfAttachments, ComeOutAsTheyWentIn) {
  std::mt19937 random(3);
  QByteArray noise(40'000, '\0');
  for (char& byte : noise) byte = char(random());
  for (const QByteArray& content : {QByteArray("x"), QByteArray(1, '\0'), sampleContent(), noise,
                                    QByteArray(300'000, 'z'), sampleContent().repeated(40)})
    for (const Attached how : kAll) {
      if (how == Attached::FrequencyInBlocks && content.size() < 3) continue;
      WithFile file(content, how);
      QByteArray read;
      EXPECT_EQ(file.read(read).toStdString(), "") << content.size() << " as " << int(how);
      EXPECT_TRUE(read == content) << content.size() << " as " << int(how);
    }
}

TEST(NsfAttachments, AnEmptyFileIsEmpty) {
  for (const Attached how : {Attached::Plain, Attached::Frequency}) {
    WithFile file({}, how);
    QByteArray read;
    EXPECT_EQ(file.read(read).toStdString(), "") << int(how);
    EXPECT_TRUE(read.isEmpty());
  }
}

// By hand: "abracadabra" as a file of somebody else has it.
TEST(NsfAttachments, CodesByFrequencyOfAnotherMaker) {
  WithFile file("abracadabra", Attached::Frequency);
  file.madeObject().payload = QByteArray::fromHex(
      "540402001400"
      "6100fffffefffdff0001620072 00fcff63006400"
      "a31851b0");
  QByteArray read;
  EXPECT_EQ(file.read(read).toStdString(), "");
  EXPECT_EQ(read, "abracadabra");
}

TEST(NsfAttachments, AReaderThatHasEnoughEndsIt) {
  for (const Attached how : kAll) {
    WithFile file(QByteArray(300'000, 'z'), how);
    file.read();
    FileObject object;
    ASSERT_TRUE(readFileObject(noteOf(*file.database, file.id).items.last().item.data(), object));
    int pieces = 0;
    const QString reason = file.database->readAttachment(object, [&](QByteArrayView) {
      ++pieces;
      return false;
    });
    EXPECT_EQ(pieces, 1) << int(how);
    EXPECT_FALSE(reason.isEmpty()) << int(how);
  }
}

TEST(NsfAttachments, WhatIsWrongIsTold) {
  for (const Attached how : kAll) {
    // Another size than the item says.
    WithFile longer(sampleContent(), how);
    put32(longer.item().value, 16, quint32(sampleContent().size() + 300));
    EXPECT_FALSE(longer.read().isEmpty()) << int(how);
    WithFile shorter(sampleContent(), how);
    put32(shorter.item().value, 16, quint32(sampleContent().size() - 1));
    EXPECT_FALSE(shorter.read().isEmpty()) << int(how);
    // Bytes are missing, and the frame agrees with what is left.
    WithFile cut(sampleContent(), how);
    cut.madeObject().payload.chop(how == Attached::Bits || how == Attached::BitsBehindSize ? 20 : 3);
    cut.madeObject().keyed = false;
    EXPECT_FALSE(cut.read().isEmpty()) << int(how);
    // Sizes that nobody has.
    for (const quint32 size : {0xFFFFFFFFu, 0x80000000u, 0x7FFFFFFFu}) {
      WithFile huge(sampleContent(), how);
      put32(huge.item().value, 16, size);
      EXPECT_FALSE(huge.read().isEmpty()) << int(how);
    }
    WithFile other(sampleContent(), how);
    put32(other.item().value, 2, 0x99999);
    EXPECT_FALSE(other.read().isEmpty());
    WithFile unknown(sampleContent(), how);
    put16(unknown.item().value, 10, 3);
    EXPECT_FALSE(unknown.read().isEmpty());
  }
}

TEST(NsfAttachments, ADigestThatDoesNotHoldIsTold) {
  WithFile file(sampleContent(), Attached::Plain);
  file.described.change = [](MadePart part, quint32, QByteArray& bytes) {
    if (part == MadePart::Object) bytes[bytes.size() - 5] = char(bytes[bytes.size() - 5] ^ 1);
  };
  EXPECT_FALSE(file.read().isEmpty());
  // Without a key nobody can tell.
  file.madeObject().keyed = false;
  EXPECT_EQ(file.read().toStdString(), "");
}

TEST(NsfAttachments, WhatIsKeptOutsideTheDatabaseIsToldSo) {
  WithFile file(sampleContent(), Attached::Plain);
  file.madeObject().payload = "ticket";
  file.madeObject().keyedSize = sampleContent().size();
  EXPECT_TRUE(file.read().contains(u"outside"));
}

TEST(NsfAttachments, ChangedCodesComeToAnEnd) {
  const int rounds = qEnvironmentVariableIsSet("LENS_SOAK") ? 1500 : 60;
  std::mt19937 random(11);
  for (const Attached how : {Attached::Frequency, Attached::FrequencyInBlocks, Attached::Bits}) {
    WithFile file(sampleContent(), how);
    file.madeObject().keyed = false;
    const QByteArray whole = file.madeObject().payload;
    for (int round = 0; round < rounds; ++round) {
      QByteArray& payload = file.madeObject().payload = whole;
      const qsizetype range = round % 2 ? payload.size() : 200;
      for (int i = 0; i < 1 + round % 4; ++i) payload[qsizetype(random() % size_t(range))] = char(random());
      QByteArray read;
      const QString reason = file.read(read);
      // A sum of 16 bits may agree by chance; a size never does.
      if (reason.isEmpty()) {
        EXPECT_EQ(read.size(), sampleContent().size());
      }
    }
  }
}

// A node of the tree that leads to itself, to a node that is not there, to an end that is none.
TEST(NsfAttachments, TreesThatAreNoneComeToAnEnd) {
  for (const quint16 node :
       {quint16(0), quint16(0xFFFF), quint16(0x8000), quint16(0x8001), quint16(257), quint16(0x7FFF)}) {
    WithFile file(sampleContent(), Attached::Frequency);
    file.madeObject().keyed = false;
    QByteArray& payload = file.madeObject().payload;
    const int tree = get16(payload, 4);
    for (int at = 6; at < 6 + tree; at += 2) put16(payload, at, node);
    EXPECT_FALSE(file.read().isEmpty()) << node;
    for (const int size : {0, 1, 3, 4, 65535}) {
      put16(payload, 4, quint32(size));
      EXPECT_FALSE(file.read().isEmpty()) << size;
    }
  }
}

TEST(NsfAcl, IsReadToItsLastByte) {
  const auto read = readBytes(makeFile(sampleDatabase()).bytes);
  const auto acl = read->acl();
  ASSERT_TRUE(acl.has_value());
  ASSERT_EQ(acl->entries.size(), 3);
  EXPECT_EQ(acl->entries[0].name, u"-Default-");
  EXPECT_EQ(acl->entries[0].level, 2);
  EXPECT_EQ(acl->entries[1].name, u"CN=Ada/O=T");
  EXPECT_EQ(acl->entries[1].level, 6);
  EXPECT_EQ(acl->entries[1].flags, 0x0020);
  EXPECT_EQ(acl->entries[1].roles, QByteArray::fromHex("60000000000000000000"));
  EXPECT_EQ(acl->entries[2].flags, 0x0042);
  EXPECT_EQ(acl->roleNames.mid(5), QStringList({u"Clerk"_s, u"Boss"_s}));
  EXPECT_EQ(acl->history, QStringList({u"first line"_s, u"second line"_s}));
}

TEST(NsfAcl, ChangedListsAreReadOrRefused) {
  QByteArray roles(10, '\0');
  const QByteArray whole =
      accessList({{"-Default-", 2, 0, roles}, {"CN=Ada/O=T", 6, 0x20, roles}}, {"Clerk"}, {"line"});
  QString reason;
  ASSERT_TRUE(readNsfAcl(whole, reason).has_value()) << reason.toStdString();
  for (qsizetype size = 0; size < whole.size() - 2; ++size) {
    EXPECT_FALSE(readNsfAcl(whole.first(size), reason).has_value()) << size;
    EXPECT_FALSE(reason.isEmpty());
  }
  for (qsizetype at = 0; at < whole.size(); ++at)
    for (const int bits : {0xFF, 0x01, 0x80}) {
      QByteArray changed = whole;
      changed[at] = char(changed[at] ^ bits);
      const auto acl = readNsfAcl(changed, reason);
      if (acl) {
        EXPECT_EQ(acl->entries.size(), 2) << at;
      }
    }
}

// Else one entry would keep the whole database from being opened.
TEST(NsfAcl, WhatNoItemCouldHoldIsRefused) {
  const QByteArray roles(10, '\0');
  const auto reasonOf = [&](qsizetype name, qsizetype line) {
    QString reason;
    const auto acl = readNsfAcl(
        accessList({{QByteArray(name, 'n'), 2, 0, roles}}, {"Clerk"}, {QByteArray(line, 'h')}), reason);
    EXPECT_EQ(acl.has_value(), reason.isEmpty());
    if (acl) {
      Note note;
      EXPECT_NO_THROW(addAclItems(*acl, note));
    }
    return reason.toStdString();
  };
  EXPECT_EQ(reasonOf(1024, 16384), "");
  EXPECT_EQ(reasonOf(1025, 10), "the name of entry 1 is longer than 1024 bytes");
  EXPECT_EQ(reasonOf(64000, 10), "the name of entry 1 is longer than 1024 bytes");
  EXPECT_EQ(reasonOf(10, 60000), "a line of its history is longer than 16384 letters");
}

// As an import of "acl" keeps them.
QStringList textsOf(const Note& note, QStringView name) {
  QStringList texts;
  const Item* const item = note.find(name);
  const Value values = item ? itemValues(*item) : Value();
  for (int i = 0; values.isArray() && i <= values.upperBound(); ++i) texts += values.at(i).text();
  return texts;
}

TEST(NsfAcl, AsItemsSaysWhatEachMayDo) {
  NsfAcl acl;
  acl.roleNames = {u""_s, u"(Old)"_s, u""_s, u""_s, u""_s, u"Clerk"_s, u"[Boss]"_s};
  acl.history = {u"Ada added Carl"_s};
  const auto entry = [&](const QString& name, int level, quint16 flags, const char* roles = "") {
    acl.entries.push_back({name, level, flags, QByteArray::fromHex(roles).leftJustified(10, '\0')});
  };
  entry(u"-Default-"_s, 0, 0);
  entry(u"Visitors"_s, 2, 0x0260);
  entry(u"CN=Ada/O=T"_s, 3, 0x0125, "62");
  entry(u"Writers"_s, 3, 0x0040);
  entry(u"Mailers"_s, 1, 0);
  entry(u"Servers; all of them"_s, 6, 0x0042, "40");
  entry(u"CN=Hub/O=T"_s, 6, 0x07DA);
  entry(u"CN=Carl/O=T"_s, 9, 0x1024);
  Note note;
  note.add(u"$ACLDigest"_s, 0, textValue(u"first"));
  addAclItems(acl, note);
  EXPECT_EQ(note.items.first().name, u"$ACLDigest");
  const QString none =
      u"createpersonalagents=false; createpersonalviews=false; createsharedviews=false; "
      u"createlsjavaagents=false; readpublicdocs=false; writepublicdocs=false"_s;
  QString scripts = none, reads = none, all = none;
  scripts.replace(u"createlsjavaagents=false"_s, u"createlsjavaagents=true"_s);
  reads.replace(u"readpublicdocs=false"_s, u"readpublicdocs=true"_s);
  all.replace(u"false"_s, u"true"_s);
  const QString may = u"createdocs=true; deletedocs=true; "_s,
                mayNot = u"createdocs=false; deletedocs=false; "_s;
  EXPECT_EQ(
      textsOf(note, u"$ACLEntries").join(u'\n').toStdString(),
      QStringList(
          {u"-Default-; default=true; level=noaccess; type=unspecified; "_s + mayNot + none,
           u"Visitors; level=reader; type=persongroup; "_s + mayNot + reads,
           u"CN=Ada/O=T; level=author; type=person; "_s + mayNot + scripts +
               u"; roles=(Old),[Clerk],[Boss]"_s,
           u"Writers; level=author; type=mixedgroup; "_s + may + none,
           u"Mailers; level=depositor; type=unspecified; createdocs=true; deletedocs=false; "_s + none,
           u"Servers; all of them; level=manager; type=servergroup; "_s + may + none + u"; roles=[Boss]"_s,
           u"CN=Hub/O=T; level=manager; type=servergroup; "_s + may + all,
           u"CN=Carl/O=T; level=manager; type=person; createdocs=true; deletedocs=false; "_s + none})
          .join(u'\n')
          .toStdString());
  EXPECT_EQ(textsOf(note, u"$ACLRoles"), QStringList({u"(Old)"_s, u"[Clerk]"_s, u"[Boss]"_s}));
  EXPECT_EQ(textsOf(note, u"$ACLLog"), acl.history);
  EXPECT_EQ(textsOf(note, u"$ACLAttributes"), QStringList());
}

}  // namespace
}  // namespace lens::made
