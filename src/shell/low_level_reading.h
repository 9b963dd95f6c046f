// What the object model does not tell of the current document: an item's stored size and the raw
// text of an agent's action. Each call opens the database and the note anew, so that a click shows
// the stored state.
#pragma once

#include <QSet>
#include <QString>
#include <functional>

#include "shell/desk.h"

namespace lens {

class LowLevelReading {
 public:
  explicit LowLevelReading(Desk& desk);

  // Stored bytes of the item; 0 when they cannot be told, kUnknownSize when the library cannot be given the
  // name of the database or the item, which a box tells once for each name. The size of an attachment is the
  // one that was collected at capture for the selected row of fldList.
  qint64 ItemSizeOf(const QString& name);
  // The legible letters of "$AssistAction", whatever name is given; empty when they cannot be told.
  QString DecodeAssistAction(const QString& name);

 private:
  struct StoredItem {
    quint16 type = 0;
    BlockId value;
    quint32 length = 0;  // type word included
  };
  void withStoredItem(const QString& name, const std::function<void(const StoredItem&)>& use);
  void openStoredItem(const QString& name, DbHandle& db, const std::function<void(const StoredItem&)>& use);
  // A failure ends the statements with a plain box. False when there was one.
  bool withBox(const std::function<void()>& statements);
  QString readActionText(const StoredItem& item);

  Desk& desk_;
  QSet<QString> told_;  // names that the library cannot be given, each told once
  bool unsayable_ = false;
};

}  // namespace lens
