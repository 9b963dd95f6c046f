// The children of the kinds of design elements, made of the items of a note.
#pragma once

#include "embedded/dxl/export/design_content.h"

namespace lens {

// Columns of views and folders, from "$ViewFormat" and the columns that an import kept.
void addViewContent(DesignContent& content, const QStringList& keptColumns);
// Trigger, schedule, document set and code of an agent; what an import kept of them is among the content.
void addAgentContent(DesignContent& content, const QStringList& keptSchedules);
// The text of a form with its fields, or the one field of a shared field.
void addFormContent(DesignContent& content, const QVector<Item>& kept, const Item& body);
// The bytes of a picture, file or style sheet, and the scripts of a library.
void addResourceContent(DesignContent& content);
void addLibraryContent(DesignContent& content);

// Whether a record of the note has a formula as source text.
bool hasSourceInViewFormat(const Note& note);
bool hasSourceInAction(const Note& note);
bool hasSourceInBody(const Note& note);

}  // namespace lens
