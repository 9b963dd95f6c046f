// Asks what an import is to go into, and lists the notes that it would replace there.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QVector>

#include "client/import_offer.h"
#include "client/work_bar.h"
#include "embedded/format/note_id.h"

namespace lens {

class DocumentModel;

class ImportDialog : public QDialog {
  Q_OBJECT

 public:
  ImportDialog(const ImportOffer& offer, QWidget* parent);

  ImportTarget target() const;
  void done(int result) override;

 private:
  void layOut();
  void showTarget();
  void look();
  void showReplaced(const QVector<NoteId>& noteIds);

  ImportOffer offer_;
  QRadioButton* intoOpen_;
  QRadioButton* intoNew_;
  QLineEdit* newPath_;
  QLabel* listLabel_;
  QTableView* list_;
  DocumentModel* replaced_;
  WorkBar* bar_;
  QPushButton* import_;
  bool looked_ = false;
};

}  // namespace lens
