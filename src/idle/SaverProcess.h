#pragma once

#include "idle/Saver.h"

#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pelmora::idle {

/// A child process: it ends with this process, however this one ends.
/// Thread: main, which lasts as long as the process does.
class SaverProcess : public Saver {
 public:
  /// The program's path and what to pass to it, as bytes.
  SaverProcess(std::string program, std::vector<std::string> arguments);
  ~SaverProcess() override;
  SaverProcess(const SaverProcess&) = delete;
  SaverProcess& operator=(const SaverProcess&) = delete;

  void start(std::function<void(const std::string& how)> ended) override;
  void stop() override;
  void kill() override;

 private:
  void finish(const std::string& how);

  const std::string _program;
  const std::vector<std::string> _arguments;
  std::unique_ptr<QProcess> _process;  // null while there is none
  std::function<void(const std::string& how)> _ended;
};

}  // namespace pelmora::idle
