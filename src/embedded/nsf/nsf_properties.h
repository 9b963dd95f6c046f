// Properties of a real database that are no notes, as its header has them.
#pragma once

#include <QString>

#include "embedded/format/timedate.h"

namespace lens {

struct NsfProperties {
  QString title, categories, templateName, inheritsFrom;
  TimeDate databaseId, replicaId;
  quint16 databaseClass = 0, flags = 0, replicationFlags = 0, cutoffDays = 0;
  TimeDate lastChange, lastDataChange, lastDesignChange, cutoff, nextPurge;
};

}  // namespace lens
