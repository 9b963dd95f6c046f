#include "support/lens_fixture.h"

#include <QBuffer>
#include <QTest>

namespace lens {

LensFixture::LensFixture() {
  workspace = Workspace::open(directory.filePath(u"workspace"_s), host.regional());
  engineNotes = std::make_unique<EmbeddedGateway>(workspace);
  engineCapi = std::make_unique<EmbeddedCApi>(workspace);
  notesDoor = std::make_unique<FaultyGateway>(*engineNotes);
  capiDoor = std::make_unique<ForwardingCApi>(*engineCapi);
}

LensFixture::~LensFixture() {
  app.reset();
  setUntrappedReport(nullptr);
}

std::shared_ptr<Database> LensFixture::openDatabase(const QString& path, const QString& server) {
  if (!server.isEmpty()) workspace->addServer(server);
  DatabaseInfo info;
  info.title = path;
  database = workspace->createDatabase(server, path, info);
  workspace->client().showDatabase(DatabasePlace{server, path});
  return database;
}

Note LensFixture::document(const QString& form) {
  Note note;
  note.add(u"Form"_s, itemflag::Summary, textValue(form));
  return note;
}

NoteId LensFixture::save(Note& note) {
  database->notes().save(note);
  return note.header.id;
}

void LensFixture::attach(Note& note, const QString& fileName, const QByteArray& bytes) {
  QBuffer source;
  source.setData(bytes);
  source.open(QIODevice::ReadOnly);
  const StoredObject object = database->objects().add(source);
  FileObject file;
  file.objectId = object.id;
  file.name = fileName;
  file.size = quint32(object.size);
  note.add(u"$FILE"_s, itemflag::Summary, fileObjectValue(file));
}

void LensFixture::build() {
  app = std::make_unique<Application>(*notesDoor, *capiDoor, host, u"Test"_s);
}

void LensFixture::start() {
  build();
  app->start();
}

void LensFixture::click(const char* name) {
  QWidget& widget = control<QWidget>(name);
  if (auto* button = qobject_cast<CommandButton*>(&widget))
    button->raiseClick();
  else if (auto* list = qobject_cast<ListBox*>(&widget))
    list->raiseClick();
  else if (auto* box = qobject_cast<CheckBox*>(&widget))
    box->raiseClick();
  else if (auto* label = qobject_cast<Label*>(&widget))
    label->raiseClick();
  else
    throw std::runtime_error(std::string("cannot be clicked: ") + name);
}

void LensFixture::type(const char* name, const QString& text) {
  QWidget& widget = control<QWidget>(name);
  for (QChar c : text) QTest::keyClicks(&widget, QString(c));
}

void LensFixture::select(const char* list, int row) {
  control<ListBox>(list).setSelected(row, true);
}

void LensFixture::selectRow(const char* list, const QString& beginning) {
  const int row = control<ListBox>(list).find(beginning, 0);
  ASSERT_GE(row, 0) << list << " has no row that begins with \"" << beginning.toStdString()
                    << "\", but: " << rows(list).join(u" | "_s).toStdString();
  select(list, row);
}

QString LensFixture::text(const char* name) {
  QWidget& widget = control<QWidget>(name);
  if (auto* box = qobject_cast<TextBox*>(&widget)) return box->text();
  if (auto* box = qobject_cast<ComboBox*>(&widget)) return box->text();
  if (auto* box = qobject_cast<RichTextBox*>(&widget)) return box->text();
  if (auto* list = qobject_cast<ListBox*>(&widget)) return list->text();
  return widget.property("text").toString();
}

void LensFixture::setText(const char* name, const QString& text) {
  QWidget& widget = control<QWidget>(name);
  if (auto* combo = qobject_cast<ComboBox*>(&widget))
    combo->setText(text);
  else if (auto* rich = qobject_cast<RichTextBox*>(&widget))
    rich->setText(text);
  else
    control<TextBox>(name).setText(text);
}

QStringList LensFixture::rows(const char* list) {
  QStringList result;
  if (auto* combo = app->form.findChild<ComboBox*>(QString::fromLatin1(list))) {
    for (int row = 0; row < combo->listCount(); ++row) result += combo->list(row);
    return result;
  }
  ListBox& box = control<ListBox>(list);
  for (int row = 0; row < box.listCount(); ++row) result += box.list(row);
  return result;
}

bool LensFixture::isShown(const char* name) {
  return !control<QWidget>(name).isHidden();
}

}  // namespace lens
