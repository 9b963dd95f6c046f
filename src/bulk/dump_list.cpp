#include "bulk/dump_list.h"

#include "host/dump_file.h"
#include "host/paths.h"
#include "host/profile_file.h"
#include "notes/code_page.h"
#include "notes/literals.h"
#include "shell/exact_texts.h"

namespace lens {

DumpList::DumpList(ReplicDesk& desk) : desk_(desk) {
  desk_.window.cmdPrint->click = [this] { cmdPrint_Click(); };
}

void DumpList::cmdPrint_Click() {
  try {
    const QString path = completedPath();
    DumpFile file(path);
    file.write(chosenRows());
    if (openFile) openFile(path);
  } catch (const RuntimeError& error) {
    desk_.host.messageBox(error.description() + exact::kInLineColon, box::Critical, u"cmdPrint"_s);
  }
}

QString DumpList::completedPath() {
  TextBox& box = *desk_.window.txtListToPrint;
  if (extensionOf(box.text()).isEmpty()) box.setText(box.text() + u".txt");
  return typedPath(box.text());
}

QStringList DumpList::chosenRows() const {
  const FrmReplic& window = desk_.window;
  const ListBox* const lists[] = {window.lstDBNames, window.lstViewNames, window.lstAgentNames};
  QStringList rows;
  for (int choice = 0; choice < 3; ++choice) {
    if (!window.Opt[choice]->value()) continue;
    // A name may hold line ends; its row stays one line.
    for (int row = 0; row < lists[choice]->listCount(); ++row)
      rows += fromCodePage(asOneLine(toCodePage(lists[choice]->list(row))));
  }
  return rows;
}

}  // namespace lens
