#include "embedded/dxl/export/note_parts.h"

#include "embedded/dxl/export/item_writer.h"
#include "embedded/dxl/export/rich_text_places.h"
#include "notes/literals.h"

namespace lens {

void writeNoteInfo(DxlWriter& out, const NoteHeader& header) {
  out.begin(u"noteinfo"_s);
  out.attribute(u"noteid"_s, QString::number(header.id.value(), 16));
  out.attribute(u"unid"_s, header.unid.text());
  out.attribute(u"sequence"_s, QString::number(header.sequence));
  out.layout();
  const auto time = [&out](const QString& element, const TimeDate& value) {
    if (!isClearedTime(value)) out.time(element, value);
  };
  time(u"created"_s, header.created);
  time(u"modified"_s, header.modified);
  time(u"revised"_s, header.sequenceTime);
  time(u"lastaccessed"_s, header.accessed);
  time(u"addedtofile"_s, header.added);
  out.end();
  out.layout();
}

void writeItems(ExportContext& context, const Note& note, const LargeValues& large, qsizetype from) {
  const QHash<qsizetype, qsizetype> groups = keptGroups(note, large);
  for (qsizetype place = from; place < note.items.size(); ++place) {
    QVector<Item> kept;
    for (qsizetype i = groups.value(place); i > 0; --i)
      kept.push_back(large.whole(note, place + kept.size()));
    const qsizetype behind = place + kept.size();
    if (kept.isEmpty() || !writeItemWithKept(context, large.whole(note, behind), kept))
      writeItem(context, note, large.whole(note, place));
    else
      place = behind;
  }
}

}  // namespace lens
