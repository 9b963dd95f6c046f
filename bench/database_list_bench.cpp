// The bulk tool's list of databases by mask, at growing numbers of files, beside the file system's own walk
// with the same paths put in order.
#include <benchmark/benchmark.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <algorithm>

#include "desk.h"
#include "ratio.h"

namespace lens::bench {
namespace {

const Ratio kListing("list of 10,000 databases beside 4 times 2,500", "BM_ListDatabases/10000",
                     "BM_ListDatabasesFourTimes/2500", 1.3);
const Ratio kWalk("list of 10,000 databases beside a walk over the files", "BM_ListDatabases/10000",
                  "BM_WalkFiles/10000");

constexpr int kInOneFolder = 100;

// So many files that are named like databases, half of which the mask lets through.
struct Databases : Desk {
  explicit Databases(int count) {
    const QString data = workspace->dataDirectory();
    for (int i = 0; i < count; ++i) {
      const QString folder = data + QStringLiteral("/apps%1").arg(i / kInOneFolder);
      if (i % kInOneFolder == 0) QDir().mkpath(folder);
      QFile file(
          folder +
          QStringLiteral("/%1%2.nsf").arg(i % 2 ? QStringLiteral("crm") : QStringLiteral("mail")).arg(i));
      if (!file.open(QIODevice::WriteOnly)) std::abort();
    }
  }
  ReplicTool& openTool() {
    start(save({}));
    application->cmdCMRcoll_Click();
    application->bulk().window.txtMaskSorce->setText(QStringLiteral("CRM"));
    return application->bulk();
  }
};

void list(benchmark::State& state, int times) {
  Databases databases{int(state.range(0))};
  ReplicTool& tool = databases.openTool();
  for (auto _ : state)
    for (int i = 0; i < times; ++i) tool.window.cmdExpand->raiseClick();
  if (tool.window.lstDBNames->listCount() != state.range(0) / 2) state.SkipWithError("rows are missing");
}

void BM_ListDatabases(benchmark::State& state) {
  list(state, 1);
}
void BM_ListDatabasesFourTimes(benchmark::State& state) {
  list(state, 4);
}
BENCHMARK(BM_ListDatabases)->Arg(2500)->Arg(5000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListDatabasesFourTimes)->Arg(2500)->Unit(benchmark::kMillisecond);

void BM_WalkFiles(benchmark::State& state) {
  const Databases databases{int(state.range(0))};
  const QString data = databases.workspace->dataDirectory();
  for (auto _ : state) {
    QStringList paths;
    QDirIterator files(data, {QStringLiteral("*.nsf")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) paths += files.next();
    std::sort(paths.begin(), paths.end());
    benchmark::DoNotOptimize(paths);
  }
}
BENCHMARK(BM_WalkFiles)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lens::bench
