#include "controls/event.h"

namespace lens {
namespace {

UntrappedReport& installedReport() {
  static UntrappedReport report;
  return report;
}

}  // namespace

void setUntrappedReport(UntrappedReport report) {
  installedReport() = std::move(report);
}

void reportUntrapped(const RuntimeError& error) {
  if (installedReport()) installedReport()(error);
}

}  // namespace lens
