// Rich text records that the importer writes itself.
#pragma once

#include <QByteArray>
#include <QString>

#include "embedded/richtext/rich_text.h"

namespace lens {

// Layout of paragraphs; false when the attributes hold more than the record is given here.
QByteArray paragraphDefinition(quint16 id, quint16 align);
QByteArray paragraphReference(quint16 id);
// IDs in hexadecimal, "" for none. Empty when one of them is malformed.
QByteArray linkRecord(const QString& replicaId, const QString& view, const QString& document,
                      const QString& description, const QString& server);
// Begin of a stretch of text that leads to an address; ended by hotspotEnd(). Empty when it is too long.
QByteArray urlHotspot(const QString& address);
QByteArray hotspotEnd();
QByteArray anchorRecord(const QString& name);

struct FieldRecord {
  QString name, description;
  quint16 type = 0;
  quint16 flags = 0;
  QByteArray defaultValue, inputTranslation, inputValidation, keywords;
};
// Empty when it does not fit a record.
QByteArray fieldRecord(const FieldRecord& field, const RichFont& font);
// The reverse; false when the record is shorter than its lengths say.
bool readFieldRecord(QByteArrayView record, FieldRecord& field, RichFont& font);

// Bit mask and face of the "font" element's attributes; false when a name has no number of its own.
bool fontFace(QStringView name, quint8& face);
bool fontStyle(QStringView words, quint8& style);
bool fontColor(QStringView name, quint8& color);
// The other way round; "" when there is no name. The style has a word for each bit that has one.
QString fontFaceName(quint8 face);
QString fontStyleWords(quint8 attributes);
QString fontColorName(quint8 color);

}  // namespace lens
