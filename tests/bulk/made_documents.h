// Documents with items of every kind, as the model of a test has them.
#pragma once

#include "bulk/note_model.h"

namespace lens::testbed {

// Types that no procedure of the tool understands, each with bytes of its own.
inline void addRawItems(ModelNote& note, const QByteArray& bytes) {
  namespace type = itemtype;
  for (const quint16 each :
       {type::Unknown,       type::RichText,    type::Collation,  type::NoteLinks,     type::Signature,
        type::UserData,      type::Query,       type::Action,     type::AssistantInfo, type::ViewMapDataset,
        type::ViewMapLayout, type::LsObject,    type::Html,       type::MimePart,      type::OutlineFormat,
        type::Error,         type::Unavailable, type::Rfc822Text, type::Formula,       type::UserId,
        quint16(0x7F00)})
    note.add(u"Raw%1"_s.arg(each, 4, 16, QChar(u'0')), rawValue(each, bytes), 0);
}

// Texts, numbers and times are read as text where text is replaced in them.
inline void addValues(ModelNote& note, int i) {
  const QString subject = u"Pump %1 of 2024, Größe 名前"_s.arg(i);
  note.add(u"Subject"_s, textValue(subject), itemflag::Summary, {subject});
  const QStringList tags = {u"2%1"_s.arg(i), QString(), u"Öl"_s, u"22"_s};
  note.add(u"Tags"_s, textListValue(tags), itemflag::Summary, tags);
  note.add(u"Größe"_s, textListValue({u"2 m"_s}), itemflag::Summary, {u"2 m"_s});
  const QString lines = u"line 2"_s + QChar(0) + u"line 3"_s;
  note.add(u"a b"_s, textValue(lines), itemflag::Summary, {lines});
  note.add(u"名前"_s, textValue(QString()), itemflag::Summary, {QString()});
  note.add(u"Amount"_s, numberValue(i * 0.25), itemflag::Summary, {QString::number(i * 0.25)});
  note.add(u"Numbers"_s, numberListValue({i * 1.0, -0.5}), itemflag::Summary,
           {QString::number(i), u"-0.5"_s});
  const DateTime moment{QDate(2024, 2, 1 + i % 28), QTime(13, 5, i % 60)};
  note.add(u"When"_s, timeValue(timeDateOf(moment)), itemflag::Summary,
           {moment.date.toString(u"dd.MM.yyyy"_s) + u' ' + moment.time.toString(u"HH:mm:ss"_s)});
  const QStringList writers = {u"CN=Ada 2/O=Acme"_s, u"[Editors]"_s};
  note.add(u"Writers"_s, textListValue(writers), itemflag::Summary | itemflag::Authors, writers);
}

// Beside what is replaced: what must come through as it is.
inline void addOthers(ModelNote& note, int i) {
  note.add(u"Nothing"_s, textListValue({}));
  note.add(u"x:y"_s, textValue(u"2"_s), itemflag::Summary | itemflag::Sign);
  note.add(u"DocReaders"_s, textListValue({u"CN=Ada/O=Acme"_s, u"*/Acme"_s}),
           itemflag::Summary | itemflag::Readers);
  note.add(u"SendTo"_s, textValue(u"CN=Ben/O=Acme"_s), itemflag::Summary | itemflag::Names);
  note.add(u"Spans"_s, timeListValue({}, {{timeDateOfDate({2024, 2, 1}), timeDateOfDate({2024, 2, 9})}}));
  for (int hop = 0; hop < 3; ++hop) note.add(u"Received"_s, textValue(u"hop %1"_s.arg(hop)));
  addRawItems(note, QByteArray::number(i) + QByteArray("\0\xFF\x80", 3));
  if (i % 10 == 0) note.add(u"Long"_s, textValue(QString(20'000, u'ß')), 0);
  if (i % 50 == 0) note.add(u"Body"_s, rawValue(itemtype::RichText, QByteArray(200'000, char(i))), 0);
  if (i % 5 != 0) return;
  note.addFile(u"%1 Größe 名.bin"_s.arg(i), QByteArray(i * 37 % 9000, char(i)));
  note.addFile(u"%1.empty"_s.arg(i), {});
}

inline ModelNote madeDocument(int i) {
  ModelNote note;
  note.add(u"Form"_s, textValue(u"Memo"_s));
  note.add(u"Key"_s, textValue(u"%1"_s.arg(i, 6, 10, QChar(u'0'))));
  note.add(u"Kind"_s, textValue(i % 5 == 1 ? u"move"_s : i % 5 == 2 ? u"die"_s : u"stay"_s));
  addValues(note, i);
  addOthers(note, i);
  return note;
}

}  // namespace lens::testbed
