// A workspace with a real database in its data directory.
#pragma once

#include <QDir>
#include <QTemporaryDir>

#include "embedded/nsf/nsf_test.h"
#include "embedded/workspace/workspace.h"

namespace lens {

class RealDatabasesTest : public testing::Test {
 protected:
  RealDatabasesTest() {
    workspace = Workspace::open(directory.filePath(u"workspace"_s), Regional(QLocale::c()));
    described = made::sampleDatabase(&ids);
    path = workspace->dataDirectory() + u"/real.nsf"_s;
    write(path, described);
  }
  static void write(const QString& file, const made::MadeDatabase& database) {
    writeFile(file, made::makeFile(database).bytes);
  }
  std::shared_ptr<Database> open(const QString& name = u"real.nsf"_s) {
    return workspace->database({}, name);
  }
  std::unique_ptr<NsfDatabase> source() {
    return std::make_unique<NsfDatabase>(std::make_unique<NsfBytesSource>(contentOf(path)));
  }
  QStringList copies() const {
    return QDir(workspace->directory() + u"/cache/nsf"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
  }

  QTemporaryDir directory;
  std::shared_ptr<Workspace> workspace;
  made::SampleIds ids;
  made::MadeDatabase described;
  QString path;
};

}  // namespace lens
