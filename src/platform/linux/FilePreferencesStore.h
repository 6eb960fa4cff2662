#pragma once

#include "platform/FileContents.h"
#include "platform/Log.h"
#include "platform/PreferencesStore.h"
#include "shared/FilePath.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>

namespace pelmora::platform {

/// XDG_CONFIG_HOME/Pelmora/Preferences.plist, or that in ~/.config; empty, which reads as never
/// written and cannot be, when the environment tells neither folder.
[[nodiscard]] FilePath defaultPreferencesPath();

/// Preferences in one property list file, written in the binary form and read in that or in XML.
/// The file (0600) and its folder (0700) are made when there is something to write. Other processes
/// may write it too: a change is seen at the next read, and `synchronize` puts only the keys
/// changed here into what the file then holds, under a lock on a file beside it. A damaged file is
/// logged and copied to "<file>.damaged", and what it held reads as never written. Thread: main.
class FilePreferencesStore : public PreferencesStore {
 public:
  static constexpr std::chrono::milliseconds kPatience{3'000};

  /// `patience`: how long another process that writes is waited for.
  FilePreferencesStore(FilePath file, Log& log, std::chrono::milliseconds patience = kPatience);

  void registerDefaults(plist::Dictionary defaults) override;
  [[nodiscard]] std::optional<plist::Value> objectForKey(std::string_view key) const override;
  [[nodiscard]] plist::Dictionary storedValues() const override;
  void setObject(std::string_view key, plist::Value value) override;
  void removeObject(std::string_view key) override;
  /// An error when the file can be neither read nor written, or another process does not end to
  /// write it; the changes then wait for the next call.
  Status synchronize() override;

 private:
  void reload() const;
  void parse(const FileContents& contents) const;
  void keepDamaged(const FileContents& contents, const std::string& reason) const;

  const FilePath _file;
  Log& _log;
  const std::chrono::milliseconds _patience;
  plist::Dictionary _defaults;
  /// Set or, where there is no value, removed since the last `synchronize`.
  std::map<std::string, std::optional<plist::Value>, std::less<>> _changes;

  // What was last seen of the file.
  mutable std::optional<FileStamp> _stamp;
  mutable plist::Dictionary _stored;
  mutable bool _isReadable = true;
};

}  // namespace pelmora::platform
