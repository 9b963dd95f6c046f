#include "embedded/store/arriving_notes.h"

#include <QStringList>

#include "embedded/store/stored_row.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

template <qint64 ArrivingBlock::*number>
void answer(sqlite3_context* context, int, sqlite3_value**) {
  try {
    sqlite3_result_int64(context, static_cast<ArrivingNotes*>(sqlite3_user_data(context))->hidden().*number);
  } catch (const RuntimeError& error) {
    const QByteArray reason = error.description().toUtf8();
    sqlite3_result_error(context, reason.constData(), int(reason.size()));
    if (error.number() == enginefault::Damaged) sqlite3_result_error_code(context, SQLITE_CORRUPT);
  }
}

}  // namespace

ArrivingBlock ArrivingBlock::fromText(const QString& text) {
  const QStringList words = text.split(u' ');
  if (words.size() != 3) return {};
  bool sound[3] = {};
  const ArrivingBlock block{words[0].toLongLong(&sound[0]), words[1].toLongLong(&sound[1]),
                            words[2].toLongLong(&sound[2])};
  const bool whole = sound[0] && sound[1] && sound[2] && block.first > 0 && block.first <= block.last &&
                     block.last < qint64(1) << 32 && block.change > 0 && block.change < kNoNumber;
  return whole ? block : ArrivingBlock();
}

QString ArrivingBlock::text() const {
  return u"%1 %2 %3"_s.arg(first).arg(last).arg(change);
}

ArrivingNotes::ArrivingNotes(Connection& connection) : connection_(connection) {
  constexpr int kKind = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_DIRECTONLY;
  const auto make = [&](const char* name, auto* function) {
    sqlite3_create_function_v2(connection.handle(), name, 0, kKind, this, function, nullptr, nullptr,
                               nullptr);
  };
  make("arriving_first", answer<&ArrivingBlock::first>);
  make("arriving_last", answer<&ArrivingBlock::last>);
  make("arriving_change", answer<&ArrivingBlock::change>);
}

// The entry is read again only when the file's content is another one.
const ArrivingBlock& ArrivingNotes::inFile() {
  unsigned int version = 0;
  sqlite3_file_control(connection_.handle(), nullptr, SQLITE_FCNTL_DATA_VERSION, &version);
  if (known_ && version == version_) return inFile_;
  {
    Statement::Run row(read_);
    inFile_ = row.step() ? ArrivingBlock::fromText(row.text(0)) : ArrivingBlock();
  }
  // Reading may itself have been what showed the new content.
  sqlite3_file_control(connection_.handle(), nullptr, SQLITE_FCNTL_DATA_VERSION, &version_);
  known_ = true;
  return inFile_;
}

void ArrivingNotes::bring(const ArrivingBlock& block) {
  brought_ = block;
  nextId_ = block.first;
}

NoteId ArrivingNotes::nextId() const {
  return isBringing() && nextId_ <= brought_.last ? NoteId(quint32(nextId_)) : NoteId();
}

void ArrivingNotes::idTaken(NoteId id) {
  if (isBringing() && id.value() == nextId_) nextId_ += kIdStep;
}

}  // namespace lens
