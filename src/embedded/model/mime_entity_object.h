// NotesMIMEEntity: a part of a message.
#pragma once

#include "embedded/mime/mime_entity.h"
#include "embedded/model/member_table.h"

namespace lens {

class MimeEntityObject : public ModelObject {
 public:
  explicit MimeEntityObject(std::shared_ptr<const MimeEntity> entity,
                            std::shared_ptr<const MimeEntity> parent = nullptr, qsizetype place = 0)
      : entity_(std::move(entity)), parent_(std::move(parent)), place_(place) {}

 protected:
  const MemberTable& members() const override;

 private:
  std::shared_ptr<const MimeEntity> entity_;
  std::shared_ptr<const MimeEntity> parent_;  // null for the whole message
  qsizetype place_;
};

}  // namespace lens
