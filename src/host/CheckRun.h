#pragma once

#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/linux/IsolatedImageLoader.h"
#include "platform/Workspace.h"

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace pelmora::host {

/// What `pelmora check` is asked for.
struct CheckRequest {
  std::vector<std::string> words;  // files and folders, as they were given
  int longestSide = 0;             // in pixels
  FilePath out = {};               // where to write what would be shown; empty: nowhere
};

/// What it needs to find that out, and to tell it.
struct CheckTools {
  using Inspect =
      std::function<Result<platform::InspectedPicture>(const FilePath& file, int longestSide)>;

  const platform::Clock& clock;
  const platform::Files& files;
  const platform::Workspace& workspace;
  Inspect inspect;
  std::function<void(const std::string& line)> tell;         // a line for each picture
  std::function<void(const std::string& problem)> complain;  // of what could not be written
};

/// Looks at pictures as the saver would, one after the other, and tells of each.
/// Thread: one. Ownership: request and tools outlive it. Errors: told in the lines, counted.
class CheckRun {
 public:
  CheckRun(const CheckRequest& request, const CheckTools& tools)
      : _request(request), _tools(tools) {}

  /// Whether every picture can be shown, every folder be read, and every file be written.
  [[nodiscard]] bool run();

 private:
  [[nodiscard]] Status prepareOut() const;
  void checkWord(const std::string& word);
  void checkFile(const FilePath& file, const std::string& shownPath);
  void refuse(const std::string& shownPath, const Error& why);
  void writeOut(const FilePath& file, const platform::Image& image);
  [[nodiscard]] std::string nameFor(const FilePath& file);

  const CheckRequest& _request;
  const CheckTools& _tools;
  std::set<std::string, std::less<>> _namesWritten;
  bool _isAllWell = true;
};

}  // namespace pelmora::host
