// Formula sources from the fuzzer: the compiler must place its errors inside the source, what it accepts
// must survive printing, and what runs must end within its limits.

#include "check.h"
#include "embedded/formula/support/test_context.h"
#include "embedded/formula/tree.h"

namespace lens::formula {
namespace {

constexpr Limits kSmall{200'000, 8 * 1024 * 1024, 16};

void checkPlace(const CompileError& error, QStringView source) {
  check(error.offset >= 0 && error.length >= 0 && error.offset + error.length <= source.size(),
        "The error lies outside the source.", source);
  check(!faultText(error.reason).isEmpty(), "The error has no text.", source);
  CompileError again = error;
  findLine(source, again);
  check(again.line == error.line && again.column == error.column, "Line and offset disagree.", source);
}

// Values that differ from run to run, or that end by a limit at another place.
bool comparable(const Tree& tree, const Outcome& outcome) {
  for (const Node& node : tree.nodes) {
    if (!node.function) continue;
    const QLatin1String name(node.function->name);
    for (const char* random : {"@Random", "@Unique", "@HashPassword", "@Password", "@Eval"})
      if (name == QLatin1String(random)) return false;
  }
  const FaultCode code = outcome.value.isError() ? outcome.value.errorCode() : 0;
  return code != fault::TooMuchTime && code != fault::TooMuchMemory;
}

Outcome runInContext(const Compiled& compiled) {
  TestContext world;
  return Evaluation(compiled.formula, world.environment, kSmall).run(&world.document, &world.database);
}

void checkPrinted(const Tree& tree, const Compiled& compiled, QStringView source) {
  const TestContext world;
  const QString printed = print(tree, world.environment);
  const Parsed parsed = parse(printed, world.environment);
  // The parentheses that a print needs may go one level beyond what is allowed.
  if (parsed.error.reason == fault::TooDeep) return;
  check(parsed.error.reason == 0, "The print does not read back.", printed);
  check(sameTree(tree, parsed.tree), "The print reads back as another formula.", printed);
  const Compiled again = compile(printed, {&world.environment});
  check(bool(again), "The print does not compile.", printed);
  const Outcome first = runInContext(compiled), second = runInContext(again);
  if (!comparable(tree, first) || !comparable(tree, second)) return;
  check(first.value.identical(second.value) && first.matches == second.matches,
        "The print gives another value.", source);
}

void tryFormula(const QString& source) {
  TestContext world;
  const Compiled compiled = compile(source, {&world.environment});
  if (!compiled) {
    checkPlace(compiled.error, source);
    return;
  }
  const Parsed parsed = parse(source, world.environment);
  check(parsed.error.reason == 0, "It compiles and does not parse.", source);
  checkPrinted(parsed.tree, compiled, source);
}

}  // namespace
}  // namespace lens::formula

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  lens::formula::tryFormula(QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size)));
  return 0;
}
