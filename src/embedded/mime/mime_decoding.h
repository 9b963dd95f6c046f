// Transfer encodings and character sets of MIME. Malformed input gives the best reading.
#pragma once

#include <QByteArray>
#include <QString>

namespace lens::mime {

// A "=" that begins no escape stays as it is. In headers "_" is a blank.
QByteArray decodeQuotedPrintable(QByteArrayView encoded, bool inHeader = false);
// Bytes outside the alphabet are passed over.
QByteArray decodeBase64(QByteArrayView encoded);

// The text of bytes in a character set; what is no text in it becomes U+FFFD. An empty or unknown name
// means UTF-8 when the bytes are valid UTF-8, else Latin-1.
QString decodeText(QByteArrayView bytes, QStringView charset);

}  // namespace lens::mime
