#include "embedded/dxl/item_flag_names.h"

namespace lens {

namespace {

quint16 flagsNamed(QStringView name) {
  for (const FlagName& known : kFlagNames) {
    if (name == QStringView(known.name)) return known.flag | known.implied;
  }
  // Sealed: enciphered already. The mark is the same.
  return name == u"sealed" ? itemflag::Seal : 0;
}

}  // namespace

quint16 itemFlags(const DxlReader& in) {
  quint16 flags = 0;
  const QXmlStreamAttributes attributes = in.attributes();
  for (qsizetype i = 0; i < attributes.size(); ++i) {
    const quint16 named = flagsNamed(attributes[i].name());
    if (named != 0) in.markRead(i);
    if (attributes[i].value() == u"true") flags |= named;
  }
  return flags;
}

bool isSummaryByDefault(quint16 type) {
  const quint16 family = type & 0xFF00;
  return family == itemtype::Number || family == itemtype::Time || family == itemtype::Text;
}

}  // namespace lens
