// NotesDocumentCollection: documents in a fixed order, taken at one moment.
#pragma once

#include <QHash>

#include "embedded/model/member_table.h"
#include "embedded/model/model_context.h"

namespace lens {

class DocumentCollectionObject : public ModelObject {
 public:
  DocumentCollectionObject(std::shared_ptr<OpenDatabase> database, QVector<quint32> noteIds);

 protected:
  const MemberTable& members() const override;

 private:
  Value readableFrom(qsizetype place) const;

  std::shared_ptr<OpenDatabase> database_;
  QVector<quint32> noteIds_;
  QHash<quint32, qsizetype> places_;
};

}  // namespace lens
