// What must hold of every reading of a compiled formula, whatever its bytes.
#pragma once

#include "embedded/formula/compiled/compiled_formula.h"
#include "embedded/formula/compiled/compiled_writer.h"

namespace lens::formula {

// "" when it holds; else what is wrong. A source that the parser takes says what the tree says, which was
// made from the bytes and not from the source; and what is written of it is read as the same again.
inline QString complaintOf(const CompiledReading& reading, const Environment& environment) {
  using State = CompiledReading::State;
  if (reading.state != State::Source) {
    if (!reading.source.isEmpty() || !reading.tree.nodes.empty())
      return QStringLiteral("A formula that is not read has a source.");
    return reading.problem.isEmpty() ? QStringLiteral("It does not say why it is not read.") : QString();
  }
  if (reading.source.isEmpty()) return QStringLiteral("The source is empty.");
  const bool nameless = reading.sureness == Sureness::Unnamed;
  if (nameless != !reading.problem.isEmpty()) return QStringLiteral("A nameless code is not told.");
  if (reading.unproven.isEmpty() != (reading.sureness == Sureness::Proven))
    return QStringLiteral("A name that is not proven is not told.");
  const Parsed parsed = parse(reading.source, environment);
  if (nameless) {
    // Nothing that runs can come of it.
    return parsed.error.reason != 0 ? QString() : QStringLiteral("A nameless code can be compiled.");
  }
  if (parsed.error.reason != 0 || !reading.exact) return {};
  if (!sameTree(parsed.tree, reading.tree)) return QStringLiteral("The source says something else.");
  // Line breaks are written in one way.
  if (reading.source.contains(u'\r')) return {};
  const QByteArray bytes = writeCompiled(reading.source, environment).bytes;
  if (bytes.isEmpty()) return {};
  const CompiledReading again = readCompiled(bytes, environment);
  if (again.state != State::Source || !sameTree(again.tree, reading.tree))
    return QStringLiteral("What is written of it is read as something else.");
  return {};
}

}  // namespace lens::formula
