#pragma once

#include "platform/fake/RecordingLog.h"
#include "platform/fake/TemporaryFolder.h"

#include <QCoreApplication>

#include <sys/types.h>

#include <optional>
#include <string>

namespace pelmora::desktop {

/// A bus of one test's own. Thread: one.
class TestBus {
 public:
  TestBus();
  ~TestBus() { kill(); }
  TestBus(const TestBus&) = delete;
  TestBus& operator=(const TestBus&) = delete;

  [[nodiscard]] const std::string& address() const { return _address; }
  /// Ends it, as with the session.
  void kill();

 private:
  char _word[2] = "t";
  char* _words[2] = {_word, nullptr};
  int _count = 1;
  std::optional<QCoreApplication> _application;  // where there is none: threads of Qt's want one
  platform::TemporaryFolder _folder;
  pid_t _process = -1;
  std::string _address;
};

}  // namespace pelmora::desktop
