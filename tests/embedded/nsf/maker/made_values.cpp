#include "embedded/nsf/maker/made_values.h"

#include <cstring>

#include "embedded/nsf/maker/made_bytes.h"

namespace lens::made {
namespace {

void addDouble(QByteArray& bytes, double number) {
  quint64 bits;
  std::memcpy(&bits, &number, sizeof bits);
  add32(bytes, quint32(bits));
  add32(bytes, quint32(bits >> 32));
}

}  // namespace

QByteArray textsValue(const QByteArrayList& texts) {
  QByteArray value;
  add16(value, quint32(texts.size()));
  for (const QByteArray& text : texts) add16(value, quint32(text.size()));
  return value + texts.join();
}

QByteArray doubleValue(double number) {
  QByteArray value;
  addDouble(value, number);
  return value;
}

QByteArray doublesValue(const QVector<double>& numbers) {
  QByteArray value;
  add16(value, quint32(numbers.size()));
  add16(value, 0);
  for (const double number : numbers) addDouble(value, number);
  return value;
}

QByteArray instantValue(const TimeDate& time) {
  QByteArray value;
  addTime(value, time);
  return value;
}

QByteArray instantsValue(const QVector<TimeDate>& times, const QVector<TimeDate>& endsOfRanges) {
  QByteArray value;
  add16(value, quint32(times.size()));
  add16(value, quint32(endsOfRanges.size() / 2));
  for (const TimeDate& time : times) addTime(value, time);
  for (const TimeDate& time : endsOfRanges) addTime(value, time);
  return value;
}

QByteArray referencesValue(const QByteArrayList& unids) {
  QByteArray value;
  add16(value, quint32(unids.size()));
  return value + unids.join();
}

QByteArray objectValue(quint16 objectType, quint32 object) {
  QByteArray value;
  add16(value, objectType);
  add32(value, object);
  return value;
}

QByteArray fileValue(const FileItem& file) {
  QByteArray value = objectValue(0, file.object);
  add16(value, quint32(file.name.size()));
  add16(value, 0);
  add16(value, file.compression);
  add16(value, 0);
  add16(value, 3);
  add32(value, file.size);
  addTime(value, file.created);
  addTime(value, file.modified);
  return value + file.name + QByteArray::fromHex("00112233445566778899AABBCCDDEEFF");
}

QByteArray richTextValue(const QByteArrayList& paragraphs) {
  QByteArray value;
  for (const QByteArray& text : paragraphs) {
    add8(value, 129);
    add8(value, 2);
    add8(value, 133);
    add8(value, 0xFF);
    add16(value, quint32(8 + text.size()));
    add32(value, 0x0A000100);
    value += text;
    if (value.size() % 2) add8(value, 0);
  }
  return value;
}

QByteArray idTable(const QVector<quint32>& ids, const TimeDate& time) {
  QByteArray runs;
  int count = 0;
  for (qsizetype i = 0; i < ids.size(); ++count) {
    qsizetype last = i;
    while (last + 1 < ids.size() && last - i < 255 && ids[last + 1] == ids[last] + 4) ++last;
    add8(runs, quint8(last - i));
    add32(runs, ids[i]);
    i = last + 1;
  }
  QByteArray table;
  add32(table, 4);
  add16(table, quint32(ids.size()));
  add16(table, quint32(count));
  add16(table, 1);
  addTime(table, time);
  return table + runs;
}

QByteArray accessList(const QVector<AccessEntry>& entries, const QByteArrayList& roles,
                      const QByteArrayList& history) {
  constexpr int kOldPrivileges = 5, kHeads = 16, kHeader = 40;
  const QByteArrayList names = QByteArrayList(kOldPrivileges, QByteArray()) + roles;
  QByteArray payload = zeros(kHeader);
  const qsizetype rolesAt = payload.size();
  for (const QByteArray& role : names) payload += role.leftJustified(16, '\0', true);
  const qsizetype headsAt = payload.size();
  payload += zeros(kHeads * 2);
  const qsizetype historyAt = payload.size();
  for (const QByteArray& line : history) payload += line + '\0';
  const qsizetype historySize = payload.size() - historyAt;
  if (payload.size() % 2) payload += '\0';
  const qsizetype entriesAt = payload.size();
  for (const AccessEntry& entry : entries) {
    const qsizetype begin = payload.size();
    add16(payload, 0);
    add16(payload, 0x4145);
    add16(payload, entry.level);
    payload += entry.roles;
    add16(payload, entry.flags);
    add16(payload, quint32(entry.name.size()));
    payload += entry.name + '\0';
    if ((payload.size() - begin) % 2) payload += '\0';
  }
  put16(payload, 0, 0x4143);
  put16(payload, 2, 2);
  put16(payload, 4, quint32(payload.size()));
  put16(payload, 6, quint32(entries.size()));
  put16(payload, 8, 6);
  put16(payload, 12, quint32(names.size()));
  put16(payload, 14, quint32(rolesAt));
  put16(payload, 16, kHeads);
  put16(payload, 18, quint32(headsAt));
  put16(payload, 20, quint32(entriesAt));
  put16(payload, 34, quint32(historyAt));
  put16(payload, 36, quint32(historySize));
  put16(payload, 38, quint32(history.size()));
  return payload;
}

}  // namespace lens::made
