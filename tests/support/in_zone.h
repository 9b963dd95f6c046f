// Sets the machine's zone for one test.
#pragma once

#include <QByteArray>
#include <ctime>

namespace lens {

class InZone {
 public:
  explicit InZone(const char* zone) : before_(qgetenv("TZ")), wasSet_(qEnvironmentVariableIsSet("TZ")) {
    qputenv("TZ", zone);
    tzset();
  }
  ~InZone() {
    if (wasSet_)
      qputenv("TZ", before_);
    else
      qunsetenv("TZ");
    tzset();
  }
  InZone(const InZone&) = delete;
  InZone& operator=(const InZone&) = delete;

 private:
  QByteArray before_;
  bool wasSet_;
};

}  // namespace lens
