// Start to the first screen beside a bare Qt window, each as a process of its own, and the field list
// at growing sizes.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdlib>
#include <cstring>

#include "app/launcher.h"
#include "desk.h"
#include "first_screen.h"
#include "ratio.h"

namespace lens::bench {
namespace {

const Ratio start("start to first screen", "BM_FirstScreen", "BM_FirstScreenBare", 3.0);
const Ratio capture("capture of 5,000 items beside 4 times 1,250", "BM_Capture/5000",
                    "BM_CaptureFourTimes/1250", 1.3);
const Ratio viewing("view of 5,000 items beside 4 times 1,250", "BM_View/5000", "BM_ViewFourTimes/1250", 1.3);

void runChild(benchmark::State& state, const char* which, const QString& workspace) {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
  environment.insert(QStringLiteral("TESSALY_WORKSPACE"), workspace);
  for (auto _ : state) {
    QProcess child;
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--first-screen=%1").arg(QLatin1String(which))});
    if (!child.waitForFinished(30000) || child.exitCode() != 0)
      state.SkipWithError("the child did not show a screen");
  }
}

void BM_FirstScreen(benchmark::State& state) {
  static const QTemporaryDir directory;
  const QString workspace = directory.filePath(QStringLiteral("workspace"));
  // The first start, which fills the samples in, is not the one that counts.
  QProcess first;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
  environment.insert(QStringLiteral("TESSALY_WORKSPACE"), workspace);
  first.setProcessEnvironment(environment);
  first.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--first-screen=lens")});
  first.waitForFinished(30000);
  runChild(state, "lens", workspace);
}
BENCHMARK(BM_FirstScreen)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_FirstScreenBare(benchmark::State& state) {
  runChild(state, "bare", QString());
}
BENCHMARK(BM_FirstScreenBare)->Unit(benchmark::kMillisecond)->UseRealTime();

// A document of so many items is open in the client.
void startWithItems(Desk& desk, int items) {
  Note note;
  for (int i = 0; i < items; ++i)
    note.add(QStringLiteral("Field%1").arg(i), itemflag::Summary,
             textValue(QStringLiteral("value %1").arg(i)));
  desk.start(desk.save(note));
}

void click(benchmark::State& state, Button* Form1::*button, int times) {
  Desk desk;
  startWithItems(desk, int(state.range(0)));
  for (auto _ : state)
    for (int i = 0; i < times; ++i) (desk.form().*button)->raiseClick();
  if (desk.form().fldList->listCount() != state.range(0)) state.SkipWithError("rows are missing");
}

void BM_Capture(benchmark::State& state) {
  click(state, &Form1::cmdGetDoc, 1);
}
void BM_CaptureFourTimes(benchmark::State& state) {
  click(state, &Form1::cmdGetDoc, 4);
}
void BM_View(benchmark::State& state) {
  click(state, &Form1::cmdidList, 1);
}
void BM_ViewFourTimes(benchmark::State& state) {
  click(state, &Form1::cmdidList, 4);
}
BENCHMARK(BM_Capture)->Arg(1250)->Arg(2500)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CaptureFourTimes)->Arg(1250)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_View)->Arg(1250)->Arg(2500)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ViewFourTimes)->Arg(1250)->Unit(benchmark::kMillisecond);

}  // namespace

namespace {

[[noreturn]] void untilDrawn(QWidget& window) {
  QCoreApplication::sendPostedEvents();
  window.repaint();
  std::_Exit(0);
}

}  // namespace

bool ranFirstScreen(int argc, char** argv) {
  if (argc != 2 || std::strncmp(argv[1], "--first-screen=", 15) != 0) return false;
  QApplication application(argc, argv);
  if (std::strcmp(argv[1] + 15, "bare") == 0) {
    QWidget window;
    window.resize(1280, 800);
    window.show();
    untilDrawn(window);
  }
  DesktopHost host;
  Launcher program(host);
  program.start();
  untilDrawn(program.application().form);
}

}  // namespace lens::bench
