// Views and folders.
#pragma once

#include "embedded/dxl/design_elements.h"

namespace lens {

struct ViewColumn {
  QString item, title;
  QByteArray formula;  // compiled or as source
  int width = 10;      // characters, times 8 in the record
  bool sorted = false, descending = false, categorized = false, hidden = false;
};

class ViewReader : public DesignReader {
 public:
  ViewReader(const DesignKind& kind, ImportContext& context, Note& note);
  bool readChild() override;
  void finish() override;

 private:
  bool readCode();
  void readColumn();

  QVector<ViewColumn> columns_;
};

// Item values, type word included.
QByteArray viewFormatValue(const QVector<ViewColumn>& columns);
QByteArray collationValue(const QVector<ViewColumn>& columns);

}  // namespace lens
