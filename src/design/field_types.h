// Reports across the rows of the collection list: which fields of a type the listed forms have, and what
// one field holds in every listed note. Both walk every row, marked or not, and put their report into the
// content box, where it can be searched and copied.
#pragma once

#include "shell/desk.h"

namespace lens {

class FieldTypes {
 public:
  explicit FieldTypes(Desk& desk);

  void cmdFieldTypes_Click();
  void cmdChkFields_Click();

 private:
  using RecordsOfRow = QString (FieldTypes::*)(const QString& row);
  QString reportOf(RecordsOfRow recordsOf);
  QString fieldsOfForm(const QString& row);
  int wantedType();
  QString contentOfNote(const QString& row);
  void showReport(const QString& report);
  template <class Body>
  void withBox(Body&& statements);

  Desk& desk_;
};

}  // namespace lens
