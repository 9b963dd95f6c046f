#include "embedded/help/help_database.h"

#include <gtest/gtest.h>

#include <QSet>

#include "embedded/formula/function.h"
#include "embedded/model/support/test_workspace.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

// The formulas by which people list the topics of a language.
const QString kFunctions =
    u"SELECT TopicType != \"F1only\" & @Begins(Subject;\"@\") & TopicType = \"About\""_s;
const QString kScript =
    u"SELECT TopicType != \"F1only\" & TopicType = \"About\" & @Left(_Parent;14) = \"LSAZ_CHAPTER_7\""_s;
const QString kJava =
    u"SELECT TopicType != \"F1only\" & TopicType = \"About\" & @Left(_Parent;10) = \"H_10_NOTES\""_s;

struct HelpDatabase : ::testing::Test {
  HelpDatabase() { fillHelpDatabase(*t.store); }
  QStringList subjects(const QString& formula) {
    QStringList found;
    const Object topics = t.mail().call(u"SEARCH"_s, formula, Object(), 0).object();
    for (Object topic = topics.call(u"GETFIRSTDOCUMENT"_s).object(); topic;
         topic = topics.call(u"GETNEXTDOCUMENT"_s, topic).object())
      found.append(topic.call(u"GETITEMVALUE"_s, u"Subject"_s).at(0).text());
    return found;
  }
  TestWorkspace t;
};

}  // namespace

TEST_F(HelpDatabase, HasTheFunctionsUnderTheirFormula) {
  const QStringList found = subjects(kFunctions);
  EXPECT_EQ(found.size(), formula::allFunctions().size());
  EXPECT_TRUE(found.contains(u"@Left"_s));
}

TEST_F(HelpDatabase, HasTheScriptTopicsUnderTheirFormula) {
  const QStringList found = subjects(kScript);
  EXPECT_GE(found.size(), 70);
  for (const QString& subject : {u"ForAll statement"_s, u"StrLeft function"_s, u"NotesDocument class"_s})
    EXPECT_TRUE(found.contains(subject)) << subject.toStdString();
}

TEST_F(HelpDatabase, HasTheJavaTopicsUnderTheirFormula) {
  const QStringList found = subjects(kJava);
  EXPECT_GE(found.size(), 40);
  for (const QString& subject : {u"Document class"_s, u"recycle method"_s})
    EXPECT_TRUE(found.contains(subject)) << subject.toStdString();
}

TEST_F(HelpDatabase, ShowsEachTopicInOneListOnlyAndEachSubjectOnce) {
  const QStringList lists[] = {subjects(kFunctions), subjects(kScript), subjects(kJava)};
  qsizetype all = 0;
  for (const QStringList& list : lists) {
    EXPECT_EQ(QSet<QString>(list.begin(), list.end()).size(), list.size());
    all += list.size();
  }
  EXPECT_EQ(subjects(u"SELECT TopicType = \"About\""_s).size(), all);
}

TEST_F(HelpDatabase, KeepsHelpForWindowsOutOfTheLists) {
  const QStringList hidden = subjects(u"SELECT TopicType = \"F1only\""_s);
  EXPECT_EQ(hidden.size(), 3);
  for (const QString& formula : {kFunctions, kScript, kJava})
    for (const QString& subject : subjects(formula)) EXPECT_FALSE(hidden.contains(subject));
}

TEST_F(HelpDatabase, HasATextInEveryTopic) {
  int topics = 0;
  t.store->notes().scan(noteclass::Document, [&](const Note& note) {
    const Item* body = note.find(u"Body");
    const QString text = body ? RichText::fromBytes(body->data()).plainText() : QString();
    EXPECT_GT(text.size(), note.text(u"Subject").size() + 5) << note.text(u"Subject").toStdString();
    EXPECT_FALSE(note.text(u"Subject").isEmpty());
    ++topics;
    return true;
  });
  EXPECT_GT(topics, 350);
}

TEST_F(HelpDatabase, HasAnIconNoteLikeEveryDatabase) {
  const Object icon = t.mail().call(u"GETDOCUMENTBYID"_s, u"FFFF0010"_s).object();
  EXPECT_EQ(icon.call(u"GETITEMVALUE"_s, u"$TITLE"_s).at(0).text(), u"Mail of Karin"_s);
  EXPECT_TRUE(icon.call(u"HASITEM"_s, u"$Flags"_s).boolean());
}
