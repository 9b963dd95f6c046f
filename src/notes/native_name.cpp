#include "notes/native_name.h"

#include <QStringDecoder>

#include "notes/code_page.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

constexpr QByteArrayView kUtf8Mark("\xEF\xBB\xBF");

bool isInCodePage(QStringView name, const QByteArray& bytes) {
  return fromCodePage(bytes) == name;
}

}  // namespace

QByteArray codePageName(QStringView name) {
  const QByteArray bytes = toCodePage(name);
  if (!isInCodePage(name, bytes))
    throw RuntimeError(kUnsayableName,
                       u"%1: the name has letters that the system's code page lacks"_s.arg(name));
  return bytes;
}

QByteArray markedName(QStringView name) {
  const QByteArray bytes = toCodePage(name);
  if (isInCodePage(name, bytes) && !isMarkedName(bytes)) return bytes;
  return kUtf8Mark.toByteArray() + name.toUtf8();
}

bool isMarkedName(QByteArrayView bytes) {
  return bytes.startsWith(kUtf8Mark);
}

QString nameFromBytes(QByteArrayView bytes) {
  if (!isMarkedName(bytes)) return fromCodePage(bytes);
  QStringDecoder decoder(QStringDecoder::Utf8);
  const QString name = decoder(bytes.sliced(kUtf8Mark.size()));
  return decoder.hasError() ? fromCodePage(bytes) : name;
}

}  // namespace lens
