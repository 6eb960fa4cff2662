#pragma once

#include "platform/FileDescriptor.h"
#include "shared/FilePath.h"
#include "shared/ReferenceTime.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace pelmora::platform {
class Clock;
class UserFolders;
}  // namespace pelmora::platform

namespace pelmora::view {

/// Tells how often images were shown on a screen: a text file (UTF-8) of folders, names and
/// frequencies, which every run appends to. It is switched off (`PelmoraView::logFrequencies`), so
/// nothing makes one. Thread: main. Ownership: the clock outlives it. Errors: what cannot be made
/// or opened is left, and then nothing is written.
class LogFile {
 public:
  /// Opens the log of a screen, of the preview where the index is 0, at its end; makes it where
  /// there is none, in the folder of the application in the user's caches.
  LogFile(const platform::Clock& clock, const platform::UserFolders& userFolders,
          std::uint64_t screenIndex, std::string_view appName);

  /// Writes the span of time that the log is for: from its start to now.
  void writeHeader();
  void close();

  /// Closed where there is none.
  [[nodiscard]] const platform::FileDescriptor& handle() const { return _handle; }
  [[nodiscard]] ReferenceTime startDate() const { return _startDate; }
  void setStartDate(ReferenceTime date) { _startDate = date; }

 private:
  const platform::Clock& _clock;
  platform::FileDescriptor _handle;
  ReferenceTime _startDate;
};

/// Writes text as it is to an open file. Nothing where it is empty, or the handle is closed.
void writeToFileHandle(std::string_view text, const platform::FileDescriptor& handle);

}  // namespace pelmora::view
