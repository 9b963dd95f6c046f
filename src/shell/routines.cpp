#include "shell/routines.h"

#include <QScreen>

#include "notes/abbreviate_name.h"
#include "notes/code_page.h"
#include "notes/literals.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

Procedure globalsProcedure(const char16_t* name) {
  return {QString::fromUtf16(name), u"Modul Globals"_s};
}

}  // namespace

Routines::Routines(Host& host, CApi& api) : host_(host), api_(api) {}

QString Routines::LeftFrom(const QString& text, const QString& marker) {
  QString result;
  trapped(host_, globalsProcedure(u"LeftFrom"), [&] { result = leftFrom(text, marker); });
  return result;
}

QString Routines::RightFrom(const QString& text, const QString& marker) {
  QString result;
  trapped(host_, globalsProcedure(u"RightFrom"), [&] { result = rightFrom(text, marker); });
  return result;
}

QString Routines::ReplaceAll(const QString& text, const QString& find, const QString& replace) {
  QString result;
  trapped(host_, globalsProcedure(u"ReplaceAll"), [&] { result = replaceAllText(text, find, replace); });
  return result;
}

QString Routines::Element(QString& text, const QString& separator) {
  try {
    return element(text, separator);
  } catch (const RuntimeError& error) {
    if (error.number() == err::Overflow) {
      text.clear();
      throw;
    }
    host_.messageBox(errorText(error, globalsProcedure(u"Element")));
    return {};
  }
}

QString Routines::AbbreviateName(const QString& name) {
  try {
    return abbreviateName(name);
  } catch (const RuntimeError&) {
    host_.messageBox(u"Error in abbreviate function"_s);
    return {};
  }
}

QString Routines::UnsignedDec2Hex(const Value& number) {
  QString result;
  trapped(host_, globalsProcedure(u"UnsignedDec2Hex"), [&] { result = unsignedDec2Hex(number); });
  return result;
}

QString Routines::GetAPIError(Status status) {
  QString result;
  trapped(host_, globalsProcedure(u"GetAPIError"), [&] {
    const NotesInit init(api_);
    QByteArray buffer(256, '\0');
    api_.OSLoadString(0, status & kErrorMask, buffer, quint16(buffer.size() - 1));
    result = fromCodePage(upToNul(buffer));
  });
  return result;
}

QString Routines::ConvertTranslate(int mode, const QString& text) {
  const QByteArray source = toCodePage(text);
  const Int16 length(source.size());
  const Int16 limit(2 * source.size());
  QByteArray target(limit, ' ');
  api_.OSTranslate(quint16(mode), source, quint16(length), target, quint16(limit));
  return fromCodePage(upToNul(target));
}

void Routines::SetMousePtr(int code) {
  if (code == pointer::Hourglass) {
    gMouseBusyCount_ += 1;
  } else if (code == pointer::Default) {
    if (gMouseBusyCount_ > 0) gMouseBusyCount_ += -1;
  } else {
    host_.setPointer(code);
    return;
  }
  host_.setPointer(gMouseBusyCount_ < 1 ? pointer::Default : pointer::Hourglass);
}

void Routines::CenterForm(QWidget& window) {
  SetMousePtr(pointer::Hourglass);
  const QRect screen = window.screen()->geometry();
  const QSize size = window.frameGeometry().size();
  const int top = (screen.height() >> 1) - (size.height() >> 1);
  const int left = (screen.width() >> 1) - (size.width() >> 1);
  window.move(screen.topLeft() + QPoint(left, top));
  SetMousePtr(pointer::Default);
}

void Routines::StayNotOnTop(QWidget& window) {
  window.setWindowFlag(Qt::WindowStaysOnTopHint);
}

void Routines::playDoneSound() {
  const QString path = host_.findFile(host_.programDirectory() + u"\\done.wav"_s);
  if (!path.isEmpty()) host_.playSound(path);
}

}  // namespace lens
