// Views and folders.
#pragma once

#include "embedded/dxl/design_reader.h"

namespace lens {

struct ViewColumn {
  QString item, title;
  QByteArray formula;  // compiled or as source
  int width = 10;      // characters, times 8 in the record
  bool sorted = false, descending = false, categorized = false, hidden = false;
  bool responsesOnly = false;   // says something of responses only
  bool separateValues = false;  // each of several values makes a row of its own
};

class ViewReader : public DesignReader {
 public:
  ViewReader(const DesignKind& kind, ReadContext& context, Note& note);
  bool readChild() override;
  void finish() override;

 private:
  bool readCode();
  void readColumn();

  QVector<ViewColumn> columns_;
};

// Item values, type word included. In a view with a hierarchy responses stand below what they answer.
QByteArray viewFormatValue(const QVector<ViewColumn>& columns, bool hierarchy = true);
QByteArray collationValue(const QVector<ViewColumn>& columns);

}  // namespace lens
