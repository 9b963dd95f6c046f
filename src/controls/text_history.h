// What the user did to a text, so that it can be undone and done again.
#pragma once

#include <QString>
#include <QVector>

namespace lens {

class TextHistory {
 public:
  // At a position one text took the place of another.
  struct Step {
    int position = 0;
    QString removed, added;
    bool goesOn = false;  // undone together with the one before it
  };

  // Keeps at most so many UTF-16 units of text; a step that is larger can not be undone, nor can what was
  // done before it.
  explicit TextHistory(qsizetype mostUnits = 8 * 1024 * 1024) : mostUnits_(mostUnits) {}

  // Letters that are typed or taken out one behind the other within a line are one step.
  void record(int position, const QString& removed, const QString& added);
  // The last step belongs to the one before it.
  void joinLast();
  // What comes next is a step of its own.
  void breakStep() { open_ = false; }
  void clear();

  bool canUndo() const { return done_ > 0; }
  bool canRedo() const { return done_ < steps_.size(); }
  // The steps to take back or to do again, in the order in which that is done; none when there are none.
  QVector<Step> undo();
  QVector<Step> redo();

 private:
  bool merge(int position, const QString& removed, const QString& added);
  void dropOldest();

  QVector<Step> steps_;
  qsizetype done_ = 0;  // the steps before this one are done, the others undone
  qsizetype units_ = 0, mostUnits_;
  bool open_ = false;  // the last step may grow
};

}  // namespace lens
