// The whole program, started on a workspace of its own, with its client window.
#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <QTest>
#include <memory>
#include <stdexcept>

#include "app/launcher.h"
#include "support/printers.h"
#include "support/recording_host.h"

namespace lens {

// A widget or an action by its name; throws where there is none.
template <class Part>
Part& partOf(const QWidget& window, const char* name) {
  auto* found = window.findChild<Part*>(QString::fromLatin1(name));
  if (!found) throw std::runtime_error(name);
  return *found;
}

class WholeProgram : public testing::Test {
 protected:
  WholeProgram() {
    qputenv("TESSALY_WORKSPACE", directory.filePath(QStringLiteral("workspace")).toUtf8());
    launcher_ = std::make_unique<Launcher>(host);
    launcher_->start();
  }
  ~WholeProgram() override {
    launcher_.reset();
    qunsetenv("TESSALY_WORKSPACE");
    setUntrappedReport(nullptr);
  }
  void SetUp() override {
    ASSERT_TRUE(QTest::qWaitFor([this] { return launcher_->client() != nullptr; }));
    EXPECT_EQ(host.boxTexts(), QStringList());
  }

  Application& app() { return launcher_->application(); }
  ClientWindow& client() { return *launcher_->client(); }

  QTemporaryDir directory;
  RecordingHost host;

 private:
  std::unique_ptr<Launcher> launcher_;
};

}  // namespace lens
