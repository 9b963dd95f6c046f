// Profile documents: settings of a database or of a user, found by their name and shown in no view.
#pragma once

#include <QString>
#include <QVector>

#include "embedded/store/database.h"

namespace lens {

struct Profile {
  NoteId id;
  QString name;  // "$Name", see format/profile_name.h
};

// In order of note ID. Costs one look at the item "$Name" of each document: the others are not unpacked.
QVector<Profile> profilesOf(const Database& database);
// Whether a profile's "$Name" is that of a profile so called, for whatever user. Without regard to case.
bool isProfileCalled(QStringView name, QStringView profile);

}  // namespace lens
