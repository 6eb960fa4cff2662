#include "platform/linux/index/EmbeddedTags.h"

#include <fcntl.h>

#include <utility>

namespace pelmora::platform {

namespace {

std::vector<std::string> tagsIn(const metadata::FileMetadata& metadata) {
  std::vector<std::string> tags;
  for (const predicate::Constant& tag : metadata.values("kMDItemUserTags")) {
    tags.push_back(*tag.get<std::string>());
  }
  return tags;
}

}  // namespace

EmbeddedTags::EmbeddedTags(const FilePath& program, const Clock& clock, Log& log,
                           std::chrono::milliseconds deadline)
    : _log(log),
      _inspector({program, deadline}),
      _patient([this](auto files, const auto& take) { return _inspector.inspect(files, take); },
               clock, log) {}

std::vector<std::string> EmbeddedTags::read(const FilePath& file) {
  // Without O_NONBLOCK, opening a named pipe would wait for its writer.
  const FileDescriptor open(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  if (!open.isOpen()) return {};
  std::vector<std::string> tags;
  const std::lock_guard lock(_mutex);
  _patient.inspect({&open, 1}, [&](std::size_t, Result<metadata::FileMetadata> embedded) {
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
