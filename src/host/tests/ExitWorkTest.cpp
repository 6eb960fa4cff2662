#include "host/ExitWork.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace pelmora::host {

namespace {

void say(const char* word) { std::fputs(word, stderr); }

}  // namespace

TEST(ExitWorkDeathTest, isDoneWhenALibraryEndsTheProcess) {
  EXPECT_EXIT(
      {
        const ExitWork work([] { say("the work"); });
        std::exit(EXIT_SUCCESS);
      },
      testing::ExitedWithCode(EXIT_FAILURE), "the work");
}

TEST(ExitWorkDeathTest, isDoneBeforeWhatWasMadeLaterGoes) {
  EXPECT_EXIT(
      {
        const ExitWork work([] { say("the work"); });
        std::atexit([] { say("too late, "); });
        std::exit(EXIT_SUCCESS);
      },
      testing::ExitedWithCode(EXIT_FAILURE), "^the work$");
}

TEST(ExitWorkDeathTest, isNotDoneAfterAnOrdinaryEnd) {
  EXPECT_EXIT(
      {
        {
          const ExitWork work([] { say("the work"); });
        }
        std::atexit([] { say("nothing else"); });
        std::exit(EXIT_SUCCESS);
      },
      testing::ExitedWithCode(EXIT_SUCCESS), "^nothing else$");
}

}  // namespace pelmora::host
