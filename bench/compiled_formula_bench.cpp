// The platform's compiled form of a formula: reading it against parsing the same source, writing it against
// compiling the same source to a program of our own.
#include <benchmark/benchmark.h>

#include "embedded/formula/compiled/compiled_formula.h"
#include "embedded/formula/compiled/compiled_writer.h"
#include "embedded/formula/formula.h"
#include "ratio.h"

namespace lens::bench {
namespace {
using namespace Qt::StringLiterals;
using namespace lens::formula;

const Ratio kReading("compiled formula, reading beside parsing", "BM_CompiledRead", "BM_CompiledParsePeer",
                     1.5);
const Ratio kSelection("compiled selection, reading beside parsing", "BM_CompiledReadSelection",
                       "BM_CompiledParseSelectionPeer", 1.5);
const Ratio kWriting("compiled formula, writing beside compiling", "BM_CompiledWrite",
                     "BM_CompiledCompilePeer", 1.5);

const Environment& machine() {
  static const MachineEnvironment environment;
  return environment;
}

// What computed fields of forms look like, about 10 KB of it.
QString field() {
  QString source;
  for (int i = 0; i < 60; ++i)
    source +=
        u"REM {Step %1: the name of the one who asks};\n"
        "who%1 := @Name([Abbreviate]; @If(Requester%1 = \"\"; @UserName; Requester%1));\n"
        "FIELD Status%1 := @If(Total > %1 * 100; \"large: \" + who%1; Total > 10; \"medium\"; "
        "(Total - 1) > 0 & !@IsNewDoc; @Trim(@Left(Subject; \" \") : \"rest\"); \"none\");\n"_s.arg(i);
  return source + u"who1"_s;
}

QString selection() {
  return u"SELECT (Form = \"Memo\" : \"Reply\" & @IsAvailable(PostedDate)) & !@Contains(Subject; \"draft\")"_s;
}

void parseSource(benchmark::State& state, const QString& source) {
  if (parse(source, machine()).error.reason != 0) return state.SkipWithError("the formula is wrong");
  for (auto _ : state) benchmark::DoNotOptimize(parse(source, machine()));
  state.SetBytesProcessed(state.iterations() * source.size());
}

void readBytes(benchmark::State& state, const QString& source) {
  const QByteArray bytes = writeCompiled(source, machine()).bytes;
  if (readCompiled(bytes, machine()).source != source) return state.SkipWithError("it is read as another");
  for (auto _ : state) benchmark::DoNotOptimize(readCompiled(bytes, machine()));
  state.SetBytesProcessed(state.iterations() * source.size());
}

void BM_CompiledRead(benchmark::State& state) {
  readBytes(state, field());
}
BENCHMARK(BM_CompiledRead)->Unit(benchmark::kMicrosecond);

void BM_CompiledParsePeer(benchmark::State& state) {
  parseSource(state, field());
}
BENCHMARK(BM_CompiledParsePeer)->Unit(benchmark::kMicrosecond);

void BM_CompiledReadSelection(benchmark::State& state) {
  readBytes(state, selection());
}
BENCHMARK(BM_CompiledReadSelection);

void BM_CompiledParseSelectionPeer(benchmark::State& state) {
  parseSource(state, selection());
}
BENCHMARK(BM_CompiledParseSelectionPeer);

void BM_CompiledWrite(benchmark::State& state) {
  const QString source = field();
  if (writeCompiled(source, machine()).bytes.isEmpty()) return state.SkipWithError("it is not written");
  for (auto _ : state) benchmark::DoNotOptimize(writeCompiled(source, machine()));
  state.SetBytesProcessed(state.iterations() * source.size());
}
BENCHMARK(BM_CompiledWrite)->Unit(benchmark::kMicrosecond);

void BM_CompiledCompilePeer(benchmark::State& state) {
  const QString source = field();
  if (!compile(source, {&machine()})) return state.SkipWithError("the formula is wrong");
  for (auto _ : state) benchmark::DoNotOptimize(compile(source, {&machine()}));
  state.SetBytesProcessed(state.iterations() * source.size());
}
BENCHMARK(BM_CompiledCompilePeer)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace lens::bench
