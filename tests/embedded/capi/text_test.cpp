#include <gtest/gtest.h>

#include <QSet>
#include <cstring>
#include <vector>

#include "embedded/capi/embedded_capi.h"
#include "embedded/capi/status.h"
#include "embedded/format/lmbcs.h"
#include "embedded/model/support/test_workspace.h"
#include "notes/code_page.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Text : ::testing::Test {
  Text() : api(t.workspace) {}
  QByteArray untilNul(const QByteArray& buffer) { return buffer.first(buffer.indexOf('\0')); }
  // The address of an item's value in a document that holds nothing else.
  const char* valueOf(const QByteArray& raw) {
    const NoteId id = t.add({{u"X"_s, raw}});
    DbHandle db = 0;
    NoteHandle note = 0;
    BlockId item, value;
    quint16 type = 0;
    quint32 length = 0;
    EXPECT_EQ(api.NSFDbOpen("mail.nsf", db), 0);
    EXPECT_EQ(api.NSFNoteOpen(db, qint32(id.value()), 0, note), 0);
    EXPECT_EQ(api.NSFItemInfo(note, "X", 1, item, type, value, length), 0);
    return api.OSLockObject(value.pool) + value.block;
  }
  TestWorkspace t;
  EmbeddedCApi api;
};

}  // namespace

TEST_F(Text, PathsCarryTheServerAndAreCut) {
  QByteArray buffer(1024, ' ');
  EXPECT_EQ(api.OSPathNetConstruct(0, "", "apps\\x.nsf", buffer), 0);
  EXPECT_EQ(untilNul(buffer), "apps\\x.nsf");
  EXPECT_EQ(buffer.size(), 1024);
  EXPECT_EQ(buffer.back(), ' ');
  api.OSPathNetConstruct(0, "CN=Hub1/O=Acme", "x.nsf", buffer);
  EXPECT_EQ(untilNul(buffer), "CN=Hub1/O=Acme!!x.nsf");
  api.OSPathNetConstruct(0, "", QByteArray(600, 'p'), buffer);
  EXPECT_EQ(untilNul(buffer), QByteArray(255, 'p'));
}

TEST_F(Text, TheConstructedPathOpensTheDatabase) {
  QByteArray buffer(1024, ' ');
  api.OSPathNetConstruct(0, "", "mail.nsf", buffer);
  DbHandle db = 0;
  EXPECT_EQ(api.NSFDbOpen(buffer.trimmed().replace('\0', ""), db), 0);
  EXPECT_NE(db, 0u);
}

// Letters of every kind, also such that look like the mark or the separator of a path.
TEST_F(Text, NamesOfAnyLettersGoThroughWithoutLoss) {
  const QStringList names = {u"plain"_s,  u"Größe"_s, u"Přehled"_s, u"Отчёт о продажах"_s,
                             u"報告書"_s, u"ï»¿x"_s,  u"ï»¿Ř"_s,    u"\U0001F600"_s,
                             u"a?b"_s,    u"€"_s,     u"\u0081"_s,  u""_s};
  for (const QString& name : names) {
    EXPECT_EQ(nameFromBytes(api.nativeName(name)), name) << name.toStdString();
    const QByteArray bytes = toCodePage(name);
    if (fromCodePage(bytes) == name) {
      EXPECT_EQ(codePageName(name), bytes);
      EXPECT_TRUE(name.startsWith(u"ï»¿") || api.nativeName(name) == bytes) << "as it always was";
    } else {
      EXPECT_EQ(raised([&] { codePageName(name); }), kUnsayableName) << name.toStdString();
    }
  }
  EXPECT_EQ(nameFromBytes("\xEF\xBB\xBF\xFF"), fromCodePage("\xEF\xBB\xBF\xFF"))
      << "no UTF-8 behind the mark";
}

TEST_F(Text, DatabasesItemsAndDesignOfAnyNameAreOpenedReadAndDeletedIn) {
  const QString server = u"CN=Žižkov/O=Acme"_s;
  t.workspace->addServer(server);
  for (const QString& on : {QString(), server})
    for (const QString& path : {u"Přehled.nsf"_s, u"složka/Отчёт.nsf"_s, QString(80, u'ж') + u".nsf"_s}) {
      SCOPED_TRACE(qPrintable(on + u"!!"_s + path));
      const auto store = t.workspace->createDatabase(on, path, {});
      Note note = noteOf({{u"Příloha č. 1"_s, textValue(u"abc"_s)}});
      store->notes().save(note);
      Note agent = noteOf({{u"$TITLE"_s, textValue(u"Třídění"_s)}}, noteclass::Filter);
      store->notes().save(agent);
      QByteArray buffer(1024, ' ');
      EXPECT_EQ(api.OSPathNetConstruct(0, api.nativeName(on), api.nativeName(path), buffer), 0);
      DbHandle db = 0;
      ASSERT_EQ(api.NSFDbOpen(buffer.trimmed().replace('\0', "").trimmed(), db), 0);
      NoteHandle open = 0;
      ASSERT_EQ(api.NSFNoteOpen(db, qint32(note.header.id.value()), 0, open), 0);
      const QByteArray item = api.nativeName(u"Příloha č. 1");
      BlockId block, value;
      quint16 type = 0;
      quint32 length = 0;
      EXPECT_EQ(api.NSFItemInfo(open, item, quint16(item.size()), block, type, value, length), 0);
      EXPECT_EQ(length, 5u);
      qint32 found = 0;
      EXPECT_EQ(api.NIFFindDesignNote(db, api.nativeName(u"Třídění"), 0x200, found), 0);
      EXPECT_EQ(quint32(found), agent.header.id.value());
      EXPECT_EQ(api.NSFNoteDelete(db, qint32(note.header.id.value()), 0x0201), 0);
      EXPECT_EQ(store->notes().state(note.header.id), NoteState::Gone);
      EXPECT_EQ(api.NSFDbCreate(api.nativeName(u"nový.nsf"), 0xFF03, -1), 0);
      EXPECT_TRUE(QFile::exists(t.workspace->dataDirectory() + u"/nový.nsf"_s));
    }
}

TEST_F(Text, ReadsWordsAndMovesOn) {
  const char* from = valueOf(rawValue(itemtype::Action, QByteArray("\x81\x02\x85\xFF\x7A\x05", 6)));
  const char* begin = from;
  quint16 words[4] = {};
  for (quint16& word : words) api.ODSReadMemory(from, 0, &word, 1);
  EXPECT_EQ(words[0], 0x0010);
  EXPECT_EQ(words[1], 0x0281);
  EXPECT_EQ(words[2], 0xFF85);
  EXPECT_EQ(words[3], 0x057A);
  EXPECT_EQ(from - begin, 8);
}

TEST_F(Text, BehindAShortValueStandZeros) {
  const char* from = valueOf(rawValue(itemtype::Action, QByteArray("\x81\x02", 2)));
  const char* begin = from;
  for (int i = 4; i < 0x8000 + 16; ++i) ASSERT_EQ(begin[i], 0) << i;
  quint16 word = 1;
  for (int i = 0; i < 4; ++i) api.ODSReadMemory(from, 0, &word, 1);
  EXPECT_EQ(word, 0);
  std::vector<char> big(102 * 65535, 'x');
  api.ODSReadMemory(from, 318, big.data(), 65535);  // far past all memory of the value
  EXPECT_EQ(big.back(), 0);
  api.ODSReadMemory(from, 0, &word, 1);
  EXPECT_EQ(word, 0);
}

TEST_F(Text, ReadsFromNowhereGiveZeros) {
  const char* from = nullptr;
  quint16 word = 7;
  api.ODSReadMemory(from, 0, &word, 1);
  EXPECT_EQ(word, 0);
  EXPECT_EQ(from, nullptr);
}

TEST_F(Text, TimesAreWrittenByTheRegionInLocalTime) {
  QByteArray buffer(81, ' ');
  quint16 length = 0;
  EXPECT_EQ(api.ConvertTIMEDATEToText(timeDateOf(DateTime{QDate(2024, 11, 21), QTime(14, 5, 9)}), buffer, 80,
                                      length),
            0);
  EXPECT_EQ(buffer.first(length), "21.11.2024 14:05:09");
  api.ConvertTIMEDATEToText(timeDateOf(DateTime{QDate(2024, 11, 21), QTime(0, 0)}), buffer, 80, length);
  EXPECT_EQ(buffer.first(length), "21.11.2024");
  EXPECT_EQ(buffer.size(), 81);
}

// The code page lacks the digits, or the words for the halves of the day, of many regions.
TEST_F(Text, TimesSurviveTheCodePageInEveryRegion) {
  const DateTime moment{QDate(2024, 11, 21), QTime(14, 5, 9)};
  const auto regions =
      QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
  ASSERT_GT(regions.size(), 300);
  QTemporaryDir directory;
  int plain = 0;
  for (const QLocale& locale : regions) {
    const Regional regional(locale);
    EmbeddedCApi regionsApi(Workspace::open(directory.path(), regional));
    QByteArray buffer(81, ' ');
    quint16 length = 0;
    ASSERT_EQ(regionsApi.ConvertTIMEDATEToText(timeDateOf(moment), buffer, 80, length), 0);
    const QString text = fromCodePage(buffer.first(length));
    EXPECT_EQ(regional.dateTime(text), moment) << locale.name().toStdString() << ": " << text.toStdString();
    if (text != regional.text(moment)) ++plain;
  }
  EXPECT_GT(plain, 50);
}

TEST_F(Text, ClearedAndWildcardTimesHaveNoText) {
  QByteArray buffer(81, ' ');
  for (const TimeDate& time : {TimeDate{}, TimeDate{{kAllDay, kAnyDay}}}) {
    quint16 length = 9;
    EXPECT_EQ(api.ConvertTIMEDATEToText(time, buffer, 80, length), 0x040D);
    EXPECT_EQ(length, 0);
  }
}

TEST_F(Text, ListEntriesEndWithAStatus) {
  const char* list = valueOf(textListValue({u"a"_s, u""_s, u"xyz"_s}));
  EXPECT_EQ(api.ListGetNumEntries(list, 1), 3u);
  EXPECT_EQ(api.ListGetNumEntries(list + 2, 0), 3u);
  const char* text = nullptr;
  quint16 length = 9;
  EXPECT_EQ(api.ListGetText(list, 1, 1, text, length), 0);
  EXPECT_EQ(length, 0);
  EXPECT_EQ(api.ListGetText(list + 2, 0, 2, text, length), 0);
  EXPECT_EQ(QByteArray(text, length), "xyz");
  EXPECT_EQ(api.ListGetText(list, 1, 3, text, length), 0x0605);
  EXPECT_EQ(length, 0);
  EXPECT_EQ(api.ListGetText(nullptr, 0, 0, text, length), 0x0605);
}

TEST_F(Text, AListThatLiesAboutItsLengthsIsRefused) {
  QByteArray raw;
  appendU16(raw, itemtype::TextList);
  appendU16(raw, 60000);
  appendU16(raw, 65535);
  const char* list = valueOf(raw);
  const char* text = nullptr;
  quint16 length = 0;
  EXPECT_EQ(api.ListGetText(list, 1, 0, text, length), 0x0605);
  EXPECT_EQ(api.ListGetText(list, 1, 59999, text, length), 0x0605);
}

TEST_F(Text, ServerListHasAllNames) {
  t.workspace->addServer(u"CN=Zürich/O=Acme"_s);
  t.workspace->addServer(u"CN=Hub1/O=Acme"_s);
  MemHandle handle = 0;
  ASSERT_EQ(api.NSGetServerList(0, handle), 0);
  const char* list = api.OSLockObject(handle);
  QStringList names;
  const char* text = nullptr;
  quint16 length = 0;
  for (quint16 i = 0; api.ListGetText(list, 0, i, text, length) == 0; ++i) {
    QByteArray target(length, ' ');
    const quint16 written = api.OSTranslate(1, QByteArray(text, length), length, target, 256);
    names.append(fromCodePage(target.first(written)));
  }
  EXPECT_EQ(names, QStringList({u"CN=Hub1/O=Acme"_s, u"CN=Zürich/O=Acme"_s}));
  api.OSUnlockObject(handle);
  EXPECT_EQ(api.OSMemFree(handle), 0);
}

TEST_F(Text, TranslationGoesBothWaysAndKeepsTheLimit) {
  const QByteArray native = toCodePage(u"Bestät €");
  QByteArray lmbcs(2 * native.size(), ' ');
  const quint16 there = api.OSTranslate(0, native, quint16(native.size()), lmbcs, quint16(lmbcs.size()));
  EXPECT_EQ(lmbcs.first(there), toLmbcs(u"Bestät €"));
  EXPECT_EQ(lmbcs[there], '\0');
  QByteArray back(40, ' ');
  const quint16 here = api.OSTranslate(1, lmbcs, 0xFFFF, back, 40);
  EXPECT_EQ(back.first(here), native);
  EXPECT_EQ(api.OSTranslate(0, "abcdef", 6, back, 3), 3);
  EXPECT_EQ(api.OSTranslate(0, "abcdef", 2, back, 40), 2);
  EXPECT_EQ(api.OSTranslate(9, "abc", 3, back, 40), 0);
}

TEST_F(Text, EveryStatusHasItsTextWithAndWithoutMarks) {
  QByteArray buffer(256, ' ');
  EXPECT_EQ(api.OSLoadString(0, 0x0222, buffer, 256), 19);
  EXPECT_EQ(untilNul(buffer), "Note item not found");
  api.OSLoadString(0, 0xC222, buffer, 256);
  EXPECT_EQ(untilNul(buffer), "Note item not found");
  EXPECT_EQ(api.OSLoadString(0, 0x3ABC, buffer, 256), 0);
  EXPECT_EQ(untilNul(buffer), "");
  EXPECT_EQ(api.OSLoadString(0, 0x0222, buffer, 5), 4);
  EXPECT_EQ(api.OSLoadString(0, 0x0222, buffer, 0), 0);
}

TEST_F(Text, ATextThatFillsItsBufferEndsThere) {
  for (const quint16 limit : {20, 19, 5, 1}) {
    QByteArray buffer(256, 'x');
    const quint16 length = api.OSLoadString(0, 0x0222, buffer, limit);
    EXPECT_EQ(length, limit - 1);
    EXPECT_EQ(buffer[length], '\0') << limit;
    EXPECT_EQ(buffer[length + 1], 'x') << limit;
  }
  QByteArray untouched(8, 'x');
  api.OSLoadString(0, 0x0222, untouched, 0);
  EXPECT_EQ(untouched, QByteArray(8, 'x'));
}

TEST_F(Text, EveryStatusOfTheEngineHasATextOfItsOwn) {
  struct Row {
    Status status;
    const char* text;
  };
#define ROW(name, number, text) {status::name, text},
  static const Row kRows[] = {LENS_STATUSES(ROW)};
#undef ROW
  QSet<QByteArray> texts;
  for (const Row& row : kRows) {
    QByteArray buffer(256, ' ');
    EXPECT_GT(api.OSLoadString(0, row.status, buffer, 255), 0) << row.text;
    EXPECT_EQ(untilNul(buffer), row.text);
    texts.insert(untilNul(buffer));
  }
  EXPECT_EQ(texts.size(), qsizetype(std::size(kRows)));
  // The reasons of formulas.
  int reasons = 0;
  QByteArray buffer(256, ' ');
  for (Status status = 0x0501; status < 0x0570; ++status)
    reasons += api.OSLoadString(0, status, buffer, 255) > 0;
  EXPECT_GT(reasons, 60);
}

TEST_F(Text, EveryFailureOfTheEngineBecomesAStatusWithAText) {
  for (int number = 1; number < 5000; ++number) {
    const Status status = statusOf(RuntimeError(number, u"why"_s));
    ASSERT_NE(status, 0) << number;
    ASSERT_FALSE(statusText(status).isEmpty()) << number;
  }
  EXPECT_EQ(statusOf(RuntimeError(enginefault::InUse, u"x"_s)), status::Locked);
  EXPECT_EQ(statusOf(RuntimeError(enginefault::NotSaved, u"x"_s)), status::CannotAccess);
}

TEST_F(Text, TranslationChangesCaseAndAccents) {
  const QByteArray text = toLmbcs(u"Zürich 5 é");
  const auto translated = [&](quint16 mode) {
    QByteArray target(60, ' ');
    const quint16 written = api.OSTranslate(mode, text, quint16(text.size()), target, 60);
    EXPECT_EQ(target[written], '\0');
    return fromLmbcs(target.first(written));
  };
  EXPECT_EQ(translated(3), u"ZÜRICH 5 É"_s);
  EXPECT_EQ(translated(4), u"zürich 5 é"_s);
  EXPECT_EQ(translated(5), u"Zurich 5 e"_s);
}

TEST_F(Text, TranslationReachesUnicodeAndComesBack) {
  const QString text = u"a€Ω日\U0001F600"_s;
  const QByteArray lmbcs = toLmbcs(text);
  QByteArray utf8(60, ' '), utf16(60, ' '), back(60, ' ');
  const quint16 length8 = api.OSTranslate(22, lmbcs, quint16(lmbcs.size()), utf8, 60);
  EXPECT_EQ(utf8.first(length8), text.toUtf8());
  const quint16 length16 = api.OSTranslate(20, lmbcs, 0xFFFF, utf16, 60);
  EXPECT_EQ(length16, 2 * text.size());
  EXPECT_EQ(QString(reinterpret_cast<const QChar*>(utf16.constData())), text);  // ended by a whole zero
  EXPECT_EQ(back.first(api.OSTranslate(24, utf8, length8, back, 60)), lmbcs);
  EXPECT_EQ(back.first(api.OSTranslate(23, utf16, length16, back, 60)), lmbcs);
  EXPECT_EQ(back.first(api.OSTranslate(23, utf16, 0xFFFF, back, 60)), lmbcs);
  EXPECT_EQ(api.OSTranslate(23, QByteArray("a", 1), 1, back, 60), 0);
}

TEST_F(Text, TranslationCutsNoCharacterInHalf) {
  const QString text = u"日本語日本語\U0001F600\U0001F600"_s;
  const QByteArray lmbcs = toLmbcs(text), native(200, 'x');
  for (const quint16 mode : {20, 22, 3, 1}) {
    for (quint16 limit = 0; limit < 40; ++limit) {
      QByteArray target(60, '#');
      const quint16 written = api.OSTranslate(mode, lmbcs, quint16(lmbcs.size()), target, limit);
      ASSERT_LE(written, limit);
      ASSERT_EQ(target.sliced(limit), QByteArray(60 - limit, '#')) << "written behind the limit";
      const QByteArray bytes = target.first(written);
      const QString got = mode == 22 ? QString::fromUtf8(bytes)
                          : mode == 20
                              ? QString(reinterpret_cast<const QChar*>(bytes.constData()), written / 2)
                          : mode == 3 ? fromLmbcs(bytes)
                                      : text.first(written);
      ASSERT_TRUE(text.startsWith(got)) << mode << " " << limit;
      ASSERT_FALSE(got.endsWith(QChar(0xD83D)) && mode != 1);
    }
  }
}

TEST_F(Text, TranslatesWithoutInitAndAnyBytes) {
  QByteArray junk, target(600, ' ');
  for (int i = 0; i < 256; ++i) junk.append(char(255 - i)).append(char(i * 7));
  for (quint16 mode = 0; mode < 30; ++mode)
    for (const quint16 length : {quint16(0), quint16(1), quint16(511), quint16(0xFFFE), quint16(0xFFFF)})
      EXPECT_LE(api.OSTranslate(mode, junk, length, target, 600), 600);
}

TEST_F(Text, ALongListIsReadInAnyOrder) {
  QStringList texts;
  for (int i = 0; i < 9000; ++i) texts.append(QString(i % 7, QChar(u'a' + i % 26)));
  const char* list = valueOf(textListValue(texts));
  const char* text = nullptr;
  quint16 length = 0;
  const auto entry = [&](int i, int prefixed) {
    EXPECT_EQ(api.ListGetText(list + (prefixed ? 0 : 2), prefixed, quint16(i), text, length), 0);
    return QString::fromLatin1(text, length);
  };
  for (int i = 0; i < texts.size(); ++i) ASSERT_EQ(entry(i, 1), texts[i]);
  for (const int i : {8999, 0, 17, 16, 8998, 4000}) EXPECT_EQ(entry(i, i % 2), texts[i]);
  // The same place of the caller's memory may hold another list the next time.
  QByteArray own = textListValue({u"one"_s, u"two"_s});
  EXPECT_EQ(api.ListGetText(own.constData(), 1, 1, text, length), 0);
  EXPECT_EQ(QByteArray(text, length), "two");
  own = textListValue({u"lo"_s, u"next"_s});
  EXPECT_EQ(api.ListGetText(own.constData(), 1, 1, text, length), 0);
  EXPECT_EQ(QByteArray(text, length), "next");
}
