// Every member that the program asks for is there, in its class, with its kind and its arguments, and is
// found whatever the case of its name. What each member does is told by the other tests of this folder.
#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "embedded/format/agent_records.h"
#include "embedded/model/support/test_workspace.h"
#include "embedded/search/full_text.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

// What a class of the model has to answer to.
struct Asked {
  enum class Kind { Get, Set, Call };
  QString member;
  Kind kind = Kind::Get;
  // Made when everything else stands, since arguments may be objects.
  std::function<QVector<Value>()> arguments = [] { return QVector<Value>(); };
};
Asked get(QString member) {
  return {std::move(member), Asked::Kind::Get};
}
Asked set(QString member, Value value) {
  return {std::move(member), Asked::Kind::Set, [value] { return QVector<Value>{value}; }};
}
Asked call(QString member, QVector<Value> arguments = {}) {
  return {std::move(member), Asked::Kind::Call, [arguments] { return arguments; }};
}
Asked callWith(QString member, std::function<QVector<Value>()> arguments) {
  return {std::move(member), Asked::Kind::Call, std::move(arguments)};
}

// "GETFIRSTITEM" as "gEtFiRsTiTeM".
QString oddCase(const QString& name) {
  QString odd = name.toLower();
  for (qsizetype place = 1; place < odd.size(); place += 2) odd[place] = odd[place].toUpper();
  return odd;
}

// A workspace with one of everything, as a desk has it where a document is open.
struct Everything : ::testing::Test {
  Everything() {
    document = t.addFile(u"report.pdf"_s, "bytes");
    other = t.add({{u"Form"_s, textValue(u"Memo")},
                   {u"Subject"_s, textValue(u"Hello")},
                   {u"Body"_s, richValue(u"Some text"_s), 0}});
    t.addView(u"All"_s, sourceFormulaValue(u"SELECT @All"_s));
    t.add({{u"$TITLE"_s, textValue(u"Memo")}}, noteclass::Form);
    message = t.addMime(
        "Content-Type: multipart/mixed; boundary=b\r\n\r\n--b\r\n\r\none\r\n--b\r\n\r\ntwo\r\n--b--\r\n");
    t.workspace->client().showDatabase(t.workspace->place({}, u"mail.nsf"_s));
  }

  void expect(const std::function<Object()>& make, const QVector<Asked>& members) {
    for (const Asked& asked : members) {
      const Object object = make();
      ASSERT_FALSE(object.isNothing()) << asked.member.toStdString();
      const QString name = oddCase(asked.member);
      const QVector<Value> arguments = asked.arguments();
      // The dispatch itself: what automation calls with, and what says whether the member is there.
      try {
        if (asked.kind == Asked::Kind::Get) object.get(name);
        if (asked.kind == Asked::Kind::Set) object.set(name, arguments.at(0));
        if (asked.kind == Asked::Kind::Call) object.target()->call(name, arguments);
      } catch (const RuntimeError& error) {
        ADD_FAILURE() << asked.member.toStdString() << ": " << error.number() << ' '
                      << error.description().toStdString();
      }
    }
  }

  Object openDocument() const { return t.document(document); }
  Object memo() const { return t.document(other); }
  Object body() const { return memo().call(u"GETFIRSTITEM"_s, u"Body"_s).object(); }
  Object view() const { return t.mail().call(u"GETVIEW"_s, u"All"_s).object(); }
  Object collection() const { return t.mail().call(u"SEARCH"_s, u"@All"_s, Value(), 0).object(); }

  mutable TestWorkspace t;
  NoteId document = NoteId(0), other = NoteId(0), message = NoteId(0);
};

}  // namespace

TEST_F(Everything, OfTheClientsWorkspaceIsThere) {
  t.workspace->client().showDocument(other);
  expect([&] { return t.ui(); }, {get(u"CURRENTDOCUMENT"_s), get(u"CURRENTDATABASE"_s),
                                  call(u"VIEWREFRESH"_s), call(u"OPENDATABASE"_s, {u"", u"mail.nsf"})});
}

TEST_F(Everything, OfAnOpenDocumentIsThere) {
  const auto open = [&] {
    t.workspace->client().showDocument(other);
    return t.ui().get(u"CURRENTDOCUMENT"_s).object();
  };
  expect(open, {get(u"DOCUMENT"_s), call(u"Close"_s)});
}

TEST_F(Everything, OfASessionIsThere) {
  expect([&] { return t.session(); }, {get(u"CURRENTDATABASE"_s), get(u"NOTESVERSION"_s), get(u"USERNAME"_s),
                                       call(u"GETENVIRONMENTSTRING"_s, {u"Directory", true}),
                                       get(u"ADDRESSBOOKS"_s), call(u"GETDATABASE"_s, {u"", u"mail.nsf"}),
                                       call(u"GETDBDIRECTORY"_s, {u""}), set(u"CONVERTMIME"_s, false)});
  expect([&] { return t.gateway.create(u"Lotus.NotesSession"_s); }, {call(u"Initialize"_s)});
}

TEST_F(Everything, OfADirectoryIsThere) {
  const auto directory = [&] { return t.session().call(u"GETDBDIRECTORY"_s, u"").object(); };
  expect(directory, {call(u"GETFIRSTDATABASE"_s, {1246}), call(u"GETFIRSTDATABASE"_s, {1247}),
                     call(u"OpenDatabaseByReplicaID"_s, {u"C1257A0000112233"})});
  const auto walking = [&] {
    const Object object = directory();
    object.call(u"GETFIRSTDATABASE"_s, 1247);
    return object;
  };
  expect(walking, {call(u"GETNEXTDATABASE"_s)});
}

TEST_F(Everything, OfADatabaseIsThere) {
  createFullTextIndex(*t.store);
  const QString unid = t.document(other).get(u"UNIVERSALID"_s).text();
  expect([&] { return t.mail(); }, {get(u"server"_s),
                                    get(u"FILEPATH"_s),
                                    get(u"Size"_s),
                                    get(u"Title"_s),
                                    get(u"REPLICAID"_s),
                                    get(u"TEMPLATENAME"_s),
                                    get(u"isIndexed"_s),
                                    get(u"ISOPEN"_s),
                                    get(u"ISPUBLICADDRESSBOOK"_s),
                                    get(u"UNPROCESSEDDOCUMENTS"_s),
                                    get(u"AGENTS"_s),
                                    get(u"VIEWS"_s),
                                    call(u"GETVIEW"_s, {u"All"}),
                                    call(u"GETDOCUMENTBYID"_s, {t.hex(other)}),
                                    call(u"GETDOCUMENTBYUNID"_s, {unid}),
                                    call(u"GETPROFILEDOCCOLLECTION"_s),
                                    call(u"GETFORM"_s, {u"Memo"}),
                                    call(u"GETAGENT"_s, {u"none"}),
                                    call(u"SEARCH"_s, {u"@All", Value(Object()), 0}),
                                    call(u"FTSEARCH"_s, {u"", 0}),
                                    call(u"CREATENOTECOLLECTION"_s, {false}),
                                    call(u"CREATEREPLICA"_s, {u"", u"copies/mail.nsf"}),
                                    call(u"REPLICATE"_s, {u""}),
                                    call(u"Close"_s)});
}

TEST_F(Everything, OfADatabaseCanBeRemoved) {
  const auto spare = [&] {
    t.workspace->createDatabase({}, u"spare.nsf"_s, {});
    return t.session().call(u"GETDATABASE"_s, u"", u"spare.nsf").object();
  };
  expect(spare, {call(u"Remove"_s)});
}

TEST_F(Everything, OfAViewIsThere) {
  const Object first = memo();
  expect([&] { return view(); },
         {get(u"ALLENTRIES"_s), get(u"ENTRYCOUNT"_s), call(u"GETFIRSTDOCUMENT"_s),
          callWith(u"GETNEXTDOCUMENT"_s, [&] { return QVector<Value>{first}; }),
          call(u"GETENTRYBYKEY"_s, {u"x", true}), get(u"SELECTIONFORMULA"_s), get(u"Name"_s)});
}

TEST_F(Everything, OfViewEntriesIsThere) {
  const auto entries = [&] { return view().get(u"ALLENTRIES"_s).object(); };
  const Object walked = entries();
  const Object entry = walked.call(u"GETFIRSTENTRY"_s).object();
  expect([&] { return walked; },
         {call(u"GETFIRSTENTRY"_s), callWith(u"GETNEXTENTRY"_s, [&] { return QVector<Value>{entry}; })});
  expect([&] { return entry; }, {get(u"ISDOCUMENT"_s), get(u"DOCUMENT"_s)});
  expect(entries, {get(u"count"_s), get(u"ENTRYCOUNT"_s), call(u"REMOVEALL"_s, {true})});
}

TEST_F(Everything, OfADocumentCollectionIsThere) {
  const Object walked = collection();
  const Object first = walked.call(u"GETFIRSTDOCUMENT"_s).object();
  expect([&] { return walked; }, {get(u"count"_s), call(u"GETFIRSTDOCUMENT"_s),
                                  callWith(u"GETNEXTDOCUMENT"_s, [&] { return QVector<Value>{first}; }),
                                  call(u"GETNTHDOCUMENT"_s, {1}), call(u"REMOVEALL"_s, {true})});
}

TEST_F(Everything, OfANoteCollectionIsThere) {
  QVector<Asked> members{call(u"SELECTALLNOTES"_s, {false}), call(u"BUILDCOLLECTION"_s)};
  for (const char16_t* name : {u"ACL",
                               u"ACTIONS",
                               u"AGENTS",
                               u"DATABASESCRIPT",
                               u"DATACONNECTIONS",
                               u"DOCUMENTS",
                               u"FOLDERS",
                               u"FORMS",
                               u"FRAMESETS",
                               u"HELPABOUT",
                               u"HELPINDEX",
                               u"HELPUSING",
                               u"ICON",
                               u"IMAGERESOURCES",
                               u"IONFORMULA",
                               u"JAVARESOURCES",
                               u"MISCCODEELEMENTS",
                               u"MISCFORMATELEMENTS",
                               u"MISCINDEXELEMENTS",
                               u"NAVIGATORS",
                               u"OUTLINES",
                               u"PAGES",
                               u"PROFILES",
                               u"REPLICATIONFORMULAS",
                               u"SCRIPTLIBRARIES",
                               u"SHAREDFIELDS",
                               u"STYLESHEETRESOURCES",
                               u"SUBFORMS",
                               u"VIEWS"})
    members.push_back(set(u"SELECT"_s + QString::fromUtf16(name), true));
  members.push_back(set(u"SINCETIME"_s, true));
  const auto make = [&] { return t.mail().call(u"CREATENOTECOLLECTION"_s, false).object(); };
  expect(make, members);
  const auto built = [&] {
    const Object notes = make();
    notes.set(u"SELECTFORMS"_s, true);
    notes.call(u"BUILDCOLLECTION"_s);
    return notes;
  };
  const QString first = built().call(u"GETFIRSTNOTEID"_s).text();
  expect(built, {call(u"GETFIRSTNOTEID"_s), call(u"GETNEXTNOTEID"_s, {first}), get(u"count"_s)});
}

TEST_F(Everything, OfADocumentIsThere) {
  expect(
      [&] { return memo(); },
      {get(u"NoteID"_s), get(u"UNIVERSALID"_s), get(u"ITEMS"_s), get(u"PARENTDATABASE"_s),
       get(u"HASEMBEDDED"_s), call(u"HASITEM"_s, {u"Form"}), call(u"GETFIRSTITEM"_s, {u"Form"}),
       call(u"GETITEMVALUE"_s, {u"Form"}), call(u"REPLACEITEMVALUE"_s, {u"Form", u"Reply"}),
       call(u"CREATERICHTEXTITEM"_s, {u"More"}), call(u"GETATTACHMENT"_s, {u"none"}),
       call(u"GETMIMEENTITY"_s), call(u"RemoveItem"_s, {u"Subject"}), call(u"SAVE"_s, {true, false}),
       call(u"SAVE"_s, {true, false, true}),
       callWith(u"COPYTODATABASE"_s, [&] { return QVector<Value>{t.mail()}; }), call(u"Remove"_s, {true})});
  expect([&] { return openDocument(); }, {call(u"REMOVEPERMANENTLY"_s, {true})});
}

TEST_F(Everything, OfAnItemIsThereAndOfARichTextItemToo) {
  const QVector<Asked> members{get(u"Name"_s),
                               get(u"Text"_s),
                               get(u"Type"_s),
                               get(u"Values"_s),
                               get(u"ISSUMMARY"_s),
                               set(u"ISSUMMARY"_s, true),
                               get(u"ISENCRYPTED"_s),
                               set(u"ISENCRYPTED"_s, true),
                               get(u"ISSIGNED"_s),
                               set(u"ISSIGNED"_s, true),
                               get(u"ISPROTECTED"_s),
                               set(u"ISPROTECTED"_s, true),
                               set(u"ISREADERS"_s, true),
                               set(u"ISAUTHORS"_s, true),
                               set(u"ISNAMES"_s, true)};
  expect([&] { return memo().call(u"GETFIRSTITEM"_s, u"Form"_s).object(); }, members);
  expect([&] { return body(); }, members);
}

TEST_F(Everything, OfARichTextItemIsThere) {
  QFile file(t.file(u"note.txt"_s));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("text") == 4);
  file.close();
  expect([&] { return body(); },
         {call(u"GETFORMATTEDTEXT"_s, {true, 1000}), call(u"APPENDTEXT"_s, {u"more"}),
          call(u"EMBEDOBJECT"_s, {1454, u"", file.fileName()}), get(u"EMBEDDEDOBJECTS"_s), call(u"COMPACT"_s),
          call(u"CREATENAVIGATOR"_s), call(u"CREATERANGE"_s)});
  expect([&] { return body().call(u"CREATENAVIGATOR"_s).object(); }, {call(u"FINDFIRSTELEMENT"_s, {4})});
  expect([&] { return body().call(u"CREATERANGE"_s).object(); },
         {call(u"FINDANDREPLACE"_s, {u"text", u"words", 17})});
  EXPECT_EQ(raised([&] { body().call(u"getformatredtext"_s, false, 0); }), err::MemberNotSupported);
}

TEST_F(Everything, OfAnAttachmentIsThere) {
  expect(
      [&] { return openDocument().call(u"GETATTACHMENT"_s, u"report.pdf"_s).object(); },
      {get(u"Name"_s), get(u"Type"_s), get(u"FILESIZE"_s), call(u"EXTRACTFILE"_s, {t.file(u"out.pdf"_s)})});
}

TEST_F(Everything, OfAMimeEntityIsThere) {
  const Object session = t.session();
  session.set(u"CONVERTMIME"_s, false);
  expect([&] { return t.document(message).call(u"GETMIMEENTITY"_s).object(); },
         {get(u"CONTENTTYPE"_s), get(u"CONTENTASTEXT"_s), call(u"GETFIRSTCHILDENTITY"_s),
          call(u"GETNEXTSIBLING"_s)});
}

TEST_F(Everything, OfAFormIsThere) {
  expect([&] { return t.mail().call(u"GETFORM"_s, u"Memo"_s).object(); },
         {get(u"FIELDS"_s), call(u"GETFIELDTYPE"_s, {u"Subject"})});
}

TEST_F(Everything, OfAnAgentIsThere) {
  AgentSchedule all;
  all.trigger = 4;
  all.search = 1;
  t.add({{u"$TITLE"_s, textValue(u"Mark")},
         {u"$Flags"_s, textValue(u"f3")},
         {u"$AssistInfo"_s, assistInfoValue(all), 0},
         {u"$AssistQuery"_s, emptyQueryValue(), 0},
         {u"$AssistAction"_s, formulaActionValue(sourceFormula(u"SELECT @All; FIELD Mark := 1"_s)), 0}},
        noteclass::Filter);
  expect([&] { return t.mail().call(u"GETAGENT"_s, u"Mark"_s).object(); }, {get(u"Name"_s), call(u"RUN"_s)});
}
