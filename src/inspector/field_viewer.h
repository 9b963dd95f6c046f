// Shows one item of the current document, and lists the items of the document that a row of idList
// names. It changes no document.
#pragma once

#include <QString>

#include "host/host.h"
#include "inspector/agent_info.h"
#include "notes/bridge.h"
#include "notes/numbers.h"
#include "shell/error_modes.h"
#include "shell/form1.h"
#include "shell/globals.h"
#include "shell/low_level_reading.h"
#include "shell/routines.h"
#include "shell/session_routines.h"
#include "shell/window_layout.h"

namespace lens {

class FieldViewer {
 public:
  FieldViewer(Form1& form, Globals& state, Host& host, Routines& routines, SessionRoutines& sessions,
              LowLevelReading& lowLevel, WindowLayout& layout, AgentInfo& agentInfo);

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

  Form1& form_;
  Globals& state_;
  Host& host_;
  Routines& routines_;
  SessionRoutines& sessions_;
  LowLevelReading& lowLevel_;
  WindowLayout& layout_;
  AgentInfo& agentInfo_;
};

}  // namespace lens
