// What the user is asked before an import, and what he answers.
#pragma once

#include <QStringList>
#include <memory>

namespace lens {

class Database;
class Regional;

// What an import is to go into, before the user has said so.
struct ImportOffer {
  QStringList paths;               // files and folders
  std::shared_ptr<Database> open;  // the open database, null where there is none
  QString openName;                // as the user reads it
  QString whyNotOpen;              // "" where the open database takes an import
  bool preferNew = false;
  QString serverName;  // where a new one would be made
  QString newPath;     // suggested for it
  const Regional* regional = nullptr;
};
struct ImportTarget {
  enum class Kind { None, Open, New };
  Kind kind = Kind::None;
  QString newPath;
};

}  // namespace lens
