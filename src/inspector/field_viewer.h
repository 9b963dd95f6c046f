// Shows one item of the current document, and lists the items of the document that a row of idList
// names. It changes no document.
#pragma once

#include <QString>

#include "inspector/agent_info.h"
#include "notes/numbers.h"
#include "shell/desk.h"
#include "shell/error_modes.h"
#include "shell/low_level_reading.h"

namespace lens {

class FieldViewer {
 public:
  FieldViewer(Desk& desk, LowLevelReading& lowLevel, AgentInfo& agentInfo);

  void fldList_Click();
  void cmdidList_Click();

 private:
  enum class Special { No, Shown, LeaveAtOnce };
  Special showSpecialItem(Continue& step, const QString& name, const NotesItem& item);
  void showFlags(Continue& step, const NotesItem& item);
  void showItem(Continue& step, const QString& name, const NotesItem& item);
  QString valuesAsText(Continue& step, const QString& name);
  QString mimeText(Continue& step);
  void markSearchText(Continue& step);
  Int16 nextHit(const QString& content, const QString& wanted, qsizetype from) const;
  void showTypeSentence(Continue& step, const NotesItem& item);
  void endOfClick();

  void takeDocument(const QString& id);
  void listItems(const QString& designName);
  QString firstValueText(const NotesItem& item, const QString& name) const;
  QString showSelectionFormula(const NotesItem& item, const QString& name, const QString& designName);
  void showBody();

  Desk& desk_;
  LowLevelReading& lowLevel_;
  AgentInfo& agentInfo_;
};

}  // namespace lens
