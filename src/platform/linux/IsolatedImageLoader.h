#pragma once

#include "platform/Image.h"
#include "platform/linux/InspectedPicture.h"

#include <chrono>
#include <memory>

namespace pelmora::platform {

class PatientFiles;

/// Loads pictures in a process of their own, which has no files, no network and bounded memory and
/// time (`decoder/`), so that a hostile file costs one failed load: `program` is started when it is
/// first needed and kept; one that crashed, hung, or answered nonsense is ended, and the next
/// request starts another. Nothing that it says is trusted.
/// Only regular files are opened, without waiting for whoever may hold the other end of a pipe.
/// Thread: any, several at once, each with a process of its own (idle ones are kept for reuse).
/// Errors: one short line for a person; nothing is thrown.
class IsolatedImageLoader : public ImageLoader {
 public:
  struct Settings {
    FilePath program;
    const PatientFiles* files = nullptr;         // by which to open them; null: directly
    std::chrono::milliseconds deadline{10'000};  // for one picture; then its process is ended
  };

  explicit IsolatedImageLoader(Settings settings);
  ~IsolatedImageLoader() override;

  [[nodiscard]] Result<Image> load(const FilePath& file, int longestSide) override;
  /// False since no process could be started, or the one that was ended without having looked at
  /// anything, or since no file could be opened for want of descriptors or memory.
  [[nodiscard]] bool isAtWork() const override;
  [[nodiscard]] Result<InspectedPicture> inspect(const FilePath& file, int longestSide);
  /// Gives up what is being loaded, and loads nothing more: for the end of a run.
  void giveUp();

 private:
  struct State;
  std::unique_ptr<State> _state;
};

}  // namespace pelmora::platform
