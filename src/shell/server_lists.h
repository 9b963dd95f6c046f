// Fills the server combo boxes. Four windows share the routine; each registers its boxes under its
// name, so the routine knows no window class.
#pragma once

#include <QHash>
#include <QString>
#include <QVector>
#include <functional>

#include "controls/combo_box.h"
#include "host/host.h"
#include "notes/bridge.h"
#include "notes/capi.h"
#include "shell/globals.h"
#include "shell/routines.h"

namespace lens {

class ServerLists {
 public:
  ServerLists(Globals& state, Host& host, CApi& api, Routines& routines);

  void registerWindow(const QString& name, QVector<ComboBox*> boxes);
  // The box that takes the servers the C API knows, whichever window asked. The function loads its
  // window at the first name; without it the names go nowhere.
  void setFallbackBox(std::function<ComboBox&()> box) { fallbackBox_ = std::move(box); }

  // Servers of the first public address book, or, when there is none, of the client's own list.
  void GetServerList2(const QString& window);
  // The servers that the C API knows, into the fallback box.
  void GetNotesServerNames();

 private:
  struct AddressBook {
    bool found = false;
    QString server;  // abbreviated
    QString path;
  };
  AddressBook firstPublicBook() const;
  NotesDatabase openBook(const AddressBook& book) const;
  void fillFromBook(const AddressBook& book, const QVector<ComboBox*>& boxes);
  void addListedServers(const char* list);

  Globals& state_;
  Host& host_;
  CApi& api_;
  Routines& routines_;
  QHash<QString, QVector<ComboBox*>> boxes_;
  std::function<ComboBox&()> fallbackBox_;
};

}  // namespace lens
