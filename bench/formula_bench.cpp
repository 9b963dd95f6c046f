// Formulas against the same work in Lua 5.4: both compiled once, both with their input in a field of a
// document (a table there) that is looked up by name in every run.
#include <benchmark/benchmark.h>

#include <cmath>
#include <ctime>
#include <lua.hpp>
#include <memory>

#include "embedded/formula/formula.h"
#include "embedded/formula/support/memory_document.h"
#include "ratio.h"

namespace lens::bench {
namespace {
using namespace Qt::StringLiterals;
using namespace lens::formula;
using FormulaValue = lens::formula::Value;

struct Task {
  const char* name;
  const char* formula;
  const char* lua;  // body of function(doc); the library's functions are locals around it
};

const Task kTasks[] = {
    {"form and subject", R"(Form = "Memo" & @Contains(Subject; "report"))",
     R"(return doc.Form == "Memo" and find(doc.Subject, "report", 1, true) ~= nil)"},
    {"search without case", R"(@Contains(@LowerCase(Subject); "report"))",
     R"(return find(lower(doc.Subject), "report", 1, true) ~= nil)"},
    {"list of texts", R"(@Transform(Names; "n"; @UpperCase(@Left(n; 3))))",
     R"(local names, result = doc.Names, {}
        for i = 1, #names do result[i] = upper(sub(names[i], 1, 3)) end
        return result)"},
    {"list of numbers", "Numbers * Factors",
     R"(local numbers, factors, result = doc.Numbers, doc.Factors, {}
        for i = 1, #numbers do result[i] = numbers[i] * factors[i] end
        return result)"},
    {"sum and maximum", "@Sum(Numbers) + @Max(Numbers)",
     R"(local numbers = doc.Numbers
        local sum, most = 0, -huge
        for i = 1, #numbers do
          local n = numbers[i]
          sum = sum + n
          if n > most then most = n end
        end
        return sum + most)"},
    {"ten operators", "(Price * Quantity - Discount) * (1 + Tax / 100) + Shipping / 2 - Fee * 3 + Amount",
     R"(return (doc.Price * doc.Quantity - doc.Discount) * (1 + doc.Tax / 100) + doc.Shipping / 2
        - doc.Fee * 3 + doc.Amount)"},
    {"date moved by months",
     "d := @Adjust(Meeting; 0; 3; 10; 0; 0; 0); @Year(d) * 10000 + @Month(d) * 100 + @Day(d)",
     R"(local t = date("*t", doc.Meeting)
        t.month, t.day = t.month + 3, t.day + 10
        time(t)
        return t.year * 10000 + t.month * 100 + t.day)"},
    {"days between dates", "@Integer((Meeting - Start) / 86400)",
     "return difftime(doc.Meeting, doc.Start) // 86400"},
    {"choice by range",
     R"(@If(Amount < 10; "none"; Amount < 100; "small"; @If(Amount < 1000; "fair"; Amount < 10000; "large";
        "huge")))",
     R"(local amount = doc.Amount
        if amount < 10 then return "none"
        elseif amount < 100 then return "small"
        elseif amount < 1000 then return "fair"
        elseif amount < 10000 then return "large"
        else return "huge" end)"},
    {"loop of a thousand steps", "n := 0; sum := 0; @While(n < 1000; n := n + 1; sum := sum + n); sum",
     R"(local n, sum = 0, 0
        while n < 1000 do
          n = n + 1
          sum = sum + n
        end
        return sum)"},
};

constexpr const char* kZone = "America/New_York";
constexpr int kElements = 50;
const QDateTime& meeting() {
  static const QDateTime time(QDate(2024, 3, 18), QTime(14, 30), QTimeZone(kZone));
  return time;
}
const QDateTime& start() {
  static const QDateTime time(QDate(2023, 11, 6), QTime(9, 0), QTimeZone(kZone));
  return time;
}

// --- Ours ----------------------------------------------------------------------------------------------

class FixedEnvironment : public Environment {
 public:
  TimeDate now() const override { return timeDateOf(meeting(), {-300, true}); }
  const LocalZone& zone() const override { return zone_; }
  const Region& region() const override { return region_; }

 private:
  LocalZone zone_{QTimeZone(kZone)};
  Region region_;
};

FixedEnvironment& environment() {
  static FixedEnvironment instance;
  return instance;
}

const std::pair<const char*, const char*> kTexts[] = {
    {"Form", "Memo"}, {"Subject", "Letter about the pump station and the quarterly report of spring"}};
const std::pair<const char*, double> kNumbers[] = {{"Price", 19.5},   {"Quantity", 12}, {"Discount", 8.25},
                                                   {"Tax", 19},       {"Shipping", 9},  {"Fee", 1.5},
                                                   {"Amount", 2500.5}};

QString personName(int i) {
  return u"Karin Meier %1"_s.arg(i);
}

std::unique_ptr<MemoryDocument> document() {
  auto document = std::make_unique<MemoryDocument>();
  for (const auto& [name, text] : kTexts)
    document->put(QString::fromLatin1(name), FormulaValue::text(QString::fromLatin1(text)));
  for (const auto& [name, number] : kNumbers)
    document->put(QString::fromLatin1(name), FormulaValue::number(number));
  QStringList names;
  QVector<double> numbers, factors;
  for (int i = 1; i <= kElements; ++i) {
    names.append(personName(i));
    numbers.append(i * 1.5);
    factors.append(i * 0.25);
  }
  document->put(u"Names"_s, FormulaValue::texts(names));
  document->put(u"Numbers"_s, FormulaValue::numbers(numbers));
  document->put(u"Factors"_s, FormulaValue::numbers(factors));
  document->put(u"Meeting"_s, FormulaValue::time(timeDateOf(meeting(), {-300, true})));
  document->put(u"Start"_s, FormulaValue::time(timeDateOf(start(), {-300, true})));
  return document;
}

QStringList elementsOf(const FormulaValue& value) {
  if (value.isText()) return value.toTexts();
  if (!value.isNumber()) return {u"error %1"_s.arg(value.errorCode(), 4, 16)};
  QStringList elements;
  for (qsizetype i = 0; i < value.count(); ++i) elements.append(QString::number(value.number(i), 'g', 15));
  return elements;
}

// --- Lua -----------------------------------------------------------------------------------------------

// A state with the function in place 1 and the document in place 2 of its stack.
class Lua {
 public:
  Lua() : state_(luaL_newstate()) { luaL_openlibs(state_); }
  ~Lua() { lua_close(state_); }
  Lua(const Lua&) = delete;
  Lua& operator=(const Lua&) = delete;
  lua_State* state() const { return state_; }

  bool prepare(const char* body) {
    const std::string source =
        "local find, lower, upper, sub = string.find, string.lower, string.upper, string.sub\n"
        "local date, time, difftime, huge = os.date, os.time, os.difftime, math.huge\n"
        "return function(doc)\n" +
        std::string(body) + "\nend";
    if (luaL_loadstring(state_, source.c_str()) || lua_pcall(state_, 0, 1, 0)) return false;
    lua_newtable(state_);
    for (const auto& [name, text] : kTexts) lua_pushstring(state_, text), lua_setfield(state_, 2, name);
    for (const auto& [name, number] : kNumbers) lua_pushnumber(state_, number), lua_setfield(state_, 2, name);
    setList("Names", [&](int i) { lua_pushstring(state_, personName(i).toUtf8().constData()); });
    setList("Numbers", [&](int i) { lua_pushnumber(state_, i * 1.5); });
    setList("Factors", [&](int i) { lua_pushnumber(state_, i * 0.25); });
    lua_pushinteger(state_, meeting().toSecsSinceEpoch()), lua_setfield(state_, 2, "Meeting");
    lua_pushinteger(state_, start().toSecsSinceEpoch()), lua_setfield(state_, 2, "Start");
    return true;
  }

  // Leaves the result on the stack.
  void run() {
    lua_pushvalue(state_, 1);
    lua_pushvalue(state_, 2);
    lua_call(state_, 1, 1);
  }

  QStringList elements() {
    run();
    QStringList elements;
    if (lua_istable(state_, -1)) {
      for (int i = 1; lua_geti(state_, -1, i) != LUA_TNIL; ++i) {
        elements.append(top());
        lua_pop(state_, 1);
      }
      lua_pop(state_, 1);
    } else {
      elements.append(top());
    }
    lua_pop(state_, 1);
    return elements;
  }

 private:
  template <typename Push>
  void setList(const char* name, Push push) {
    lua_newtable(state_);
    for (int i = 1; i <= kElements; ++i) push(i), lua_seti(state_, -2, i);
    lua_setfield(state_, 2, name);
  }
  QString top() {
    if (lua_isboolean(state_, -1)) return lua_toboolean(state_, -1) ? u"1"_s : u"0"_s;
    if (lua_type(state_, -1) == LUA_TNUMBER) return QString::number(lua_tonumber(state_, -1), 'g', 15);
    return QString::fromUtf8(lua_tostring(state_, -1));
  }
  lua_State* state_;
};

// The C library's clock, which Lua uses, in the zone of our environment; named, so that the library does
// not look at the machine's settings in every call.
void setMachineZone() {
  qputenv("TZ", kZone);
  tzset();
}

// --- Evaluation ----------------------------------------------------------------------------------------

std::string oursName(const Task& task) {
  return std::string("BM_Formula ") + task.name;
}
std::string luaName(const Task& task) {
  return std::string("BM_Lua ") + task.name;
}
std::string ratioName(const Task& task) {
  return std::string("formula, ") + task.name;
}

void runFormula(benchmark::State& state, const Task& task) {
  const auto input = document();
  const Compiled compiled = compile(QString::fromLatin1(task.formula), {&environment()});
  if (!compiled) return state.SkipWithError("the formula does not compile");
  Evaluation evaluation(compiled.formula, environment());
  for (auto _ : state) benchmark::DoNotOptimize(evaluation.run(input.get(), nullptr));
}

// Skipped when both sides do not give the same, for then they did not do the same.
void runLua(benchmark::State& state, const Task& task) {
  setMachineZone();
  Lua lua;
  if (!lua.prepare(task.lua)) return state.SkipWithError("the Lua function does not compile");
  const auto input = document();
  const Compiled compiled = compile(QString::fromLatin1(task.formula), {&environment()});
  const QStringList theirs = lua.elements();
  const QStringList ours =
      compiled ? elementsOf(Evaluation(compiled.formula, environment()).run(input.get(), nullptr).value)
               : QStringList();
  if (ours != theirs) {
    const QString text = u"ours: %1, Lua: %2"_s.arg(ours.join(u' '), theirs.join(u' '));
    return state.SkipWithError(text.toUtf8().constData());
  }
  for (auto _ : state) {
    lua.run();
    lua_pop(lua.state(), 1);
  }
}

const bool kRegistered = [] {
  std::vector<std::string> names;
  for (const Task& task : kTasks) {
    benchmark::RegisterBenchmark(oursName(task).c_str(),
                                 [&task](benchmark::State& s) { runFormula(s, task); });
    benchmark::RegisterBenchmark(luaName(task).c_str(), [&task](benchmark::State& s) { runLua(s, task); });
    Ratio(ratioName(task), oursName(task), luaName(task));
    names.push_back(ratioName(task));
  }
  Median("formula evaluation", names, 1.0);
  return true;
}();

// --- Compilation ---------------------------------------------------------------------------------------

const Ratio kCompile("formula compilation, 20 KB", "BM_FormulaCompile/20", "BM_LuaLoad/20");
// Linear: four times the source, four times the time.
const Ratio kLinear("formula compilation, 40 KB beside 10 KB", "BM_FormulaCompile/40", "BM_FormulaCompile/10",
                    4.6);

// Statements, numbered so that each brings new names and constants, up to the size.
std::string repeated(const char* statement, const char* end, int kilobytes) {
  std::string source;
  for (int i = 0; int(source.size()) < kilobytes * 1024; ++i) {
    std::string line = statement;
    for (size_t at; (at = line.find('#')) != std::string::npos;) line.replace(at, 1, std::to_string(i));
    source += line;
  }
  return source + end;
}

void BM_FormulaCompile(benchmark::State& state) {
  const QString source = QString::fromStdString(
      repeated("v# := @If(Amount > #; @UpperCase(@Left(Subject; #)) + \" above #\"; Subject + \" below\");\n",
               "v1", int(state.range(0))));
  if (!compile(source, {&environment()})) return state.SkipWithError("the formula does not compile");
  for (auto _ : state) benchmark::DoNotOptimize(compile(source, {&environment()}));
  state.SetComplexityN(source.size());
  state.SetBytesProcessed(state.iterations() * source.size());
}
BENCHMARK(BM_FormulaCompile)
    ->Arg(10)
    ->Arg(20)
    ->Arg(40)
    ->Complexity(benchmark::oN)
    ->Unit(benchmark::kMicrosecond);

void BM_LuaLoad(benchmark::State& state) {
  const std::string source =
      repeated("v# = Amount > # and upper(sub(Subject, 1, #)) .. \" above #\" or Subject .. \" below\"\n",
               "return v1", int(state.range(0)));
  const Lua lua;
  for (auto _ : state) {
    if (luaL_loadstring(lua.state(), source.c_str()))
      return state.SkipWithError(lua_tostring(lua.state(), -1));
    lua_pop(lua.state(), 1);
  }
  state.SetComplexityN(int64_t(source.size()));
  state.SetBytesProcessed(state.iterations() * int64_t(source.size()));
}
BENCHMARK(BM_LuaLoad)->Arg(10)->Arg(20)->Arg(40)->Complexity(benchmark::oN)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace lens::bench
