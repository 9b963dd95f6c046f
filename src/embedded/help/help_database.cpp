#include "embedded/help/help_database.h"

#include "embedded/help/function_topics.h"
#include "embedded/help/java_topics.h"
#include "embedded/help/script_topics.h"
#include "embedded/help/topic.h"
#include "notes/literals.h"

namespace lens {
namespace {

// A database shows its properties through its icon note.
void addIcon(Database& help) {
  Note icon;
  icon.header.noteClass = noteclass::Icon;
  icon.add(u"$TITLE"_s, itemflag::Summary, textValue(help.info().title));
  icon.add(u"$Flags"_s, itemflag::Summary, textValue(u"n"));
  help.notes().save(icon);
}

// Texts for the help key; a list of functions leaves them out by their type.
void addWindowHelp(Database& help) {
  const auto add = [&](const char16_t* subject, const char16_t* chapter, const char16_t* text) {
    addTopic(help, {QString::fromUtf16(subject),
                    QString::fromUtf16(chapter),
                    QString::fromUtf16(subject),
                    {QString::fromUtf16(text)},
                    u"F1only"_s});
  };
  add(u"@Functions in a window", u"H_FORMULA_FUNCTIONS",
      u"Type a formula; errors are shown with their place.");
  add(u"Script window", u"LSAZ_CHAPTER_7_LANGUAGE", u"Choose an event on the left and write its script.");
  add(u"Java window", u"H_10_NOTES_CLASSES_ATOZ_JAVA", u"Add the files of a Java agent here.");
}

}  // namespace

void fillHelpDatabase(Database& help) {
  Database::Transaction all(help);
  addIcon(help);
  addFunctionTopics(help);
  addScriptTopics(help);
  addJavaTopics(help);
  addWindowHelp(help);
  all.commit();
}

}  // namespace lens
