#include "lookup/help_lookup.h"

#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/row_texts.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

constexpr int kDatabasesAndTemplates = 1246;
const QString kFileName = u"designer.nsf"_s;

// Items and values of the help as its release has them.
const QString kFunctions =
    u"SELECT TopicType != \"F1only\" & @Begins(Subject;\"@\") & TopicType = \"About\""_s;
const QString kScript =
    u"SELECT TopicType != \"F1only\" & TopicType = \"About\" & @Left(_Parent;14) = \"LSAZ_CHAPTER_7\""_s;
const QString kJava =
    u"SELECT TopicType != \"F1only\" & TopicType = \"About\" & @Left(_Parent;10) = \"H_10_NOTES\""_s;

void forEachDocument(const Object& documents, const std::function<void(const Object&)>& use) {
  Object document = documents.call(u"GETFIRSTDOCUMENT"_s).object();
  while (!document.isNothing()) {
    use(document);
    document = documents.call(u"GETNEXTDOCUMENT"_s, document).object();
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
  look([this](const Object& help) { return help.call(u"FTSEARCH"_s, form_.txtSearch->text(), 0).object(); });
}

void HelpLookup::lookByFormula(const QString& formula) {
  look([&](const Object& help) { return help.call(u"SEARCH"_s, formula, Object(), 0).object(); });
}

// Without a hit the old rows stay and are counted.
void HelpLookup::look(const Selection& select) {
  if (state_.gSession.isNothing()) return;
  const Object help = findHelp();
  if (help.isNothing()) return;
  const Object topics = select(help);
  if (!topics.isNothing()) {
    if (topics.get(u"count"_s).number() > 0) listTopics(topics);
    form_.lblCounter->setText(QString::number(Int16(form_.idList->listCount())));
  }
  host_.setPointer(pointer::Default);
}

// The first file whose path holds the name, in a subdirectory as well; it is opened locally even where the
// directory of a server told of it.
Object HelpLookup::findHelp() {
  const Object directory = state_.gSession.call(u"GETDBDIRECTORY"_s, state_.gServer).object();
  Object file = directory.call(u"GETFIRSTDATABASE"_s, kDatabasesAndTemplates).object();
  while (!file.isNothing()) {
    const QString path = file.get(u"FILEPATH"_s).text();
    if (path.toLower().contains(kFileName)) {
      const Object help = state_.gSession.call(u"GETDATABASE"_s, QString(), path).object();
      state_.gDb = help;
      return help;
    }
    file = directory.call(u"GETNEXTDATABASE"_s).object();
  }
  return {};
}

// The width of the column is known only when all subjects have been seen.
void HelpLookup::listTopics(const Object& topics) {
  form_.idList->clear();
  host_.setPointer(pointer::Hourglass);
  qsizetype width = 0;
  forEachDocument(topics, [&](const Object& topic) { width = qMax(width, subjectOf(topic).size()); });
  forEachDocument(topics, [&](const Object& topic) {
    const QString id = eightDigits(topic.get(u"NoteID"_s).text());
    form_.idList->addItem(subjectOf(topic).leftJustified(width) + kIdMark + id);
  });
}

QString HelpLookup::subjectOf(const Object& topic) {
  const Value values = topic.call(u"GETITEMVALUE"_s, u"Subject"_s);
  return textOf(values.at(0), host_.regional());
}

}  // namespace lens
