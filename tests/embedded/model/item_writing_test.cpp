// Writing and removing items in memory, and what of it is stored.
#include "embedded/model/open_note.h"
#include "embedded/model/support/test_documents.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

using StoredItem = std::tuple<QString, quint16, QByteArray>;

QVector<StoredItem> itemsOf(const Note& note) {
  QVector<StoredItem> items;
  for (const Item& item : note.items) items.append({item.name, item.flags, item.value});
  return items;
}

constexpr quint16 kFourFlags = itemflag::Sign | itemflag::Seal | itemflag::Summary | itemflag::Protected;

struct ItemWriting : Documents {
  ItemWriting() {
    id = t.add(
        {{u"Form"_s, textValue(u"Memo")},
         {u"To"_s, textListValue({u"CN=A/O=B"_s}), itemflag::Summary | itemflag::Names | itemflag::Readers},
         {u"Owner"_s, textValue(u"CN=A/O=B"), kFourFlags | itemflag::Names | itemflag::Authors},
         {u"Twice"_s, textValue(u"first")},
         {u"Between"_s, numberValue(1)},
         {u"TWICE"_s, textValue(u"second")},
         {u"Body"_s, richValue(u"text"_s), 0},
         {u"Twice"_s, textValue(u"third")},
         {u"$REF"_s, noteRefsValue({Unid::fromText(u"0123456789ABCDEF0123456789ABCDEF")})}});
    document = t.document(id);
  }
  Value replace(const QString& name, const Value& value) {
    return document.call(u"ReplaceItemValue"_s, name, value);
  }
  const Item stored(const QString& name) {
    saveForced(document);
    const Note note = Documents::stored(id);
    const Item* item = note.find(name);
    return item ? *item : Item();
  }
  NoteId id;
  Object document;
};

}  // namespace

TEST_F(ItemWriting, AReplacedItemKeepsItsPlaceAndItsFlags) {
  const QStringList before = namesOf(Documents::stored(id));
  const Object item = replace(u"oWNER"_s, u"somebody").object();
  EXPECT_EQ(item.get(u"nAME"_s).text(), u"Owner"_s);
  EXPECT_EQ(item.get(u"type"_s).number(), 1280);
  EXPECT_EQ(stored(u"Owner"_s).flags, kFourFlags);
  EXPECT_EQ(namesOf(Documents::stored(id)), before);
}

TEST_F(ItemWriting, ReadersNamesAndAuthorsBecomePlainText) {
  EXPECT_EQ(itemOf(document, u"To"_s).get(u"Type"_s).number(), 1075);
  EXPECT_EQ(itemOf(document, u"Owner"_s).get(u"Type"_s).number(), 1076);
  for (const QString& name : {u"To"_s, u"Owner"_s}) {
    replace(name, listOf({u"a", u"b"}));
    EXPECT_EQ(itemOf(document, name).get(u"Type"_s).number(), 1280);
  }
  EXPECT_EQ(stored(u"To"_s).flags, itemflag::Summary);
}

TEST_F(ItemWriting, ANewItemStandsAtTheEndAndInViews) {
  EXPECT_EQ(replace(u"New"_s, 5).object().get(u"IsSummary"_s), Value(true));
  EXPECT_EQ(stored(u"New"_s).flags, itemflag::Summary);
  EXPECT_EQ(namesOf(Documents::stored(id)).last(), u"New"_s);
}

TEST_F(ItemWriting, TypesTellWhetherThereIsOneValue) {
  const DateTime day{QDate(2024, 2, 29), QTime()};
  const struct {
    Value value;
    quint16 type;
  } table[] = {{Value(u"x"), 0x0500},
               {Value(u""), 0x0500},
               {listOf({u"x"}), 0x0500},
               {listOf({u"x", u"y"}), 0x0501},
               {Value(5), 0x0300},
               {Value(2.5), 0x0300},
               {listOf({5}), 0x0300},
               {listOf({5, 6}), 0x0301},
               {Value(day), 0x0400},
               {listOf({Value(day)}), 0x0400},
               {listOf({Value(day), Value(day)}), 0x0401}};
  for (const auto& row : table) {
    replace(u"New"_s, row.value);
    const Value expected = row.value.isArray() ? row.value : listOf({row.value});
    EXPECT_EQ(valueOf(document, u"new"_s), expected);
    EXPECT_EQ(stored(u"New"_s).type(), row.type);
    EXPECT_EQ(valueOf(t.document(id), u"NEW"_s), expected);
  }
}

TEST_F(ItemWriting, ARefusedValueLeavesTheItem) {
  const Value values[] = {Value(),    Value(true),       Value(Object()),   Value(document),
                          listOf({}), listOf({Value()}), listOf({u"a", 1}), listOf({u"a", Value()})};
  const Item before = *Documents::stored(id).find(u"Owner");
  for (const Value& value : values) {
    EXPECT_GT(raised([&] { replace(u"Owner"_s, value); }), 0);
    EXPECT_NE(raised([&] { replace(u"New"_s, value); }), 0);
  }
  EXPECT_EQ(stored(u"Owner"_s).value, before.value);
  EXPECT_EQ(stored(u"Owner"_s).flags, before.flags);
  EXPECT_FALSE(document.call(u"HASITEM"_s, u"New"_s).boolean());
  const QString reason = reasonOf([&] { replace(u"Owner"_s, listOf({u"a", 1})); });
  EXPECT_TRUE(reason.contains(u"mail.nsf"_s) && reason.contains(u"Owner"_s)) << reason.toStdString();
}

TEST_F(ItemWriting, AttachmentsAndReferencesAreNotReplaced) {
  const NoteId file = t.addFile(u"report.pdf"_s, "bytes");
  const Object attached = t.document(file);
  EXPECT_EQ(raised([&] { attached.call(u"REPLACEITEMVALUE"_s, u"$file"_s, listOf({u"x.pdf"})); }),
            modelfault::ItemRefused);
  EXPECT_EQ(raised([&] { replace(u"$Ref"_s, u"x"); }), modelfault::ItemRefused);
  saveForced(attached);
  const Object again = t.document(file).call(u"GETATTACHMENT"_s, u"report.pdf"_s).object();
  again.call(u"EXTRACTFILE"_s, t.file(u"out.pdf"_s));
  EXPECT_EQ(content(t.file(u"out.pdf"_s)), "bytes");
  EXPECT_EQ(stored(u"$REF"_s).type(), itemtype::NoteRefs);
}

TEST_F(ItemWriting, AnAttachmentBehindATextOfItsNameIsKept) {
  Note note = Documents::stored(t.addFile(u"a.txt"_s, "bytes"));
  note.items.push_front({u"$File"_s, 0, textValue(u"label")});
  t.store->notes().save(note);
  const Object mixed = t.document(note.header.id);
  EXPECT_EQ(raised([&] { mixed.call(u"REPLACEITEMVALUE"_s, u"$FILE"_s, u"x"); }), modelfault::ItemRefused);
  EXPECT_EQ(mixed.get(u"ITEMS"_s).upperBound(), 1);
  EXPECT_EQ(valueOf(mixed, u"$FILE"_s), listOf({u"label"}));
}

TEST_F(ItemWriting, OneOfSeveralItemsOfANameIsNotReplaced) {
  const Note before = Documents::stored(id);
  const QVector<Value> items = document.get(u"ITEMS"_s).values();
  const QString reason = reasonOf([&] { replace(u"twice"_s, u"new"); });
  EXPECT_TRUE(reason.contains(u"mail.nsf"_s) && reason.contains(u"Twice"_s)) << reason.toStdString();
  EXPECT_EQ(raised([&] { replace(u"TWICE"_s, u"new"); }), modelfault::ItemRefused);
  for (const int place : {3, 5, 7})
    EXPECT_EQ(items[place].object().get(u"Name"_s).text().toLower(), u"twice"_s);
  saveForced(document);
  EXPECT_EQ(itemsOf(Documents::stored(id)), itemsOf(before));
}

// Whatever the kinds: text, rich text, numbers and parts of a message in all pairs.
TEST_F(ItemWriting, NoPairOfOneNameIsReplaced) {
  const QVector<QByteArray> values{textValue(u"hit"),
                                   textListValue({u"a"_s, u"hit"_s}),
                                   richValue(u"hit"_s),
                                   numberValue(1),
                                   timeValue({}),
                                   rawValue(itemtype::MimePart, QByteArray(20, '\0')),
                                   rawValue(itemtype::UserData, "abc")};
  for (const QByteArray& first : values) {
    for (const QByteArray& second : values) {
      const NoteId pair = t.add({{u"Body"_s, first, 0}, {u"Other"_s, numberValue(1)}, {u"BODY"_s, second}});
      const Note before = Documents::stored(pair);
      const Object both = t.document(pair);
      EXPECT_EQ(raised([&] { both.call(u"REPLACEITEMVALUE"_s, u"Body"_s, u"new"); }),
                modelfault::ItemRefused);
      EXPECT_EQ(raised([&] {
                  both.call(u"REPLACEITEMVALUE"_s, u"body"_s, listOf({1, 2}));
                }),
                modelfault::ItemRefused);
      saveForced(both);
      EXPECT_EQ(itemsOf(Documents::stored(pair)), itemsOf(before));
      // The one that is left is replaced as any other.
      both.call(u"RemoveItem"_s, u"Body"_s);
      both.call(u"REPLACEITEMVALUE"_s, u"Body"_s, u"new");
      EXPECT_EQ(valueOf(both, u"Body"_s), listOf({u"new"}));
    }
  }
}

TEST_F(ItemWriting, FlagsSetOnTheFormerObjectReachTheNewValue) {
  const Object item = itemOf(document, u"Form"_s);
  replace(u"Form"_s, u"Letter");
  item.set(u"ISSUMMARY"_s, false);
  item.set(u"IsEncrypted"_s, true);
  item.set(u"isSigned"_s, 1);
  item.set(u"ISPROTECTED"_s, true);
  EXPECT_EQ(item.get(u"Values"_s), listOf({u"Letter"}));
  const Item kept = stored(u"Form"_s);
  EXPECT_EQ(kept.flags, itemflag::Seal | itemflag::Sign | itemflag::Protected);
  EXPECT_EQ(kept.value, textValue(u"Letter"));
  EXPECT_TRUE(itemOf(t.document(id), u"Form"_s).get(u"IsProtected"_s).boolean());
}

TEST_F(ItemWriting, RichTextIsNeverASummary) {
  const Object body = itemOf(document, u"Body"_s);
  body.set(u"IsSummary"_s, true);
  EXPECT_FALSE(body.get(u"IsSummary"_s).boolean());
  body.set(u"IsProtected"_s, true);
  EXPECT_EQ(stored(u"Body"_s).flags, itemflag::Protected);
}

TEST_F(ItemWriting, ReadersAreSetAndUnset) {
  const Object item = replace(u"Who"_s, listOf({u"a", u"b"})).object();
  item.set(u"ISREADERS"_s, true);
  EXPECT_EQ(item.get(u"Type"_s).number(), 1075);
  EXPECT_EQ(stored(u"Who"_s).flags, itemflag::Summary | itemflag::Readers | itemflag::Names);
  item.set(u"isReaders"_s, false);
  EXPECT_EQ(stored(u"Who"_s).flags, itemflag::Summary);
  const Object owner = itemOf(document, u"Owner"_s);
  owner.set(u"IsReaders"_s, true);
  EXPECT_EQ(owner.get(u"Type"_s).number(), 1075);
  EXPECT_EQ(raised([&] { itemOf(document, u"Between"_s).set(u"IsReaders"_s, true); }), err::TypeMismatch);
}

TEST_F(ItemWriting, AuthorsAreNamesAndNoReaders) {
  const Object item = replace(u"Who"_s, listOf({u"a", u"b"})).object();
  item.set(u"ISREADERS"_s, true);
  item.set(u"ISAUTHORS"_s, true);
  EXPECT_EQ(item.get(u"Type"_s).number(), 1076);
  EXPECT_EQ(stored(u"Who"_s).flags, itemflag::Summary | itemflag::Authors | itemflag::Names);
  item.set(u"ISAUTHORS"_s, false);
  EXPECT_EQ(stored(u"Who"_s).flags, itemflag::Summary);
  item.set(u"ISNAMES"_s, true);
  EXPECT_EQ(item.get(u"Type"_s).number(), 1074);
  item.set(u"ISNAMES"_s, false);
  EXPECT_EQ(stored(u"Who"_s).flags, itemflag::Summary);
  for (const auto* member : {u"ISAUTHORS", u"ISNAMES"})
    EXPECT_EQ(raised([&] { itemOf(document, u"Between"_s).set(QString::fromUtf16(member), true); }),
              err::TypeMismatch);
}

TEST_F(ItemWriting, FlagsTakeNumbersAndRefuseTexts) {
  const Object item = itemOf(document, u"Form"_s);
  item.set(u"IsSigned"_s, -1);
  EXPECT_TRUE(item.get(u"IsSigned"_s).boolean());
  item.set(u"IsSigned"_s, 0);
  EXPECT_FALSE(item.get(u"IsSigned"_s).boolean());
  EXPECT_EQ(raised([&] { item.set(u"IsSigned"_s, u"yes"); }), err::TypeMismatch);
}

TEST_F(ItemWriting, RemoveItemTakesTheFirstOfTheName) {
  const QVector<Value> items = document.get(u"ITEMS"_s).values();
  document.call(u"removeITEM"_s, u"TWICE"_s);
  EXPECT_EQ(valueOf(document, u"twice"_s), listOf({u"second"}));
  EXPECT_EQ(raised([&] { items[3].object().get(u"Name"_s); }), modelfault::ItemRemoved);
  EXPECT_EQ(items[5].object().get(u"Text"_s).text(), u"second"_s);
  EXPECT_EQ(items[8].object().get(u"Name"_s).text(), u"$REF"_s);
  document.call(u"RemoveItem"_s, u"twice"_s);
  document.call(u"RemoveItem"_s, u"twice"_s);
  EXPECT_FALSE(document.call(u"HASITEM"_s, u"Twice"_s).boolean());
  document.call(u"RemoveItem"_s, u"twice"_s);
  document.call(u"RemoveItem"_s, u""_s);
  saveForced(document);
  EXPECT_EQ(namesOf(Documents::stored(id)),
            QStringList({u"Form"_s, u"To"_s, u"Owner"_s, u"Between"_s, u"Body"_s, u"$REF"_s}));
}

TEST_F(ItemWriting, OfThreeAttachmentsOneIsRemoved) {
  Note note = Documents::stored(t.addFile(u"a"_s, "1"));
  for (const QString& name : {u"b"_s, u"c"_s})
    note.items.push_back(Documents::stored(t.addFile(name, "2")).items.first());
  t.store->notes().save(note);
  const Object three = t.document(note.header.id);
  three.call(u"RemoveItem"_s, u"$FILE"_s);
  saveForced(three);
  const Object two = t.document(note.header.id);
  EXPECT_EQ(two.get(u"ITEMS"_s).upperBound(), 1);
  EXPECT_TRUE(two.call(u"GETATTACHMENT"_s, u"a"_s).object().isNothing());
  EXPECT_FALSE(two.call(u"GETATTACHMENT"_s, u"c"_s).object().isNothing());
}

TEST_F(ItemWriting, AnItemNeedsAName) {
  const Note before = Documents::stored(id);
  EXPECT_EQ(raised([&] { replace(u""_s, u"x"); }), err::InvalidCall);
  EXPECT_EQ(raised([&] { document.call(u"CreateRichTextItem"_s, u""_s); }), err::InvalidCall);
  EXPECT_EQ(document.get(u"ITEMS"_s).upperBound(), int(before.items.size()) - 1);
}

TEST_F(ItemWriting, ItemsIsAFixedList) {
  const Value items = document.get(u"ITEMS"_s);
  replace(u"New"_s, u"x");
  document.call(u"RemoveItem"_s, u"Form"_s);
  EXPECT_EQ(items.upperBound(), 8);
  EXPECT_EQ(raised([&] { items.at(0).object().get(u"Name"_s); }), modelfault::ItemRemoved);
  EXPECT_EQ(document.get(u"ITEMS"_s).upperBound(), 8);
}

TEST_F(ItemWriting, ObjectsShareNoUnsavedChange) {
  const Object other = t.document(id);
  replace(u"Form"_s, u"changed");
  EXPECT_EQ(valueOf(other, u"Form"_s), listOf({u"Memo"}));
  EXPECT_EQ(valueOf(t.document(id), u"Form"_s), listOf({u"Memo"}));
  EXPECT_EQ(valueOf(document, u"Form"_s), listOf({u"changed"}));
}

TEST_F(ItemWriting, ManyItemsAreFoundAndChangedByName) {
  for (int i = 0; i < 3000; ++i) replace(u"Field"_s + QString::number(i), i);
  for (int i = 0; i < 3000; i += 2) document.call(u"RemoveItem"_s, u"FIELD"_s + QString::number(i));
  for (int i = 1; i < 3000; i += 2) replace(u"field"_s + QString::number(i), -i);
  for (const int i : {1, 1501, 2999})
    EXPECT_EQ(valueOf(document, u"Field"_s + QString::number(i)), listOf({-i}));
  EXPECT_FALSE(document.call(u"HasItem"_s, u"Field2000"_s).boolean());
  EXPECT_EQ(valueOf(document, u"Twice"_s), listOf({u"first"}));
  for (int i = 0; i < 3; ++i) document.call(u"RemoveItem"_s, u"Twice"_s);
  EXPECT_FALSE(document.call(u"HasItem"_s, u"Twice"_s).boolean());
  saveForced(document);
  EXPECT_EQ(Documents::stored(id).items.size(), 6 + 1500);
}

// The object always knows what is in it, whatever happened before.
TEST_F(ItemWriting, RandomChangesAgreeWithAPlainList) {
  quint32 seed = 7;
  const auto random = [&](quint32 below) { return (seed = seed * 1664525u + 1013904223u) / 65536u % below; };
  document = t.document(t.add({{u"A"_s, textValue(u"0")}}));
  QVector<QPair<QString, QString>> model{{u"A"_s, u"0"_s}};
  for (int step = 0; step < 4000; ++step) {
    const QString name = QChar(u'A' + char16_t(random(40)));
    const auto same = [&](const QPair<QString, QString>& item) {
      return item.first.compare(name, Qt::CaseInsensitive) == 0;
    };
    const auto first = std::find_if(model.begin(), model.end(), same);
    if (random(3) == 0) {
      document.call(u"RemoveItem"_s, name);
      if (first != model.end()) model.erase(first);
    } else if (random(4) == 0) {
      document.call(u"CreateRichTextItem"_s, name).object().call(u"AppendText"_s, QString::number(step));
      model.push_back({name, QString::number(step)});
    } else {
      const bool several = std::count_if(model.begin(), model.end(), same) > 1;
      const int refused = several ? modelfault::ItemRefused : 0;
      ASSERT_EQ(raised([&] { document.call(u"ReplaceItemValue"_s, name, QString::number(step)); }), refused);
      if (first == model.end())
        model.push_back({name, QString::number(step)});
      else if (!several)
        first->second = QString::number(step);
    }
    const auto found = std::find_if(model.begin(), model.end(), same);
    ASSERT_EQ(document.call(u"HasItem"_s, name).boolean(), found != model.end());
    if (found != model.end()) {
      ASSERT_EQ(valueOf(document, name), listOf({found->second}));
    }
  }
  const QVector<Value> items = document.get(u"Items"_s).values();
  ASSERT_EQ(items.size(), model.size());
  for (qsizetype i = 0; i < items.size(); ++i) {
    EXPECT_EQ(items[i].object().get(u"Name"_s).text(), model[i].first);
    EXPECT_EQ(items[i].object().get(u"Values"_s), listOf({model[i].second}));
  }
}
