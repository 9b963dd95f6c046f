#include <QSet>

#include "embedded/mime/mime_entity.h"
#include "embedded/richtext/rich_text.h"
#include "import_fixture.h"

namespace lens {
namespace {

class Samples : public DxlImport {
 protected:
  static QString sample(const QString& name) { return QStringLiteral(LENS_SAMPLES_DIR) + u'/' + name; }

  void take(const QString& name) {
    DxlImporter(*database_).importFile(sample(name), last_);
    EXPECT_EQ(last_.failed.join(u'\n').toStdString(), "");
  }

  // Elements and attributes that stayed as XML.
  std::string leftovers() const {
    QStringList left;
    for (const QString& line : last_.keptRaw) {
      const QString what = line.section(QStringLiteral(": "), 1);
      if (what.startsWith(u"element") || what.startsWith(u"attribute")) left.push_back(what);
    }
    return left.join(u'\n').toStdString();
  }

  QVector<Note> all(quint16 noteClass) const {
    QVector<Note> notes;
    database_->notes().scan(noteClass, [&](const Note& note) {
      notes.push_back(note);
      return true;
    });
    return notes;
  }

  int countForm(const QString& form) const {
    int count = 0;
    for (const Note& note : all(noteclass::Document)) count += note.text(u"Form") == form ? 1 : 0;
    return count;
  }
};

TEST_F(Samples, AddressBookHoldsServersAndPeople) {
  take(QStringLiteral("names.dxl"));
  EXPECT_EQ(leftovers(), "");
  EXPECT_EQ(countForm(QStringLiteral("Server")), 3);
  EXPECT_EQ(countForm(QStringLiteral("Person")), 12);
  EXPECT_TRUE(database_->info().publicAddressBook);
  QStringList views;
  for (const Note& view : all(noteclass::View)) views.push_back(view.text(u"$TITLE"));
  EXPECT_EQ(views.join(u'|').toStdString(), "($Servers)|People");
}

TEST_F(Samples, FirstDocumentOfTheMailFileIsTheContractMemo) {
  take(QStringLiteral("mail.dxl"));
  EXPECT_EQ(leftovers(), "");
  const Note memo = all(noteclass::Document).value(0);
  EXPECT_EQ(valuesText(memo, u"Subject"), "Contract 2024-117, second draft");
  const Item* body = memo.find(u"Body");
  ASSERT_TRUE(body);
  const QString text = RichText::fromBytes(body->data()).plainText();
  EXPECT_GE(text.count(u"contract"), 3);
  EXPECT_TRUE(text.startsWith(u"Dear Mr Okafor,\r\n\r\nplease find the contract"));
  QStringList files;
  QSet<int> types;
  bool untold = false;
  for (const Item& item : memo.items) {
    FileObject file;
    types.insert(objectModelType(item));
    untold = untold || item.type() == itemtype::ViewFormat;
    if (item.name != u"$FILE" || !readFileObject(item.data(), file)) continue;
    files.push_back(file.name);
    EXPECT_EQ(database_->objects().size(file.objectId), qint64(file.size));
    EXPECT_GT(file.size, 300u);
  }
  EXPECT_EQ(files.join(u' ').toStdString(), "contract.pdf price-list.ods");
  EXPECT_TRUE(untold);
  for (const int type : {1, 1084, 1074, 1075, 1076, 768, 1024, 1280})
    EXPECT_TRUE(types.contains(type)) << type;
}

TEST_F(Samples, MailFileHoldsAMimeMessageOfTwoParts) {
  take(QStringLiteral("mail.dxl"));
  const Note note = all(noteclass::Document).value(1);
  const auto message = MimeEntity::parse(mimeMessage(note));
  ASSERT_TRUE(message);
  ASSERT_EQ(message->children().size(), 2);
  EXPECT_EQ(message->children()[0]->contentSubType().toStdString(), "plain");
  EXPECT_TRUE(message->children()[0]->contentAsText().contains(QStringLiteral(u"price of € 1,240")));
  EXPECT_TRUE(message->children()[1]->contentAsText().contains(u"<b>contract</b>"));
}

TEST_F(Samples, DiscussionHoldsEveryKindOfDesignAndSchedule) {
  take(QStringLiteral("discussion.dxl"));
  EXPECT_EQ(leftovers(), "element \"outlineentry\" (2 times)");
  QStringList triggers;
  QSet<quint16> intervals;
  for (const Note& note : all(noteclass::Filter)) {
    const Item* info = note.find(u"$AssistInfo");
    if (!info) continue;
    triggers.push_back(note.text(u"$AssistTrigger"));
    ByteReader reader(info->data());
    reader.skip(6);
    intervals.insert(reader.u16());
  }
  EXPECT_EQ(triggers.join(u' ').toStdString(), "4 4 6 2 1 1 1 1 1 5 3 8 4 4 4 4 4 4 4");
  EXPECT_EQ(intervals.size(), 5);
  for (const quint16 single : {noteclass::Icon, noteclass::About, noteclass::Using, noteclass::Acl})
    EXPECT_NE(database_->notes().specialNote(single), NoteId());
  EXPECT_EQ(countForm(QStringLiteral("MainTopic")), 3);
  EXPECT_EQ(countForm(QStringLiteral("Response")), 3);
  QStringList profiles;
  for (const Note& note : all(noteclass::Document)) {
    if (note.has(u"$Name")) profiles.push_back(note.text(u"$Name"));
  }
  EXPECT_EQ(profiles.size(), 3);
  EXPECT_TRUE(profiles.contains(QStringLiteral("$profile_019discussion settings_")));
}

TEST_F(Samples, SampleThatIsCutLeavesNothing) {
  QFile file(sample(QStringLiteral("discussion.dxl")));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray whole = file.readAll();
  for (qsizetype length = 1; length < whole.size() - 12; length += 397) {
    const ImportReport report = run(whole.first(length));
    ASSERT_EQ(report.failed.size(), 1) << length;
    ASSERT_EQ(notes(), 0) << length;
  }
}

TEST_F(Samples, SecondImportReplacesAndAddsNothing) {
  for (const char16_t* name : {u"names.dxl", u"mail.dxl"}) {
    take(QString::fromUtf16(name));
    const int before = notes();
    last_ = {};
    take(QString::fromUtf16(name));
    EXPECT_EQ(notes(), before);
    EXPECT_EQ(last_.replaced, last_.notes);
  }
}

TEST_F(Samples, TheTemplateHasTheNameThatTheDiscussionInherits) {
  take(QStringLiteral("template.dxl"));
  EXPECT_EQ(leftovers(), "");
  EXPECT_EQ(database_->info().templateName, QStringLiteral("AcmeDiscussion"));
  EXPECT_EQ(database_->info().inheritsFrom, QString());
  EXPECT_EQ(all(noteclass::Form).size(), 1);
  EXPECT_EQ(all(noteclass::View).size(), 1);
}

}  // namespace
}  // namespace lens
