// The compiled form of a formula, as items and records hold it.
#pragma once

#include <gtest/gtest.h>

#include <QByteArray>

#include "embedded/formula/compiled/compiled_writer.h"
#include "embedded/formula/evaluation_context.h"

namespace lens {

inline QByteArray compiled(QStringView source) {
  const QByteArray bytes = formula::writeCompiled(source, formula::MachineEnvironment()).bytes;
  EXPECT_FALSE(bytes.isEmpty()) << source.toString().toStdString() << " has no compiled form";
  return bytes;
}

}  // namespace lens
