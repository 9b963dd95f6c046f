// The source of a formula, word by word, with the white space that is known for it.
#pragma once

#include "embedded/formula/compiled/code_reader.h"
#include "embedded/formula/compiled/layout.h"

namespace lens::formula {

// How a name is written that only its code is known of.
QString unnamedFunction(quint32 code);
QString unnamedKeyword(quint32 number);

// One statement as it was stored.
struct StoredStatement {
  quint16 type = 0;
  int root = -1;  // node; -1 for a remark
  QString name;   // of what is assigned
  QString remark;
  LayoutReader layout;      // none: one blank around operators and behind ";"
  bool showSelect = false;  // SELECT is put in front although the layout has none
};

class SourceWriter {
 public:
  SourceWriter(const Tree& tree, const std::vector<Spelling>& spellings, const Environment& environment)
      : tree_(tree), spellings_(spellings), environment_(environment) {
    // A node is a word or two.
    source_.reserve(qsizetype(tree.nodes.size()) * 10);
  }
  void add(StoredStatement& statement);
  QString take() { return std::move(source_); }
  // False when a time constant of it says less than the code.
  bool isExact() const { return exact_; }

 private:
  void word(QStringView text);
  void word(QLatin1StringView text);
  void text(QStringView text);
  void remark(QStringView text);
  void modifier(Node::Modifier modifier);
  void blank() {
    if (!layout_->isKnown()) blankDue_ = true;
  }
  void expression(int index);
  void plain(int index);
  void constant(int index);
  void chain(const Node& node);
  void call(int index);
  void place();
  void separate(char16_t first);
  bool isOneWord(const StoredStatement& statement) const;

  const Tree& tree_;
  const std::vector<Spelling>& spellings_;
  const Environment& environment_;
  QString source_;
  LayoutReader* layout_ = nullptr;
  int word_ = 0;
  qsizetype wordStart_ = 0;  // of the last word in the source
  bool blankDue_ = false;
  bool exact_ = true;
};

}  // namespace lens::formula
