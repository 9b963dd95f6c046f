#include "embedded/dxl/export/read_back.h"

#include <QBuffer>

#include "notes/runtime_error.h"

namespace lens {

bool readAside(const QByteArray& xml, const std::function<bool(ReadContext&)>& read) {
  QBuffer bytes;
  bytes.setData(xml);
  bytes.open(QIODevice::ReadOnly);
  DxlSource source(bytes);
  DxlReader in(source);
  FileFindings findings;
  ReadContext context{in, findings};
  try {
    return read(context);
  } catch (const RuntimeError&) {
    return false;
  }
}

bool comesBack(const std::function<bool(DxlWriter&)>& write, const std::function<bool(ReadContext&)>& read) {
  QBuffer xml;
  xml.open(QIODevice::WriteOnly);
  DxlWriter writer(xml);
  if (!write(writer)) return false;
  writer.endDocument();
  return readAside(xml.data(), read);
}

bool isSameItem(const Item& a, const Item& b) {
  return a.name == b.name && a.flags == b.flags && a.value == b.value;
}

}  // namespace lens
