// Where the lines of a command go. They are gathered and handed on in large pieces; a receiver that takes no
// more (a closed pipe, a full disk) ends the command with an error that names it.
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QString>
#include <functional>

namespace lens {

class Output {
 public:
  // The name stands in the error.
  Output(QIODevice& device, QString name) : device_(device), name_(std::move(name)) {}
  // For a person who looks on: each line is handed on at once, and this is run before it.
  void showEachLine(std::function<void()> before) {
    before_ = std::move(before);
    eachLine_ = true;
  }
  // What was not flushed is lost: a command that failed has said so.
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  // All raise 57 with name and reason when the receiver does not take everything.
  void write(QByteArrayView bytes);
  void line(QByteArrayView bytes);
  void flush();
  // The same at the end of a command that failed otherwise and has said so.
  void finish() { handOn(); }
  // Raises when something was not taken already.
  void requireWhole() const;

  // The same without raising, for writers that do not know of it; false once something was not taken.
  bool take(QByteArrayView bytes);
  const QString& name() const { return name_; }
  QString reason() const { return device_.errorString(); }

 private:
  bool handOn();
  [[noreturn]] void fail() const;

  QIODevice& device_;
  QString name_;
  bool eachLine_ = false;
  std::function<void()> before_;
  bool failed_ = false;
  QByteArray gathered_;
};

// An output as a device, for writers of whole files.
class OutputDevice : public QIODevice {
 public:
  explicit OutputDevice(Output& output) : output_(output) {
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
  }
  bool isSequential() const override { return true; }

 protected:
  qint64 readData(char*, qint64) override { return -1; }
  qint64 writeData(const char* bytes, qint64 size) override;

 private:
  Output& output_;
};

}  // namespace lens
