// An expression of a tree as the code of a compiled formula; code_reader.h is the way back.
#pragma once

#include <QByteArray>

#include "embedded/formula/tree.h"

namespace lens::formula {

// Adds a counted text, as code, names and remarks have it: LMBCS, a line break of any kind is a zero byte.
// False, and nothing is added, where it would come back as another text or is too long for its count.
bool addText(QByteArray& data, QStringView text);

class CodeWriter {
 public:
  // Writes behind what the bytes hold.
  CodeWriter(const Tree& tree, QByteArray& bytes) : tree_(tree), bytes_(bytes) {}
  // Once. False when something in it has no code that is sure enough.
  bool write(int root);
  // Functions of code 0x100 and above.
  bool usesFar() const { return usesFar_; }

 private:
  void node(int index);
  void constant(const Value& value);
  void text(QStringView text);
  void counted(quint16 code, QStringView text);
  void call(const Node& node);
  void ifCall(const Node& node);
  void word(quint16 word);
  void setWord(qsizetype at, qsizetype value);

  const Tree& tree_;
  QByteArray& bytes_;
  bool usesFar_ = false;
  bool fits_ = true;
};

}  // namespace lens::formula
