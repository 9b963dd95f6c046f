#include "embedded/help/java_topics.h"

#include "embedded/help/topic.h"

namespace lens {
namespace {

constexpr TopicRow kTopics[] = {
    {u"ACL class", u"ACL", u"The access control list of a database and its levels and roles."},
    {u"ACLEntry class", u"ACLEntry", u"One line of an access control list: a name, a level, roles."},
    {u"Agent class", u"Agent", u"An agent of a database: settings, owner, last run."},
    {u"AgentBase class", u"AgentBase", u"What the main class of a Java agent extends."},
    {u"AgentContext class", u"AgentContext",
     u"What an agent runs in: its database, its documents, the user it runs for."},
    {u"Database class", u"Database", u"A database with its properties, views, documents and design."},
    {u"DateTime class", u"DateTime", u"A date and time with its zone, and arithmetic on it."},
    {u"DbDirectory class", u"DbDirectory", u"The databases of a server or of this machine."},
    {u"Document class", u"Document", u"A document and its items. Changes are written by save."},
    {u"DocumentCollection class", u"DocumentCollection",
     u"Documents that a search found, walked with getFirstDocument and getNextDocument."},
    {u"EmbeddedObject class", u"EmbeddedObject", u"An attachment, an object or a link to an object."},
    {u"Form class", u"Form", u"A form or subform with its fields."},
    {u"Item class", u"Item", u"One item of a document."},
    {u"Log class", u"Log", u"Writes what a program does into a database, a file or a mail."},
    {u"MIMEEntity class", u"MIMEEntity", u"A part of a message: headers, content, and parts within it."},
    {u"Name class", u"Name", u"A user or server name taken apart into its components."},
    {u"NoteCollection class", u"NoteCollection",
     u"Note IDs of documents and design notes, by kind; the start of an export."},
    {u"NotesException class", u"NotesException", u"What every method throws: an error number and its text."},
    {u"NotesFactory class", u"NotesFactory", u"Makes sessions for programs that are no agents."},
    {u"NotesThread class", u"NotesThread", u"A thread that may use local databases."},
    {u"Outline class", u"Outline", u"The entries of an outline and their levels."},
    {u"RichTextItem class", u"RichTextItem", u"An item of styled text; getFormattedText reads it plainly."},
    {u"Session class", u"Session", u"Where every program starts: user, platform, databases."},
    {u"Stream class", u"Stream", u"Bytes or characters from a file or in memory."},
    {u"View class", u"View", u"A view or folder, its rows, and look-ups by key."},
    {u"ViewEntry class", u"ViewEntry", u"A row of a view with its column values."},
    {u"ViewEntryCollection class", u"ViewEntryCollection", u"Rows of a view as they stood when it was made."},
    {u"ViewNavigator class", u"ViewNavigator", u"Moves through the rows of a view by level and category."},
    {u"appendItemValue method", u"Item appendItemValue ( String name , Object value )",
     u"Adds an item, also beside one of the same name."},
    {u"buildCollection method", u"void buildCollection ( )", u"Collects the notes of the chosen kinds."},
    {u"copyToDatabase method", u"Document copyToDatabase ( Database target )",
     u"Copies a document into another database."},
    {u"FTSearch method", u"DocumentCollection FTSearch ( String query , int most )",
     u"Finds documents by words in the full-text index."},
    {u"getDocumentByID method", u"Document getDocumentByID ( String noteID )", u"The note of that note ID."},
    {u"getDocumentByUNID method", u"Document getDocumentByUNID ( String unid )",
     u"The document of that universal ID; throws when there is none."},
    {u"getItemValue method", u"Vector getItemValue ( String name )",
     u"The values of an item; an empty vector without the item."},
    {u"getItemValueString method", u"String getItemValueString ( String name )",
     u"The first value of an item as text."},
    {u"getProfileDocCollection method", u"DocumentCollection getProfileDocCollection ( String profile )",
     u"The profile documents of a name, or all of them."},
    {u"getView method", u"View getView ( String name )", u"The view or folder of that name or alias."},
    {u"recycle method", u"void recycle ( )", u"Frees what an object holds outside of Java."},
    {u"removePermanently method", u"boolean removePermanently ( boolean force )",
     u"Deletes a document without a way back."},
    {u"replaceItemValue method", u"Item replaceItemValue ( String name , Object value )",
     u"Replaces the items of the name by one."},
    {u"run method", u"void run ( )", u"Runs an agent now."},
    {u"save method", u"boolean save ( boolean force , boolean makeResponse )", u"Writes a document."},
    {u"search method", u"DocumentCollection search ( String formula , DateTime since , int most )",
     u"Finds documents by a selection formula."},
};

}  // namespace

void addJavaTopics(Database& help) {
  Database::Transaction all(help);
  addTopics(help, u"H_10_NOTES_CLASSES_ATOZ_JAVA", kTopics, std::size(kTopics));
  all.commit();
}

}  // namespace lens
