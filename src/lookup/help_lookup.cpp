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

HelpLookup::HelpLookup(Form1& form, Globals& state, Host& host) : form_(form), state_(state), host_(host) {
  form_.cmdFuncList->click = [this] { cmdFuncList_Click(); };
  form_.cmdLS->click = [this] { cmdLS_Click(); };
  form_.cmdJava->click = [this] { cmdJava_Click(); };
  form_.cmdHLP->click = [this] { cmdHLP_Click(); };
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
  look([this](const NotesDatabase& help) { return help.fullTextSearch(form_.txtSearch->text(), 0); });
}

void HelpLookup::lookByFormula(const QString& formula) {
  look([&](const NotesDatabase& help) { return help.search(formula, 0); });
}

// Without a hit the old rows stay and are counted.
void HelpLookup::look(const Selection& select) {
  if (state_.gSession.isNothing()) return;
  const NotesDatabase help = findHelp();
  if (help.isNothing()) return;
  const NotesDocumentCollection topics = select(help);
  if (!topics.isNothing()) {
    if (topics.count() > 0) listTopics(topics);
    form_.lblCounter->setText(QString::number(Int16(form_.idList->listCount())));
  }
  host_.setPointer(pointer::Default);
}

// The first file whose path holds the name, in a subdirectory as well; it is opened locally even where the
// directory of a server told of it.
NotesDatabase HelpLookup::findHelp() {
  const NotesDbDirectory directory = state_.gSession.dbDirectory(state_.gServer);
  NotesDatabase file = directory.firstDatabase(NotesDbDirectory::kDatabasesAndTemplates);
  while (!file.isNothing()) {
    const QString path = file.filePath();
    if (path.toLower().contains(kFileName)) {
      const NotesDatabase help = state_.gSession.database(QString(), path);
      state_.gDb = help;
      return help;
    }
    file = directory.nextDatabase();
  }
  return {};
}

// The width of the column is known only when all subjects have been seen.
void HelpLookup::listTopics(const NotesDocumentCollection& topics) {
  form_.idList->clear();
  host_.setPointer(pointer::Hourglass);
  qsizetype width = 0;
  forEachDocument(topics, [&](const NotesDocument& topic) { width = qMax(width, subjectOf(topic).size()); });
  forEachDocument(topics, [&](const NotesDocument& topic) {
    const QString id = eightDigits(topic.noteId());
    form_.idList->addItem(subjectOf(topic).leftJustified(width) + kIdMark + id);
  });
}

QString HelpLookup::subjectOf(const NotesDocument& topic) {
  const Value values = topic.itemValue(u"Subject"_s);
  return textOf(values.at(0), host_.regional());
}

}  // namespace lens
