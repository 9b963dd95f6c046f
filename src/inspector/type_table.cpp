#include "inspector/type_table.h"

#include "notes/item_types.h"
#include "notes/literals.h"
#include "shell/error_modes.h"

namespace lens {

void addDocTypes(Globals& state, ComboBox& cmbFieldType, Host& host) {
  trapped(host, {u"addDocTypes"_s, u"Modul Globals"_s}, [&] {
    for (const ItemTypeRow& row : itemTypeTable())
      state.gDocTypes.add(QString::fromLatin1(row.sentence), QString::number(row.code));
    for (int place = 1; place <= state.gDocTypes.count(); ++place)
      cmbFieldType.addItem(state.gDocTypes.item(place));
  });
}

}  // namespace lens
