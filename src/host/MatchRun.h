#pragma once

#include "platform/Files.h"
#include "platform/MetadataQuery.h"
#include "platform/NotificationCenter.h"

#include <functional>
#include <string>
#include <vector>

namespace pelmora::host {

/// What `pelmora match` is asked for.
struct MatchRequest {
  platform::predicate::Predicate predicate = {};
  std::vector<std::string> folders = {};  // as they were given
};

/// What it needs to find that out, and to tell it.
struct MatchTools {
  const platform::Files& files;
  platform::MetadataSearch& metadata;
  platform::NotificationCenter& notifications;  // where its queries post
  std::function<void(const std::string& path)> tell;
  std::function<void(const std::string& problem)> complain;
  std::function<void(const platform::IndexProgress&)> progress;  // now and then
};

/// Finds the files in folders for which a predicate holds, by a query as the saver makes. Thread:
/// one. Ownership: request and tools outlive it. Errors: a folder that cannot be read is complained
/// of, and the others are searched.
class MatchRun {
 public:
  MatchRun(const MatchRequest& request, const MatchTools& tools)
      : _request(request), _tools(tools) {}

  /// Tells the files' paths as the folders were given, sorted by their bytes; one that is reached
  /// through several folders is told once, by the first. Gives back whether every folder could be
  /// read.
  [[nodiscard]] bool run();

 private:
  /// A file that the saver would try to show.
  struct Found {
    std::string path;
    std::size_t folder = 0;  // of those that were given: the first it is reached through
    std::string shown = {};
  };
  class Gathering;

  void find(const std::string& word);
  void complain(const std::string& path, const std::string& why);
  [[nodiscard]] std::vector<std::string> matches() const;

  const MatchRequest& _request;
  const MatchTools& _tools;
  std::vector<Found> _found;
  bool _isAllWell = true;
};

}  // namespace pelmora::host
