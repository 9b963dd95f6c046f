// Giving room back that a database's file no longer needs.
#pragma once

#include "embedded/store/database.h"

namespace lens {

// Objects that no live note refers to go, and the file shrinks to what is in it. Returns the bytes saved.
// Takes the file for itself meanwhile: raises InUse while another program or thread has it open, or while
// this one is in the middle of a change or a listing, and nothing is changed then. Stays whole if it is cut
// short at any moment. Temporary tables of the connection are lost.
qint64 compact(Database& database);

}  // namespace lens
