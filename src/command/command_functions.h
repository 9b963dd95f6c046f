// The commands, one function each: what it does stands beside its name in the table (command_table.cpp). A
// function gives one of the exit codes Done and Found, and raises a RuntimeError for everything that goes
// wrong.
#pragma once

#include "command/command_call.h"

namespace lens {

int listDatabases(CommandCall& call);
int listDocuments(CommandCall& call);
int showDocument(CommandCall& call);
int listItems(CommandCall& call);
int importFiles(CommandCall& call);
int exportDocuments(CommandCall& call);
int setItem(CommandCall& call);
int evaluateFormula(CommandCall& call);
int checkFormula(CommandCall& call);
int compareTwoDatabases(CommandCall& call);
int listAttachments(CommandCall& call);
int checkDatabase(CommandCall& call);
int listFormulas(CommandCall& call);
int readRealDatabase(CommandCall& call);

}  // namespace lens
