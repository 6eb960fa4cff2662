#pragma once

#include "platform/FileDescriptor.h"
#include "shared/FilePath.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>

namespace pelmora::platform {

/// What the kernel tells of folders' files (inotify). Thread: one. Owns: its descriptor, and with
/// it all its watches. Errors: where no queue can be had there is no descriptor, and no folder can
/// be added.
class InotifyQueue {
 public:
  /// The kernel's number of a watched folder; it is not given a second time.
  using Watch = int;

  enum class Kind {
    changed,  // something about the files in the folder, or about itself
    moved,    // the folder was renamed: the watch goes along
    gone,     // the folder was removed or unmounted, or its watch was: it tells no more
    lost      // more happened than the kernel keeps; of no watch
  };
  struct Event {
    Watch watch = -1;
    Kind kind = Kind::changed;
  };

  InotifyQueue();

  /// Readable when there are events; negative where there is no queue.
  [[nodiscard]] int descriptor() const { return _descriptor.get(); }

  /// Links are followed. The same watch for every path that leads to a folder; nullopt for what is
  /// no folder, may not be read or is one too many.
  [[nodiscard]] std::optional<Watch> add(const FilePath& folder) const;
  void remove(Watch watch) const;

  /// Calls `take` with the events that wait, about a megabyte of them at most. Never waits.
  void read(const std::function<void(const Event&)>& take) const;

  /// Takes the first event that matters off the kernel's bytes; nullopt when there is none, or it
  /// is cut off.
  [[nodiscard]] static std::optional<Event> takeEvent(std::span<const std::byte>& bytes);

 private:
  FileDescriptor _descriptor;
};

}  // namespace pelmora::platform
