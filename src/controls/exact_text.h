// A text kept exactly as it was given, and where its positions are in a document of lines.
//
// A line ends with CR LF, CR CR LF, a lone CR or a lone LF. In the document each of them is one
// character. Every other character is one in both.
#pragma once

#include <QString>
#include <vector>

namespace lens {

// Positions count UTF-16 units from 0.
class ExactText {
 public:
  const QString& text() const { return text_; }
  int length() const { return int(text_.size()); }
  void setText(const QString& text);
  void replace(int position, int removed, const QString& added);

  int lineEndCount() const { return int(ends_.size()); }
  int documentLength() const { return toDocument(length()); }
  // A position inside a line end counts as the one before it.
  int toDocument(int position) const;
  int fromDocument(int documentPosition) const;
  bool isInsideLineEnd(int position) const;
  // The line of a position, from 0.
  int lineOf(int position) const;

  // What the document shows for a part of the text: one LF for each line end, and a stand-in for
  // characters that a document would take as structure.
  QString shown(int position, int length) const;

 private:
  struct LineEnd {
    int position;
    int length;
    int shift;  // how far document positions stay behind, before this line end
  };
  void findLineEnds();
  // How many line ends begin before the position.
  std::size_t endsBefore(int position) const;

  QString text_;
  std::vector<LineEnd> ends_;
  bool allSingle_ = true;  // positions are the same on both sides
};

}  // namespace lens
