#include "shell/server_lists.h"

#include "notes/code_page.h"
#include "notes/literals.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

void setTexts(const QVector<ComboBox*>& boxes, const QString& text) {
  for (ComboBox* box : boxes) box->setText(text);
}

void addRows(const QVector<ComboBox*>& boxes, const QString& row) {
  for (ComboBox* box : boxes) box->addItem(row);
}

const QString kLocal = u"Local"_s;

}  // namespace

ServerLists::ServerLists(Globals& state, Host& host, CApi& api, Routines& routines)
    : state_(state), host_(host), api_(api), routines_(routines) {}

void ServerLists::registerWindow(const QString& name, QVector<ComboBox*> boxes) {
  boxes_[name] = std::move(boxes);
}

void ServerLists::GetServerList2(const QString& window) {
  const QVector<ComboBox*> boxes = boxes_.value(window);
  try {
    const AddressBook book = firstPublicBook();
    if (book.found) {
      fillFromBook(book, boxes);
    } else {
      GetNotesServerNames();
      setTexts(boxes, kLocal);
    }
  } catch (const RuntimeError& error) {
    // No source lines are kept, so the line is always 0.
    host_.messageBox(u"GetServerList2: in line 0 "_s + error.description(), box::Critical,
                     u"Replic Notes DB's"_s);
  }
}

ServerLists::AddressBook ServerLists::firstPublicBook() const {
  AddressBook found;
  const Value books = state_.gSession.addressBooks();
  if (books.isEmpty()) return found;
  for (const Value& element : books.values()) {
    const NotesDatabase book = element.object();
    if (!book.isPublicAddressBook() || found.found) continue;
    found.server = routines_.AbbreviateName(book.server());
    found.path = book.filePath();
    found.found = true;
  }
  return found;
}

// A book that cannot be opened raises or comes unopened, as its side of the door has it: both leave the
// list without servers.
NotesDatabase ServerLists::openBook(const AddressBook& found) const {
  try {
    return state_.gSession.database(found.server, found.path);
  } catch (const RuntimeError&) {
    return {};
  }
}

void ServerLists::fillFromBook(const AddressBook& found, const QVector<ComboBox*>& boxes) {
  const NotesDatabase book = openBook(found);
  if (!book || !book.isOpen()) {
    setTexts(boxes, kLocal);
    return;
  }
  addRows(boxes, kLocal);
  const NotesView view = book.view(u"($Servers)"_s);
  NotesDocument document = view.firstDocument();
  while (document) {
    const Value names = document.itemValue(u"ServerName"_s);
    addRows(boxes, names.at(0).text());
    document = view.nextDocument(document);
  }
  const QString server = book.server();
  setTexts(boxes, server.isEmpty() ? kLocal : server);
}

void ServerLists::GetNotesServerNames() {
  const NotesTermAtEnd term(api_);
  MemHandle list = 0;
  bool locked = false;
  try {
    api_.NotesInitExtended(0, QByteArray());
    if (api_.NSGetServerList(0, list) == 0 && list != 0) {
      const char* names = api_.OSLockObject(list);
      locked = true;
      addListedServers(names);
    }
  } catch (const RuntimeError& error) {
    host_.messageBox(error.description(), box::Plain, u"Marrowgate/Notes Client?"_s);
  }
  if (locked) {
    api_.OSUnlockObject(list);
    api_.OSMemFree(list);
  }
}

void ServerLists::addListedServers(const char* list) {
  const char* text = nullptr;
  quint16 length = 0;
  for (quint16 index = 0; api_.ListGetText(list, 0, index, text, length) == 0; ++index) {
    if (length == 0) continue;
    QByteArray name(length, ' ');
    api_.OSTranslate(1, QByteArray(text, length), length, name, 256);
    if (fallbackBox_) fallbackBox_().addItem(fromCodePage(upToNul(name)));
  }
}

}  // namespace lens
