#pragma once

#include "host/Command.h"
#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace pelmora::host {

/// Runs commands as from a command line, with a home of the test's own.
class CommandFixture : public testing::Test {
 protected:
  struct Outcome {
    ExitStatus status = ExitStatus::failure;
    std::string out;
    std::string error;
  };

  CommandFixture() {
    for (const char* name : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_PICTURES_DIR"})
      unsetenv(name);
    setenv("HOME", home.path().c_str(), 1);
  }

  /// The command's words, its name first.
  static Outcome run(std::vector<std::string> words) {
    words.insert(words.begin(), "pelmora");
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const ExitStatus status = runProgram(pointers);
    return {status, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
  }

  platform::TemporaryFolder home;
};

}  // namespace pelmora::host
