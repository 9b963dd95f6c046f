// Two databases as a list of what they differ in, and two documents side by side.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QWidget>
#include <memory>
#include <optional>

#include "client/compare_models.h"
#include "controls/rich_text_box.h"
#include "embedded/workspace/workspace.h"

namespace lens {

class CompareWindow : public QWidget {
  Q_OBJECT

 public:
  CompareWindow(std::shared_ptr<Workspace> workspace, QWidget* parent);

  // A document and where it lies.
  struct Side {
    DatabasePlace place;
    std::shared_ptr<Database> database;
    NoteId note;  // null for the database as a whole
  };
  // Offers all databases to be compared, this one as the first.
  void offer(const std::optional<DatabasePlace>& first);
  // Lists what was found between two databases.
  void showDifferences(const Side& first, const Side& second, QVector<NoteDifference> found, bool finished);
  // Shows two documents side by side. Raises what reading them raises.
  void showDocuments(const Side& first, const Side& second);

  // What there is to say instead of a result.
  void tell(const QString& text) { summary_->setText(text); }

  std::optional<DatabasePlace> chosen(const QComboBox& box) const;
  QComboBox& first() { return *first_; }
  QComboBox& second() { return *second_; }

 Q_SIGNALS:
  // The two databases that are chosen are to be compared.
  void compareAsked();
  void documentAsked(const DatabasePlace& place, NoteId note);
  void csvAsked(QAbstractItemView* list);
  void copyAsked(QAbstractItemView* list);

 private:
  QWidget* makeHead();
  QWidget* makeTables();
  QWidget* makeFoot();
  void showRow(int row);
  void showPairs(const Note& first, const Note& second);
  void showValues(int row);
  QAbstractItemView* currentTable() const;

  std::shared_ptr<Workspace> workspace_;
  QVector<DatabasePlace> places_;  // as the boxes list them
  QWidget* head_;
  QComboBox* first_;
  QComboBox* second_;
  QTableView* differences_;
  QWidget* differencePane_;
  QTableView* items_;
  RichTextBox* firstValue_;
  RichTextBox* secondValue_;
  QLabel* summary_;
  DifferenceModel* found_;
  ItemPairModel* pairs_;
  Side firstSide_, secondSide_;
};

}  // namespace lens
