// Forms, subforms, pages, About and Using documents, and shared fields.
#pragma once

#include "embedded/dxl/design_reader.h"
#include "embedded/dxl/field_elements.h"

namespace lens {

class FormReader : public DesignReader {
 public:
  using DesignReader::DesignReader;
  bool readChild() override;
  void finish() override;

 private:
  void readBody();
  bool readCode();

  QVector<FormField> fields_;
};

}  // namespace lens
