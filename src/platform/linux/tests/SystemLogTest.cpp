#include "platform/linux/SystemLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <syslog.h>

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace {

std::mutex systemLinesMutex;
std::vector<std::string> systemLines;

void keepSystemLine(int priority, const char* format, va_list arguments) {
  char line[1024];
  std::vsnprintf(line, sizeof line, format, arguments);
  const std::lock_guard lock(systemLinesMutex);
  systemLines.push_back(std::to_string(priority) + " " + line);
}

}  // namespace

// These take the place of the C library's functions in this program, so that no test writes to the
// log of the machine. Which of them is called depends on the options of the compiler.
extern "C" void syslog(int priority, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  keepSystemLine(priority, format, arguments);
  va_end(arguments);
}

extern "C" void __syslog_chk(int priority, int, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  keepSystemLine(priority, format, arguments);
  va_end(arguments);
}

namespace pelmora::platform {

namespace {

/// What is written to the system's log and to standard error while it lives.
class Capture {
 public:
  Capture() {
    testing::internal::CaptureStderr();
    systemLines.clear();
  }
  std::string standardError() { return testing::internal::GetCapturedStderr(); }
};

}  // namespace

TEST(SystemLog, writesToTheSystemsLogAloneWithoutATerminal) {
  Capture capture;
  SystemLog log;
  log.write("Pelmora: one");
  log.write("two\nlines %n");
  EXPECT_EQ(capture.standardError(), "");
  const std::string notice = std::to_string(LOG_NOTICE) + " ";
  EXPECT_THAT(systemLines,
              testing::ElementsAre(notice + "Pelmora: one", notice + "two\\x0Alines %n"));
}

TEST(SystemLog, writesOneLineToStandardErrorWhenAsked) {
  Capture capture;
  SystemLog log(SystemLog::StandardError::always);
  log.write("Pelmora: one");
  log.write("two\nlines \x1B[31m");
  EXPECT_EQ(capture.standardError(), "Pelmora: one\ntwo\\x0Alines \\x1B[31m\n");
}

TEST(SystemLog, takesNoLineForAFormat) {
  Capture capture;
  SystemLog log(SystemLog::StandardError::always);
  log.write("/p/%n%s%s%999999d.jpg");
  log.print("%s", "100 %n");
  EXPECT_EQ(capture.standardError(), "/p/%n%s%s%999999d.jpg\n100 %n\n");
}

TEST(SystemLog, mixesNoLinesOfSeveralThreads) {
  Capture capture;
  SystemLog log(SystemLog::StandardError::always);
  const std::string line(200, 'x');
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int turn = 0; turn < 25; ++turn) log.write(line);
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::string expected;
  for (int i = 0; i < 100; ++i) expected += line + '\n';
  EXPECT_EQ(capture.standardError(), expected);
  EXPECT_EQ(systemLines.size(), 100U);
}

}  // namespace pelmora::platform
