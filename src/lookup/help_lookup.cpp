#include "lookup/help_lookup.h"

#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/row_texts.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

const QString kFileName = u"designer.nsf"_s;

// Items and values of the help as its release has them.
const QString kFunctions =
    u"SELECT TopicType != \"F1only\" & @Begins(Subject;\"@\") & TopicType = \"About\""_s;
const QString kScript =
    u"SELECT TopicType != \"F1only\" & TopicType = \"About\" & @Left(_Parent;14) = \"LSAZ_CHAPTER_7\""_s;
const QString kJava =
    u"SELECT TopicType != \"F1only\" & TopicType = \"About\" & @Left(_Parent;10) = \"H_10_NOTES\""_s;

void forEachDocument(const NotesDocumentCollection& documents,
                     const std::function<void(const NotesDocument&)>& use) {
  NotesDocument document = documents.firstDocument();
  while (!document.isNothing()) {
    use(document);
    document = documents.nextDocument(document);
  }
}

}  // namespace

HelpLookup::HelpLookup(Desk& desk) : desk_(desk) {
  desk_.form.cmdFuncList->click = [this] { cmdFuncList_Click(); };
  desk_.form.cmdLS->click = [this] { cmdLS_Click(); };
  desk_.form.cmdJava->click = [this] { cmdJava_Click(); };
  desk_.form.cmdHLP->click = [this] { cmdHLP_Click(); };
}

void HelpLookup::cmdFuncList_Click() {
  lookByFormula(kFunctions);
}

void HelpLookup::cmdLS_Click() {
  lookByFormula(kScript);
}

void HelpLookup::cmdJava_Click() {
  lookByFormula(kJava);
}

void HelpLookup::cmdHLP_Click() {
  look([this](const NotesDatabase& help) { return help.fullTextSearch(desk_.form.txtSearch->text(), 0); });
}

void HelpLookup::lookByFormula(const QString& formula) {
  look([&](const NotesDatabase& help) { return help.search(formula, 0); });
}

// Without a hit the old rows stay and are counted.
void HelpLookup::look(const Selection& select) {
  if (desk_.state.gSession.isNothing()) return;
  const NotesDatabase help = findHelp();
  if (help.isNothing()) return;
  const NotesDocumentCollection topics = select(help);
  if (!topics.isNothing()) {
    if (topics.count() > 0) listTopics(topics);
    desk_.form.lblCounter->setText(QString::number(Int16(desk_.form.idList->listCount())));
  }
  desk_.host.setPointer(pointer::Default);
}

// The first file whose path holds the name, in a subdirectory as well; it is opened locally even where the
// directory of a server told of it.
NotesDatabase HelpLookup::findHelp() {
  const NotesDbDirectory directory = desk_.state.gSession.dbDirectory(desk_.state.gServer);
  NotesDatabase file = directory.firstDatabase(NotesDbDirectory::kDatabasesAndTemplates);
  while (!file.isNothing()) {
    const QString path = file.filePath();
    if (path.toLower().contains(kFileName)) {
      const NotesDatabase help = desk_.state.gSession.database(QString(), path);
      desk_.state.gDb = help;
      return help;
    }
    file = directory.nextDatabase();
  }
  return {};
}

// The width of the column is known only when all subjects have been seen.
void HelpLookup::listTopics(const NotesDocumentCollection& topics) {
  desk_.form.idList->clear();
  desk_.host.setPointer(pointer::Hourglass);
  qsizetype width = 0;
  forEachDocument(topics, [&](const NotesDocument& topic) { width = qMax(width, subjectOf(topic).size()); });
  forEachDocument(topics, [&](const NotesDocument& topic) {
    const QString id = eightDigits(topic.noteId());
    desk_.form.idList->addItem(subjectOf(topic).leftJustified(width) + kIdMark + id);
  });
}

QString HelpLookup::subjectOf(const NotesDocument& topic) {
  const Value values = topic.itemValue(u"Subject"_s);
  return textOf(values.at(0), desk_.host.regional());
}

}  // namespace lens
