// Formulas in the platform's compiled form, back to what their authors wrote.
//
// No source text is stored, and nothing that makes it is lost: names, constants, order, parentheses, remarks
// and white space all stand in the bytes, as segments.h, code_reader.h, layout.h and codes.h tell.
//
// As found in real designs, by comparing them with the source of the same formulas.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "embedded/formula/compiled/codes.h"

namespace lens::formula {

// Views and agents select: their main expression is shown behind SELECT although the author left that out.
enum class ShownSelect { AsTyped, Always };

struct CompiledReading {
  enum class State : quint8 { Source, Hidden, Unreadable };
  State state = State::Unreadable;
  QString source;  // with the stored white space; "" unless the state is Source
  Tree tree;       // as the parser makes it of the source; without statements when a name is missing
  Sureness sureness = Sureness::Proven;  // of the least sure name in it
  QStringList unproven;                  // those names, as the source has them; each once
  QString problem;                       // why there is no source, or why it cannot run
  bool keptAsSource = false;             // it is no code: the author's text was stored
  bool exact = true;                     // false: a time constant of the source says less than the code

  bool canRun() const { return state == State::Source && sureness != Sureness::Unnamed; }
};

// The bytes are exactly those of the formula, its size word included. Of a view's formula the selection is
// read. A time constant is written by the environment's region. Never throws.
CompiledReading readCompiled(QByteArrayView bytes, const Environment& environment,
                             ShownSelect select = ShownSelect::AsTyped);

// How many of the bytes the formula at their beginning takes; 0 when it is none, or when it is longer.
qsizetype compiledSize(QByteArrayView bytes);

}  // namespace lens::formula
