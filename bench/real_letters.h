// Real databases of letters, as many as wanted, made by the maker of the tests.
#pragma once

#include "embedded/nsf/made_samples.h"
#include "embedded/nsf/maker/made_values.h"

namespace lens::bench {

inline made::MadeNote realLetter(quint32 number) {
  using namespace made;
  const QByteArray n = QByteArray::number(number);
  MadeNote note = document(number, "Letter number " + n + " about the pump station");
  note.items.push_back({"Form", 0x0500, flag::Summary, "Memo"});
  note.items.push_back({"From", 0x0500, flag::Summary | flag::Names, "CN=Ada Byron/O=Tessaly"});
  note.items.push_back({"SendTo", 0x0501, flag::Summary | flag::Names,
                        textsValue({"CN=Carl Dorn/O=Tessaly", "CN=Eva Falk/O=Tessaly"})});
  note.items.push_back({"PostedDate", 0x0400, flag::Summary, instantValue(someTime(number))});
  note.items.push_back({"Size", 0x0300, flag::Summary, doubleValue(number)});
  note.items.push_back({"Categories", 0x0501, flag::Summary, textsValue({"a", "b"})});
  note.items.push_back({"Body", 0x0001, 0, richTextValue(QByteArrayList(6, QByteArray(120, 'r')))});
  return note;
}

inline made::MadeDatabase realLetters(int notes) {
  made::MadeDatabase described;
  described.bucketSize = 32768;
  for (int i = 0; i < notes; ++i) described.add(realLetter(quint32(i)));
  return described;
}

}  // namespace lens::bench
