// NotesDocumentCollection: documents in a fixed order, taken at one moment.
#pragma once

#include <QHash>

#include "embedded/model/member_table.h"
#include "embedded/model/model_context.h"

namespace lens {

class DocumentCollectionObject : public ModelObject {
 public:
  DocumentCollectionObject(std::shared_ptr<OpenDatabase> database, const QVector<NoteId>& noteIds);

 protected:
  const MemberTable& members() const override;

 private:
  Value readableFrom(qsizetype place) const;

  std::shared_ptr<OpenDatabase> database_;
  QVector<NoteId> noteIds_;
  QHash<NoteId, qsizetype> places_;
};

}  // namespace lens
