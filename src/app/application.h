// The application: builds the windows and connects every subsystem to them, in order. What a button
// does is found in the subsystem, under the procedure's name.
#pragma once

#include <functional>
#include <memory>

#include "bulk/replic_tool.h"
#include "design/database_picker.h"
#include "design/deletion.h"
#include "design/design_copy.h"
#include "design/design_docs.h"
#include "design/design_list.h"
#include "design/field_dump.h"
#include "design/field_types.h"
#include "design/formula_tools.h"
#include "design/profiles.h"
#include "editing/collection_engine.h"
#include "editing/content_box.h"
#include "editing/field_addition.h"
#include "editing/field_overwriting.h"
#include "editing/file_pane.h"
#include "editing/search_replace.h"
#include "host/host.h"
#include "inspector/agent_info.h"
#include "inspector/database_properties.h"
#include "inspector/document_capture.h"
#include "inspector/field_viewer.h"
#include "lookup/help_lookup.h"
#include "notes/bridge.h"
#include "notes/capi.h"
#include "shell/database_lists.h"
#include "shell/desk.h"
#include "shell/form1.h"
#include "shell/form1_lifecycle.h"
#include "shell/globals.h"
#include "shell/low_level_reading.h"
#include "shell/routines.h"
#include "shell/server_lists.h"
#include "shell/session_routines.h"
#include "shell/window_layout.h"
#include "tools/host_tools.h"
#include "tools/remote_console.h"

namespace lens {

class Application {
 public:
  // The source tells the user which side of the doors is in use.
  Application(Gateway& notes, CApi& api, Host& host, const QString& source);

  // Runs the load step, then shows the main window, as high as the screen leaves room for.
  void start();
  // Puts the main window where it was at an earlier start; false where that is not known.
  std::function<bool(QWidget&)> restorePlace;

  // Windows beside the main window are made when they are first asked for, so that the start need not wait.
  ReplicTool& bulk();
  DesignCopy& designCopy();
  DatabasePicker& databasePicker();
  void cmdCMRcoll_Click();

  Form1 form;
  Globals state;
  Routines routines;
  SessionRoutines sessions;
  ServerLists servers;
  DatabaseLists databases;
  WindowLayout layout;
  Desk desk;
  Form1Lifecycle lifecycle;
  DocumentCapture capture;
  LowLevelReading lowLevel;
  AgentInfo agentInfo;
  FieldViewer viewer;
  DatabaseProperties properties;
  FieldAddition addition;
  FieldOverwriting overwriting;
  SearchReplace searchReplace;
  ContentBox contentBox;
  CollectionEngine collection;
  FilePane filePane;
  DesignList designs;
  DesignDocs designDocs;
  Profiles profiles;
  Deletion deletion;
  FieldTypes fieldTypes;
  FieldDump fieldDump;
  FormulaTools formulaTools;
  HelpLookup helpLookup;
  RemoteConsole remoteConsole;
  HostTools hostTools;

 private:
  void restoreSize();

  Gateway& notes_;
  Host& host_;
  std::unique_ptr<ReplicTool> bulk_;
  std::unique_ptr<DesignCopy> designCopy_;
  std::unique_ptr<DatabasePicker> databasePicker_;
};

// Shows what no procedure handled as "Run-time error 'N':" and its description.
void installUntrappedReport(Host& host);

}  // namespace lens
