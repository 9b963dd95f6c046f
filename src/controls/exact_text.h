// A text kept exactly as it was given, and where its positions are in a document of lines.
//
// A line ends with CR LF, CR CR LF, a lone CR or a lone LF. In the document each of them is one
// character. Every other character is one in both.
#pragma once

#include <QString>
#include <vector>

namespace lens {

// Positions count UTF-16 units from 0. What is kept beside the text is small, also where it is all line ends:
// a mark now and then, from which line ends are counted.
class ExactText {
 public:
  const QString& text() const { return text_; }
  int length() const { return int(text_.size()); }
  void setText(const QString& text);
  void replace(int position, int removed, const QString& added);

  int lineEndCount() const { return end_.lineEnds; }
  int documentLength() const { return end_.document(); }
  // A position inside a line end counts as the one before it.
  int toDocument(int position) const;
  int fromDocument(int documentPosition) const;
  bool isInsideLineEnd(int position) const;
  // The line of a position, from 0.
  int lineOf(int position) const;
  // Where a line begins; the end of the text for a line behind the last.
  int lineStart(int line) const;

  // What the document shows for a part of the text: one LF for each line end, and a stand-in for
  // characters that a document would take as structure.
  QString shown(int position, int length) const;

 private:
  // A place between characters and line ends, never inside of one.
  struct Place {
    int position = 0;
    int lineEnds = 0;  // that end at it or before
    int shift = 0;     // how far the document stays behind
    int document() const { return position - shift; }
  };
  // Takes the place over the next character or line end.
  void stepOver(Place& place) const;
  // The last place that is not behind what is asked for.
  template <class IsBehind>
  Place lastPlace(IsBehind isBehind) const;
  Place placeAt(int position) const;
  // Sets the marks from a position on anew.
  void markFrom(int position);

  QString text_;
  std::vector<Place> marks_{Place{}};  // the first at the beginning, the others far apart
  Place end_;
  bool allSingle_ = true;  // positions are the same on both sides
};

}  // namespace lens
