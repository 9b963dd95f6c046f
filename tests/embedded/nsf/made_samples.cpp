#include "embedded/nsf/made_samples.h"

#include <random>

#include "embedded/nsf/maker/made_bytes.h"
#include "embedded/nsf/maker/made_values.h"

namespace lens::made {

TimeDate someTime(quint32 hundredths) {
  constexpr quint32 kDay = 2460381, kOneHourEast = 0x41000000;
  return {{hundredths % 8'640'000, kDay | kOneHourEast}};
}

QByteArray someUnid(quint32 number) {
  QByteArray unid;
  add32(unid, number * 2654435761u);
  add32(unid, ~number);
  addTime(unid, someTime(number * 7));
  return unid;
}

MadeNote document(quint32 number, const QByteArray& subject) {
  MadeNote note;
  note.unid = someUnid(number);
  note.sequence = 1 + number % 5;
  note.sequenceTime = someTime(number + 100);
  note.modified = someTime(number + 101);
  note.accessed = someTime(number + 102);
  note.added = someTime(number + 99);
  note.items.push_back({"Subject", 0x0500, flag::Summary, subject});
  return note;
}

QByteArray sampleContent() {
  QByteArray content;
  for (int line = 0; line < 150; ++line)
    content += "line " + QByteArray::number(line * line) + " of the pump's papers\r\n";
  return content;
}

namespace {

QVector<MadeItem> itemsOfEveryKind() {
  return {
      {"Form", 0x0500, flag::Summary, "Memo"},
      {"Authors", 0x0501, flag::Summary | flag::Names | flag::Authors, textsValue({"CN=Ada/O=T", "[Admin]"})},
      {"Readers", 0x0501, flag::Summary | flag::Names | flag::Readers, textsValue({})},
      {"Number", 0x0300, flag::Summary, doubleValue(-2.5)},
      {"Numbers", 0x0301, flag::Summary, doublesValue({1, 1e300, 0})},
      {"Body", 0x0001, flag::Sign, richTextValue({"first", "second one", "\x82t\x82"})},
      {"Time", 0x0400, flag::Summary, instantValue(someTime(77))},
      {"Times", 0x0401, flag::Summary, instantsValue({someTime(1), someTime(2)}, {someTime(3), someTime(4)})},
      // Its type is another one than that of most items of the name.
      {"Subject", 0x0501, flag::Summary, textsValue({"a", ""})},
      {"Empty", 0x0500, flag::Summary | flag::Protected, {}},
      {"Long", 0x0500, 0, QByteArray(5001, 'x')},
      {"Selection", 0x0600, flag::Summary, QByteArray::fromHex("1c0005000e000a00")},
      {"Gr\x81n", 0x0500, flag::Summary, "name with a letter of its own"},
      {"Placeholder", 0x0000, flag::Placeholder, {}, true},
      // Parts of one text, numbered against their order.
      {"Body", 0x0001, flag::Sign, richTextValue({"third"}), false, 2},
      {"Body", 0x0001, flag::Sign, richTextValue({"fourth"}), false, 1},
      {"$Seal", 0x0009, flag::Seal, QByteArray(70, '\x99')},
      {"Mime", 0x0019, flag::Sign, QByteArray(301, '\x31')}};
}

MadeNote designNote(quint32 number, quint16 noteClass, const QByteArray& title, const QByteArray& flags) {
  MadeNote note = document(number);
  note.noteClass = noteClass;
  note.items = {{"$TITLE", 0x0500, flag::Summary, title}, {"$Flags", 0x0500, flag::Summary, flags}};
  return note;
}

void addDesign(MadeDatabase& database, SampleIds& ids) {
  ids.icon = database.add(designNote(100, 0x8010, "Papers\n#1pumps", "J7!"));
  ids.form = database.add(designNote(101, 0x8004, "Memo", "C"));
  MadeNote view = designNote(102, 0x8008, "All|Every", "Y");
  MadeObject index;
  index.noteClass = 0x0008;
  index.type = 1;
  index.payload = QByteArray(900, '\x5D');
  view.items.push_back({"$Collection", 0x0003, flag::Summary, objectValue(1, database.add(index)), true});
  ids.view = database.add(view);
  MadeObject listed;
  listed.noteClass = 0x0008;
  listed.type = 10;
  listed.payload = idTable({ids.plain, ids.response, ids.attached}) + QByteArray(9, '\x77');
  ids.folderTable = database.add(listed);
  MadeNote folder = designNote(103, 0x0008, "Chosen", "FY");
  folder.items.push_back({"$FolderIDTable", 0x0003, flag::Summary, objectValue(10, ids.folderTable), true});
  ids.folder = database.add(folder);
  MadeNote acl = designNote(104, 0x8040, "", "");
  acl.items = {{"$ACLDigest", 0x000E, flag::Summary | flag::Sign, QByteArray(16, '\xA1')}};
  ids.acl = database.add(acl);
  MadeObject list;
  list.noteClass = 0x0040;
  QByteArray roles(10, '\0');
  put8(roles, 0, 0x60);
  list.payload = accessList({{"-Default-", 2, 0, QByteArray(10, '\0')},
                             {"CN=Ada/O=T", 6, 0x0020, roles},
                             {"Servers", 6, 0x0042, QByteArray(10, '\0')}},
                            {"Clerk", "Boss"}, {"first line", "second line"});
  ids.accessList = database.add(list);
  database.special[2] = ids.form;
  database.special[3] = ids.view;
  database.special[4] = ids.icon;
  database.special[6] = ids.acl;
  database.special[16] = ids.accessList;
}

void addAttachments(MadeDatabase& database, SampleIds& ids) {
  using Attached = MadeDatabase::Attached;
  MadeNote note = document(6, "with papers");
  database.attach(note, "plain.txt", sampleContent(), Attached::Plain);
  database.attach(note, "coded.txt", sampleContent(), Attached::Frequency);
  database.attach(note, "blocks.txt", sampleContent(), Attached::FrequencyInBlocks);
  database.attach(note, "bits.txt", sampleContent(), Attached::Bits);
  database.attach(note, "sized.txt", sampleContent(), Attached::BitsBehindSize);
  ids.attached = database.add(note);
}

}  // namespace

MadeDatabase sampleDatabase(SampleIds* wanted) {
  SampleIds ids;
  MadeDatabase database;
  database.databaseId = someTime(9000);
  database.replicaId = {{0x005AE191, 0x852585F8}};
  database.changed = someTime(500'000);
  database.information = "Papers\nTools\n#1pumps\n#2papers";
  for (quint32 i = 20; i < 40; ++i) database.add(document(i, "letter " + QByteArray::number(i)));
  MadeNote plain = document(1);
  plain.items = itemsOfEveryKind();
  ids.plain = database.add(plain);
  MadeNote inRecord = document(2, "all in one");
  inRecord.items.insert(0, {"Body", 0x0001, 0, richTextValue({"within the record"})});
  inRecord.items.push_back({"Long", 0x0500, 0, QByteArray(900, 'y')});
  inRecord.bodyInRecord = true;
  ids.inRecord = database.add(inRecord);
  ids.parent = database.issueId(true);
  ids.response = database.issueId(true);
  MadeNote parent = document(3, "question"), response = document(4, "answer");
  parent.id = ids.parent;
  parent.responses = {ids.response};
  response.id = ids.response;
  response.parent = ids.parent;
  response.items.push_back({"$REF", 0x0004, flag::Summary, referencesValue({parent.unid})});
  database.add(parent);
  database.add(response);
  addAttachments(database, ids);
  MadeNote stub = document(7);
  stub.items.clear();
  stub.stub = true;
  ids.stub = database.add(stub);
  MadeNote profile = document(8);
  profile.status = status::Named | status::Ghost;
  profile.items.push_back({"$Name", 0x0500, flag::Summary, "$profile_015calendarprofile_"});
  ids.profile = database.add(profile);
  MadeNote ghost = document(9);
  ghost.status = status::Ghost;
  ids.ghost = database.add(ghost);
  MadeNote soft = document(10, "deleted softly");
  soft.status = status::SoftDeleted;
  ids.softDeleted = database.add(soft);
  addDesign(database, ids);
  MadeNote unclassed = document(11);
  unclassed.noteClass = 0;
  unclassed.status = status::Named;
  ids.unclassed = database.add(unclassed);
  if (wanted) *wanted = ids;
  return database;
}

MadeDatabase sampleWithALostNote(SampleIds* wanted) {
  SampleIds ids;
  MadeDatabase database = sampleDatabase(&ids);
  database.change = [lost = ids.inRecord](MadePart part, quint32 number, QByteArray& bytes) {
    if (part == MadePart::Record && number == lost) put32(bytes, 6, lost + 4);
  };
  if (wanted) *wanted = ids;
  return database;
}

namespace {

class RandomDatabase {
 public:
  explicit RandomDatabase(quint32 seed) : random_(seed), seed_(seed) {}

  MadeDatabase make(int notes) {
    storage();
    for (int i = 0; i < notes; ++i) addNote(quint32(i));
    // Without the map of a single page they cannot be found.
    if (seed_ % 5 >= 3 && !database_.severalPages)
      moveBodies(seed_ % 5 == 3 ? MadeDatabase::BodyBuckets::Plain : MadeDatabase::BodyBuckets::Marked);
    return std::move(database_);
  }

 private:
  quint32 below(quint32 end) { return quint32(random_() % end); }
  bool chance(quint32 ofHundred) { return below(100) < ofHundred; }
  QByteArray bytes(qsizetype count) {
    QByteArray result(count, '\0');
    for (char& byte : result) byte = char(random_());
    return result;
  }
  // Times that mean nothing are found in files too.
  TimeDate time() {
    return chance(5) ? TimeDate{{quint32(random_()), quint32(random_())}} : someTime(below(8'640'000));
  }

  void storage() {
    constexpr quint32 kVersions[] = {52, 55, 52, 55, 43, 48, 51, 53, 54};
    constexpr quint32 kSizes[] = {8192, 8192, 4096, 16384, 32768, 63488};
    database_.ods = kVersions[below(9)];
    database_.bucketSize = kSizes[below(6)];
    database_.packing = Packing(below(3));
    database_.newestSuperblock = int(below(2));
    database_.newestDescriptor = int(below(2));
    database_.severalPages = chance(20);
    database_.pageOfBodies = chance(20);
    database_.formerBuckets = chance(40);
    database_.untidy = chance(60);
    database_.mark = quint8(below(16));
    database_.databaseId = time();
    database_.replicaId = time();
    database_.changed = someTime(8'000'000);
    database_.information = "Random";
  }

  void moveBodies(MadeDatabase::BodyBuckets into) {
    database_.bodyBuckets = into;
    for (MadeNote& note : database_.notes) note.bodyInBucket = note.id % 3 == 0 && !isLarge(note);
  }
  // No bucket takes it.
  static bool isLarge(const MadeNote& note) {
    qsizetype outside = 0;
    for (const MadeItem& item : note.items)
      if (!(item.flags & flag::Summary)) outside += item.value.size() + 2;
    return outside > 60'000;
  }

  void addNote(quint32 number) {
    constexpr quint16 kClasses[] = {1, 1, 1, 1, 1, 1, 0x0004, 0x0008, 0x0200, 0x8004, 0x1008, 0x0400};
    skipIds();
    MadeNote note;
    note.unid = bytes(8) + QByteArray(8, '\0');
    put32(note.unid, 8, number);
    put32(note.unid, 12, quint32(random_()));
    note.sequence = 1 + below(400) + (chance(5) ? 0x80000000 : 0);
    note.sequenceTime = time();
    note.modified = time();
    note.accessed = time();
    note.added = time();
    note.noteClass = kClasses[below(12)];
    if (chance(4)) note.status = status::Ghost;
    note.status |=
        quint16(below(2) * status::Modified | below(2) * 0x0020 | below(2) * 0x0400 | below(2) * 0x1000);
    note.stub = chance(5);
    note.bodyInRecord = chance(30);
    if (!note.stub) addItems(note);
    note.byPosition = chance(3) && !note.stub;
    if (!note.bodyInRecord && !earlier_.isEmpty() && chance(10)) {
      note.parent = earlier_[qsizetype(below(quint32(earlier_.size())))];
      for (quint32 i = below(4); i > 0; --i)
        note.responses.push_back(earlier_[qsizetype(below(quint32(earlier_.size())))]);
    }
    const bool canBeParent = !note.stub;
    const quint32 id = database_.add(note);
    if (canBeParent) earlier_.push_back(id);
    if (chance(10)) addObject();
  }

  void skipIds() {
    while (chance(7)) {
      const quint32 id = database_.issueId(chance(70));
      if (chance(60)) database_.entries.insert(id, chance(50) ? MadeEntry{0x7FFFFFFF, 0} : MadeEntry{});
    }
  }

  void addItems(MadeNote& note) {
    constexpr quint16 kFlags[] = {
        0, flag::Sign, flag::Names, flag::Names | flag::Authors, flag::Protected, 0x1000, 0x4000};
    qsizetype inSummary = 0, outside = 0;
    for (quint32 i = below(14); i > 0; --i) {
      MadeItem item;
      item.name = nameOf(below(30));
      item.type = typeOf(item.name);
      item.flags = kFlags[below(7)];
      item.value = valueOf(item.type, qsizetype(chance(90) ? below(60) : below(7000)));
      if (chance(60) && inSummary + item.value.size() < 12'000) {
        item.flags |= flag::Summary;
        inSummary += item.value.size();
      } else {
        if (chance(2)) item.value = valueOf(item.type, 60'000);
        if (outside + item.value.size() > 20'000 && note.bodyInRecord) item.value.clear();
        outside += item.value.size();
      }
      item.changedIn = quint8(below((note.sequence & 0xFF) + 1));
      if (chance(10)) item.part = int(below(256));
      note.items.push_back(item);
    }
    if (chance(4))
      database_.attach(note, "file " + QByteArray::number(below(1000)), bytes(below(4000)),
                       MadeDatabase::Attached(below(5)));
  }
  // Bytes that are laid out as the type wants it, about as many; or none.
  QByteArray valueOf(quint16 type, qsizetype size) {
    if (size == 0) return {};
    switch (type) {
      case 0x0501: {
        QByteArrayList texts;
        for (qsizetype all = 0; all < size; all += texts.last().size() + 2) texts.push_back(bytes(below(40)));
        return textsValue(texts);
      }
      case 0x0300:
      case 0x0400:
        return bytes(8);
      case 0x0301:
      case 0x0401: {
        QByteArray value;
        const quint32 ranges = below(3);
        add16(value, quint32(size / 8));
        add16(value, ranges);
        return value + bytes(size / 8 * 8 + 16 * qsizetype(ranges));
      }
      case 0x0001:
        return records(size);
      default:
        return bytes(size);
    }
  }
  // Records of rich text of all three widths of their lengths.
  QByteArray records(qsizetype size) {
    QByteArray value;
    while (value.size() < size) {
      const qsizetype content = below(200);
      add8(value, quint8(1 + below(250)));
      switch (below(3)) {
        case 0:
          add8(value, quint8(2 + content));
          break;
        case 1:
          add8(value, 0xFF);
          add16(value, quint32(4 + content));
          break;
        default:
          add8(value, 0);
          add32(value, quint32(6 + content));
      }
      value += bytes(content);
      if (value.size() % 2 && (value.size() < size || chance(50))) add8(value, 0);
    }
    return value;
  }
  static QByteArray nameOf(quint32 number) {
    return (number % 3 ? "Field" : "$Item") + QByteArray::number(number);
  }
  // Mostly one type for all items of a name.
  quint16 typeOf(const QByteArray& name) {
    constexpr quint16 kTypes[] = {0x0500, 0x0501, 0x0300, 0x0400, 0x0001,
                                  0x0600, 0x000E, 0x0019, 0x0301, 0x0502};
    return kTypes[(chance(90) ? quint32(name.size() + name.back()) : below(10)) % 10];
  }

  void addObject() {
    MadeObject object;
    object.payload = bytes(below(1500));
    object.keyed = chance(30);
    object.type = quint16(below(12));
    database_.add(object);
  }

  std::mt19937 random_;
  const quint32 seed_;
  MadeDatabase database_;
  QVector<quint32> earlier_;
};

}  // namespace

MadeDatabase randomDatabase(quint32 seed, int notes) {
  return RandomDatabase(seed).make(notes);
}

}  // namespace lens::made
