// DXL from the fuzzer: whatever an import takes must come out of an export as DXL that gives the same notes.
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

#include "check.h"
#include "embedded/dxl/dxl_exporter.h"
#include "embedded/dxl/dxl_importer.h"
#include "embedded/dxl/export/database_compare.h"

namespace lens {
namespace {

// Made once; what a run brings is undone.
struct World {
  QTemporaryDir folder;
  std::shared_ptr<Database> source = create("source.nsf"), target = create("target.nsf");

  std::shared_ptr<Database> create(const char* name) {
    return Database::create(folder.filePath(QLatin1String(name)), {});
  }
  QString take(Database& database, const char* name, QByteArrayView dxl) {
    const QString path = folder.filePath(QLatin1String(name));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(dxl.data(), dxl.size()) != dxl.size()) std::abort();
    file.close();
    ImportReport report;
    DxlImporter(database).importFile(path, report);
    return report.failed.join(QLatin1Char('\n'));
  }
};

QByteArray exported(const Database& database) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  exportDatabase(database, buffer);
  return buffer.data();
}

void checkNone(const QString& fault, const QByteArray& dxl) {
  check(fault.isEmpty(), fault.toUtf8().constData(), QString::fromUtf8(dxl));
}

void tryDxl(QByteArrayView bytes) {
  static World world;
  Database::Transaction one(*world.source), two(*world.target);
  if (!world.take(*world.source, "in.dxl", bytes).isEmpty()) return;
  const QByteArray dxl = exported(*world.source);
  checkNone(world.take(*world.target, "out.dxl", dxl), dxl);
  checkNone(difference(*world.source, *world.target), dxl);
  checkNone(exported(*world.source) == dxl ? QString() : QStringLiteral("two exports differ"), dxl);
}

}  // namespace
}  // namespace lens

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  lens::tryDxl(QByteArrayView(data, qsizetype(size)));
  return 0;
}
