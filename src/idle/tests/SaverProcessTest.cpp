#include "idle/SaverProcess.h"

#include "platform/fake/TemporaryFolder.h"

#include <QCoreApplication>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <thread>

namespace pelmora::idle {

namespace {

class SaverProcessTest : public testing::Test {
 protected:
  static std::string waitForEnd(const std::optional<std::string>& how) {
    while (!how) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return *how;
  }
  static std::string run(const std::string& script) {
    SaverProcess saver("/bin/sh", {"-c", script});
    std::optional<std::string> how;
    saver.start([&how](const std::string& told) { how = told; });
    return waitForEnd(how);
  }
  [[nodiscard]] std::string textOf(const std::string& path) const {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    return line;
  }

  char word[2] = "t";
  char* words[2] = {word, nullptr};
  int count = 1;
  QCoreApplication application{count, words};
  platform::TemporaryFolder folder;
  const std::string told = folder.path().bytes() + "/told";
};

}  // namespace

TEST_F(SaverProcessTest, tellsHowItEnded) {
  EXPECT_EQ(run("exit 0"), "has ended");
  EXPECT_EQ(run("exit 3"), "has ended with status 3");
  EXPECT_EQ(run("kill -SEGV $$"), "was ended by signal 11");
}

TEST_F(SaverProcessTest, tellsThatItCannotBeStarted) {
  SaverProcess saver("/nonexistent", {});
  std::optional<std::string> how;
  saver.start([&how](const std::string& text) { how = text; });
  EXPECT_FALSE(how.has_value()) << "not before it was started";
  EXPECT_EQ(waitForEnd(how).find("cannot be started: "), 0U);
}

TEST_F(SaverProcessTest, passesItsArgumentsOn) {
  SaverProcess saver("/bin/sh", {"-c", "echo \"$1\" >\"$0\"", told, "a b"});
  std::optional<std::string> how;
  saver.start([&how](const std::string& text) { how = text; });
  EXPECT_EQ(waitForEnd(how), "has ended");
  EXPECT_EQ(textOf(told), "a b");
}

TEST_F(SaverProcessTest, canBeAskedToEndThoughThisProcessBlocksThatSignal) {
  sigset_t ending;
  sigset_t before;
  sigemptyset(&ending);
  sigaddset(&ending, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &ending, &before);
  SaverProcess saver("/bin/sh", {"-c", "while :; do read -r x <\"$0\"; done", "/dev/zero"});
  std::optional<std::string> how;
  saver.start([&how](const std::string& text) { how = text; });
  saver.stop();
  EXPECT_EQ(waitForEnd(how), "was ended by signal 15");
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST_F(SaverProcessTest, killsWhatDoesNotListen) {
  SaverProcess saver("/bin/sh",
                     {"-c", "trap '' TERM; echo ready >\"$0\"; while :; do :; done", told});
  std::optional<std::string> how;
  saver.start([&how](const std::string& text) { how = text; });
  while (textOf(told) != "ready") QCoreApplication::processEvents();
  saver.stop();
  saver.kill();
  EXPECT_EQ(waitForEnd(how), "was ended by signal 9");
}

TEST_F(SaverProcessTest, canBeStartedAgainWhenItHasEnded) {
  SaverProcess saver("/bin/sh", {"-c", "exit 0"});
  int ends = 0;
  const std::function<void(const std::string&)> again = [&](const std::string&) {
    if (++ends < 3) saver.start(again);
  };
  saver.start(again);
  while (ends < 3) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  EXPECT_EQ(ends, 3);
}

TEST_F(SaverProcessTest, endsWithThisProcessHoweverThatEnds) {
  const pid_t watcher = fork();
  if (watcher == 0) {
    SaverProcess saver("/bin/sh",
                       {"-c", "echo $$ >\"$0\"; trap '' TERM HUP; while :; do :; done", told});
    saver.start([](const std::string&) {});
    for (;;) QCoreApplication::processEvents();
  }
  while (textOf(told).empty()) std::this_thread::yield();
  const pid_t child = std::stoi(textOf(told));
  ::kill(watcher, SIGKILL);
  waitpid(watcher, nullptr, 0);
  // Gone, or dead and not yet buried by the one that inherited it.
  const std::string stat = "/proc/" + std::to_string(child) + "/stat";
  while (std::filesystem::exists(stat) && textOf(stat).find(") Z ") == std::string::npos) {
    std::this_thread::yield();
  }
  EXPECT_NE(child, 0);
}

}  // namespace pelmora::idle
