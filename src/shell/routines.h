// The routine module that all windows share; its error boxes say "of Modul Globals". The text
// routines of text_routines.h stand here with their traps: a failure shows the box and gives an
// empty result.
#pragma once

#include <QByteArray>
#include <QString>
#include <QWidget>

#include "host/host.h"
#include "notes/bridge.h"
#include "notes/capi.h"
#include "notes/numbers.h"
#include "shell/error_modes.h"

namespace lens {

class Routines {
 public:
  Routines(Host& host, CApi& api);

  QString LeftFrom(const QString& text, const QString& marker);
  QString RightFrom(const QString& text, const QString& marker);
  QString ReplaceAll(const QString& text, const QString& find, const QString& replace);
  // An overflow shows no box here: it empties the text and goes to the caller, whose loop would
  // otherwise never end.
  QString Element(QString& text, const QString& separator);
  QString AbbreviateName(const QString& name);
  QString UnsignedDec2Hex(const Value& number);

  // Text of a Notes status.
  QString GetAPIError(Status status);
  // The text in the other character set; mode 1 is LMBCS to native. Both lengths are 16-bit.
  QString ConvertTranslate(int mode, const QString& text);

  // 11 counts the hourglass up, 0 down but not below 0; any other code goes to the screen as it is.
  void SetMousePtr(int code);
  int mouseBusyCount() const { return gMouseBusyCount_; }

  // Puts a window into the middle of its screen.
  void CenterForm(QWidget& window);
  // Despite the name: keeps a window above all others.
  void StayNotOnTop(QWidget& window);
  // Plays the sound beside the program, when there is one, to its end.
  void playDoneSound();

 private:
  Host& host_;
  CApi& api_;
  Int16 gMouseBusyCount_;
};

}  // namespace lens
