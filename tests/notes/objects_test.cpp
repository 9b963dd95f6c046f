// What the typed views ask of the object behind them, name by name.
#include <gtest/gtest.h>

#include "notes/objects/notes_session.h"
#include "support/printers.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

// Keeps what it is asked for, and answers everything with the same value.
class AskedObject : public Dispatch {
 public:
  AskedObject(QStringList& asked, const Value& answer) : asked_(asked), answer_(answer) {}
  Value get(const QString& name) override {
    asked_ += name;
    return answer_;
  }
  void set(const QString& name, const Value& value) override { asked_ += name + u'=' + value.text(); }
  Value call(const QString& name, const QVector<Value>& arguments) override {
    QStringList texts;
    for (const Value& argument : arguments)
      texts += argument.kind() == Value::Kind::Object ? argument.typeName() : argument.text();
    asked_ += name + u'(' + texts.join(u',') + u')';
    return answer_;
  }

 private:
  QStringList& asked_;
  Value answer_;
};

class TypedViews : public testing::Test {
 protected:
  template <class View>
  View answering(const Value& answer) {
    return Object(std::make_shared<AskedObject>(asked, answer));
  }
  QStringList asked;
};

TEST_F(TypedViews, OfADocumentAskForItsMembersWithTheirArguments) {
  const auto document = answering<NotesDocument>(Object());
  document.firstItem(u"A"_s);
  document.itemValue(u"B"_s);
  document.replaceItemValue(u"C"_s, 2);
  document.createRichTextItem(u"D"_s);
  document.removeItem(u"E"_s);
  document.save(true, false);
  document.save(true, false, true);
  document.remove(true);
  document.parentDatabase();
  EXPECT_EQ(asked, QStringList({u"GETFIRSTITEM(A)"_s, u"GETITEMVALUE(B)"_s, u"REPLACEITEMVALUE(C,2)"_s,
                                u"CREATERICHTEXTITEM(D)"_s, u"RemoveItem(E)"_s, u"SAVE(True,False)"_s,
                                u"SAVE(True,False,True)"_s, u"Remove(True)"_s, u"PARENTDATABASE"_s}));
}

TEST_F(TypedViews, OfADatabasePassWholeObjectsOn) {
  const auto database = answering<NotesDatabase>(Object());
  database.documentById(u"8F2"_s);
  database.documentByUnid(u"ABC"_s);
  database.search(u"SELECT @All"_s, 0);
  database.fullTextSearch(u"pump"_s, 0);
  const auto found = answering<NotesDocumentCollection>(Object());
  found.nextDocument(answering<NotesDocument>(Object()));
  EXPECT_EQ(asked, QStringList({u"GETDOCUMENTBYID(8F2)"_s, u"GETDOCUMENTBYUNID(ABC)"_s,
                                u"SEARCH(SELECT @All,Nothing,0)"_s, u"FTSEARCH(pump,0)"_s,
                                u"GETNEXTDOCUMENT(Object)"_s}));
}

TEST_F(TypedViews, OfADatabaseTellWhatItIsMadeOf) {
  const auto database = answering<NotesDatabase>(u"x"_s);
  database.title();
  database.templateName();
  database.views();
  database.agents();
  answering<NotesView>(3).entryCount();
  EXPECT_EQ(answering<NotesView>(u"All"_s).name() + answering<NotesAgent>(u"Run|r"_s).name(), u"AllRun|r"_s);
  const auto directory = answering<NotesDbDirectory>(Object());
  directory.firstDatabase(NotesDbDirectory::kDatabasesAndTemplates);
  directory.firstDatabase(NotesDbDirectory::kDatabases);
  directory.nextDatabase();
  EXPECT_EQ(asked, QStringList({u"Title"_s, u"TEMPLATENAME"_s, u"VIEWS"_s, u"AGENTS"_s, u"ENTRYCOUNT"_s,
                                u"Name"_s, u"Name"_s, u"GETFIRSTDATABASE(1246)"_s,
                                u"GETFIRSTDATABASE(1247)"_s, u"GETNEXTDATABASE()"_s}));
}

TEST_F(TypedViews, OfDatabasesAndViewsAskWhatTheOperationsOnThemNeed) {
  const auto database = answering<NotesDatabase>(Object());
  database.agent(u"Clean"_s);
  database.createReplica(u"Hub"_s, u"a.nsf"_s);
  database.replicate(u"Hub"_s);
  database.remove();
  answering<NotesDatabase>(Value(u"C125"_s)).replicaId();
  answering<NotesDbDirectory>(Object()).openByReplicaId(u"C125"_s);
  answering<NotesAgent>(Value()).run();
  answering<NotesDocument>(Object()).copyToDatabase(answering<NotesDatabase>(Object()));
  answering<NotesView>(Object()).allEntries();
  const auto entries = answering<NotesViewEntryCollection>(Object());
  entries.firstEntry();
  entries.nextEntry(answering<NotesViewEntry>(Object()));
  entries.removeAll(true);
  EXPECT_EQ(answering<NotesViewEntryCollection>(3).count(), 3);
  EXPECT_TRUE(answering<NotesViewEntry>(true).isDocument());
  answering<NotesViewEntry>(Object()).document();
  EXPECT_EQ(asked, QStringList({u"GETAGENT(Clean)"_s, u"CREATEREPLICA(Hub,a.nsf)"_s, u"REPLICATE(Hub)"_s,
                                u"Remove()"_s, u"REPLICAID"_s, u"OpenDatabaseByReplicaID(C125)"_s, u"RUN()"_s,
                                u"COPYTODATABASE(Object)"_s, u"ALLENTRIES"_s, u"GETFIRSTENTRY()"_s,
                                u"GETNEXTENTRY(Object)"_s, u"REMOVEALL(True)"_s, u"count"_s, u"ISDOCUMENT"_s,
                                u"DOCUMENT"_s}));
}

TEST_F(TypedViews, ForSearchesAndChecksAskByTheNamesOfTheModel) {
  EXPECT_TRUE(answering<NotesDatabase>(true).isIndexed());
  EXPECT_TRUE(answering<NotesDocument>(true).hasEmbedded());
  answering<NotesView>(Object()).entryByKey(u"Smith"_s, true);
  EXPECT_EQ(asked, QStringList({u"isIndexed"_s, u"HASEMBEDDED"_s, u"GETENTRYBYKEY(Smith,True)"_s}));
}

TEST_F(TypedViews, OfAnItemReadAndWriteItsFlags) {
  const auto item = answering<NotesItem>(true);
  EXPECT_TRUE(item.isSummary() && item.isEncrypted() && item.isSigned() && item.isProtected());
  item.setSummary(true);
  item.setEncrypted(false);
  item.setSigned(true);
  item.setProtected(false);
  item.setReaders(true);
  item.setAuthors(true);
  item.setNames(false);
  EXPECT_EQ(asked, QStringList({u"ISSUMMARY"_s, u"ISENCRYPTED"_s, u"ISSIGNED"_s, u"ISPROTECTED"_s,
                                u"ISSUMMARY=True"_s, u"ISENCRYPTED=False"_s, u"ISSIGNED=True"_s,
                                u"ISPROTECTED=False"_s, u"ISREADERS=True"_s, u"ISAUTHORS=True"_s,
                                u"ISNAMES=False"_s}));
}

TEST_F(TypedViews, ReadATypeAsNumberTextAndCodeOf16Bits) {
  EXPECT_EQ(answering<NotesItem>(1280).type(), 1280);
  EXPECT_EQ(answering<NotesItem>(1280).typeText(), u"1280"_s);
  EXPECT_EQ(answering<NotesItem>(1280).typeCode(), itemcode::Text);
  EXPECT_THROW(answering<NotesItem>(40000).typeCode(), RuntimeError);
}

TEST_F(TypedViews, OfNothingRaiseLikeTheObject) {
  try {
    NotesDocument().noteId();
    ADD_FAILURE();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), err::ObjectNotSet);
  }
  EXPECT_TRUE(NotesDocument().isNothing());
}

TEST_F(TypedViews, AreTheObjectAndNoOtherView) {
  const auto document = answering<NotesDocument>(Object());
  const Object object = document;
  EXPECT_TRUE(object == document);
  static_assert(std::is_convertible_v<Object, NotesDocument>);
  static_assert(std::is_convertible_v<NotesRichTextItem, NotesItem>);
  static_assert(!std::is_convertible_v<NotesDatabase, NotesDocument>);
  static_assert(!std::is_convertible_v<NotesItem, NotesRichTextItem>);
}

}  // namespace
}  // namespace lens
