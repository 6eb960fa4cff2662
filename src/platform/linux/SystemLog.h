#pragma once

#include "platform/Log.h"

namespace pelmora::platform {

/// The system's log, by syslog(3) under the name "pelmora", and standard error when it is a
/// terminal or is asked for. Every line is made printable. One at a time: the name is the
/// process's. Thread: any.
class SystemLog : public Log {
 public:
  enum class StandardError { whenTerminal, always };

  explicit SystemLog(StandardError standardError = StandardError::whenTerminal);
  ~SystemLog() override;
  SystemLog(const SystemLog&) = delete;
  SystemLog& operator=(const SystemLog&) = delete;

  void write(std::string_view line) override;

 private:
  const bool _toStandardError;
};

}  // namespace pelmora::platform
