// The check of a formula beside one screen: as it is typed, it has to answer while the screen is drawn once.
#include <benchmark/benchmark.h>

#include <QThread>

#include "desk.h"
#include "ratio.h"

namespace lens::bench {
namespace {

// A screen is drawn 60 times a second.
constexpr int kRefreshMicroseconds = 16'667;

const Ratio kCheck("check of a formula of 10 KB beside one screen refresh", "BM_FormulaCheck/10",
                   "BM_ScreenRefresh", 1.0);
const Ratio kFault("check of a formula of 10 KB that ends in a mistake, beside one screen refresh",
                   "BM_FormulaCheckOfMistake/10", "BM_ScreenRefresh", 1.0);
QString formulaOf(qint64 kilobytes) {
  QString formula;
  for (int i = 0; formula.size() < kilobytes * 1024; ++i)
    formula +=
        QStringLiteral("v%1 := @If(Amount > %1; @UpperCase(@Left(Subject; %1)) + \" above\"; Subject);\r\n")
            .arg(i);
  return formula + QStringLiteral("v0");
}

void check(benchmark::State& state, const QString& formula, bool hasMistake) {
  Desk desk;
  desk.start(desk.save(Note()));
  FormulaTools& tools = desk.application->formulaTools;
  if ((tools.CheckFormula(formula).error != 0) != hasMistake) return state.SkipWithError("another answer");
  for (auto _ : state) benchmark::DoNotOptimize(tools.CheckFormula(formula));
  state.SetBytesProcessed(state.iterations() * formula.size());
}

void BM_FormulaCheck(benchmark::State& state) {
  check(state, formulaOf(state.range(0)), false);
}
void BM_FormulaCheckOfMistake(benchmark::State& state) {
  check(state, formulaOf(state.range(0)) + QStringLiteral(" \"x\""), true);
}
BENCHMARK(BM_FormulaCheck)->Arg(10)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_FormulaCheckOfMistake)->Arg(10)->Unit(benchmark::kMicrosecond)->UseRealTime();

void BM_ScreenRefresh(benchmark::State& state) {
  for (auto _ : state) QThread::usleep(kRefreshMicroseconds);
}
BENCHMARK(BM_ScreenRefresh)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace
}  // namespace lens::bench
