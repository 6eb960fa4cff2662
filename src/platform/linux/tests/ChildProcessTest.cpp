#include "platform/linux/ChildProcess.h"

#include "platform/linux/tests/ChildrenCount.h"
#include "platform/linux/tests/FakeDecoder.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <optional>
#include <string>

namespace pelmora::platform {

namespace {

using std::chrono::milliseconds;

const FilePath kFakeDecoder(PELMORA_FAKE_DECODER);
constexpr milliseconds kLong{10'000};

}  // namespace

TEST(ChildProcess, endsWithTheSocket) {
  LateChildren late;
  auto child = ChildProcess::start(kFakeDecoder, late);
  ASSERT_TRUE(child.ok()) << child.error().message;
  EXPECT_GT(child->id(), 0);
  shutdown(child->socket(), SHUT_RDWR);
  EXPECT_EQ(child->end(kLong), 0);
  EXPECT_FALSE(hasChildren());
}

TEST(ChildProcess, isEndedWhenItHasNoMorePatience) {
  LateChildren late;
  auto child = ChildProcess::start(kFakeDecoder, late);
  ASSERT_TRUE(child.ok());
  EXPECT_EQ(child->end(milliseconds(0)), std::nullopt);
  EXPECT_EQ(child->end(kLong), std::nullopt);
  EXPECT_FALSE(hasChildren());
}

TEST(ChildProcess, tellsTheSignalThatItDiedOf) {
  LateChildren late;
  auto child = ChildProcess::start(kFakeDecoder, late);
  ASSERT_TRUE(child.ok());
  kill(child->id(), SIGTERM);
  const auto status = child->end(kLong);
  ASSERT_TRUE(status);
  EXPECT_EQ(describeEnd(*status), "crashed (Terminated)");
}

TEST(ChildProcess, leavesNothingBehind) {
  LateChildren late;
  const std::size_t before = openDescriptors();
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(ChildProcess::start(kFakeDecoder, late).ok());
  EXPECT_EQ(openDescriptors(), before);
  EXPECT_FALSE(hasChildren());
  EXPECT_EQ(late.collect(), 0U);
}

TEST(ChildProcess, inheritsNoSignalMask) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  LateChildren late;
  auto child = ChildProcess::start(kFakeDecoder, late);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  ASSERT_TRUE(child.ok());
  std::ifstream status("/proc/" + std::to_string(child->id()) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (!line.starts_with("SigBlk:")) continue;
    EXPECT_EQ(line, "SigBlk:\t0000000000000000");
  }
}

TEST(ChildProcess, isToldTheZoneOfTheSystemWhereNoneIsSet) {
  const auto zoneIn = [] {
    LateChildren late;
    const auto child = ChildProcess::start(kFakeDecoder, late);
    if (!child) return child.error().message;
    // The kernel tells of a child's environment a moment after the child has started.
    constexpr int kTries = 100'000;
    for (int i = 0; i < kTries; ++i) {
      std::ifstream environment("/proc/" + std::to_string(child->id()) + "/environ");
      for (std::string line; std::getline(environment, line, '\0');) {
        if (line.starts_with("TZ=")) return line;
      }
    }
    return std::string("none");
  };
  const char* const before = getenv("TZ");
  const std::optional<std::string> kept = before ? std::optional(before) : std::nullopt;
  unsetenv("TZ");
  EXPECT_EQ(zoneIn(), "TZ=:/etc/localtime");
  setenv("TZ", "Europe/Berlin", 1);
  EXPECT_EQ(zoneIn(), "TZ=Europe/Berlin");
  if (kept) {
    setenv("TZ", kept->c_str(), 1);
  } else {
    unsetenv("TZ");
  }
}

TEST(ChildProcess, saysWhyAProgramCannotBeStarted) {
  LateChildren late;
  const std::size_t before = openDescriptors();
  EXPECT_EQ(ChildProcess::start(FilePath("/nonexistent/decoder"), late).error().message,
            "the program /nonexistent/decoder cannot be started (No such file or directory)");
  EXPECT_EQ(ChildProcess::start(FilePath("/"), late).error().message,
            "the program / cannot be started (Permission denied)");
  EXPECT_EQ(openDescriptors(), before);
  EXPECT_FALSE(hasChildren());
}

TEST(ChildProcess, thatAnybodyElseWaitedForIsNoTrouble) {
  LateChildren late;
  auto child = ChildProcess::start(kFakeDecoder, late);
  ASSERT_TRUE(child.ok());
  kill(child->id(), SIGKILL);
  ASSERT_EQ(waitpid(child->id(), nullptr, 0), child->id());
  EXPECT_EQ(child->end(kLong), std::nullopt);
}

TEST(LateChildren, areForgottenWhenTheyAreThrough) {
  LateChildren late;
  LateChildren others;
  auto child = ChildProcess::start(kFakeDecoder, others);
  ASSERT_TRUE(child.ok());
  late.add(FileDescriptor(static_cast<int>(syscall(SYS_pidfd_open, child->id(), 0))));
  EXPECT_EQ(late.collect(), 1U);
  kill(child->id(), SIGKILL);
  siginfo_t facts{};
  ASSERT_EQ(waitid(P_PID, static_cast<id_t>(child->id()), &facts, WEXITED | WNOWAIT), 0);
  EXPECT_EQ(late.collect(), 0U);
  EXPECT_FALSE(hasChildren());
}

TEST(ChildProcess, describesItsEnd) {
  EXPECT_EQ(describeEnd(W_EXITCODE(0, SIGSEGV)), "crashed (Segmentation fault)");
  EXPECT_EQ(describeEnd(W_EXITCODE(3, 0)), "ended (status 3)");
  EXPECT_EQ(describeEnd(W_EXITCODE(0, 40)), "crashed (unknown signal)");
}

}  // namespace pelmora::platform
