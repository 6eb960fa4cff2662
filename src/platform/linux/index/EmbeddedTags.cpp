#include "platform/linux/index/EmbeddedTags.h"

#include "platform/linux/PatientFiles.h"
#include "platform/SystemError.h"

#include <fcntl.h>

#include <utility>

namespace pelmora::platform {

namespace {

FileDescriptor openFile(const FilePath& file) {
  // Without O_NONBLOCK, opening a named pipe would wait for its writer.
  return FileDescriptor(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
}

std::vector<std::string> tagsIn(const metadata::FileMetadata& metadata) {
  std::vector<std::string> tags;
  for (const predicate::Constant& tag : metadata.values("kMDItemUserTags")) {
    tags.push_back(*tag.get<std::string>());
  }
  return tags;
}

}  // namespace

EmbeddedTags::EmbeddedTags(const FilePath& program, const Clock& clock, Log& log,
                           std::chrono::milliseconds deadline, const PatientFiles* files)
    : _program(program),
      _deadline(deadline),
      _files(files),
      _log(log),
      _patient([this](auto opened, const auto& take) { return inspect(opened.front(), take); },
               clock, log) {}

/// Starts one inspector at most: whoever asks waits.
Status EmbeddedTags::inspect(const FileDescriptor& file, const PatientInspector::TakeNext& take) {
  if (_process && _process->hasEnded()) _process.reset();
  if (!_process) {
    Result<InspectorProcess> process = InspectorProcess::start(_program, _deadline, _late);
    if (!process) return process.error();
    _process.emplace(*std::move(process));
  }
  if (const int error = _process->ask(file.get()); error != 0) {
    _process.reset();
    return Error{"its inspector cannot be asked: " + systemErrorText(error)};
  }
  InspectorProcess::Answer answer = _process->next();
  if (!_process->isAlive()) _process.reset();
  if (!answer.wasTaken) return answer.metadata.error();
  take(0, std::move(answer.metadata));
  return Done{};
}

std::vector<std::string> EmbeddedTags::read(const FilePath& file) {
  const auto opened = _files ? _files->wait(file, [file] { return openFile(file); })
                             : std::optional(openFile(file));
  if (!opened || !opened->isOpen()) return {};
  std::vector<std::string> tags;
  const std::lock_guard lock(_mutex);
  _patient.inspect({&*opened, 1}, [&](std::size_t, EmbeddedMetadata embedded) {
    if (embedded) {
      tags = tagsIn(*embedded);
    } else {
      _log.print("Pelmora: Cannot read the tags of '%s': %s", file.c_str(),
                 embedded.error().message.c_str());
    }
  });
  return tags;
}

}  // namespace pelmora::platform
