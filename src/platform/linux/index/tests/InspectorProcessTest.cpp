#include "platform/linux/index/InspectorProcess.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/index/tests/ToldFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace pelmora::platform {

using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr std::chrono::milliseconds kLong{20'000};
constexpr std::chrono::milliseconds kShort{500};

class InspectorProcessTest : public testing::Test {
 protected:
  InspectorProcess start(std::chrono::milliseconds deadline = kLong) {
    return InspectorProcess::start(FilePath(PELMORA_FAKE_INSPECTOR), deadline, late).value();
  }
  /// One whose name tells how it begins.
  InspectorProcess startAs(const char* name, std::chrono::milliseconds deadline = kLong) {
    const FilePath program = folder.link(name, PELMORA_FAKE_INSPECTOR);
    return InspectorProcess::start(program, deadline, late).value();
  }

  static InspectorProcess::Answer ask(InspectorProcess& process, std::string_view text) {
    EXPECT_EQ(process.ask(telling(text).get()), 0);
    return process.next();
  }

  /// What is said of a file, of which the inspector is ended.
  std::string lastWord(std::string_view text, std::chrono::milliseconds deadline = kLong) {
    InspectorProcess process = start(deadline);
    const auto answer = ask(process, text);
    EXPECT_TRUE(answer.wasTaken) << text;
    EXPECT_FALSE(process.isAlive()) << text;
    return answer.metadata ? "" : answer.metadata.error().message;
  }

  LateChildren late;
  TemporaryFolder folder;
};

}  // namespace

TEST_F(InspectorProcessTest, answersInTheOrderOfTheQuestions) {
  InspectorProcess process = start();
  for (const char* text : {"3", "1", "2"}) ASSERT_EQ(process.ask(telling(text).get()), 0);
  EXPECT_EQ(process.ahead(), 3U);
  for (const int rating : {3, 1, 2}) EXPECT_EQ(*process.next().metadata, rated(rating));
  EXPECT_EQ(process.ahead(), 0U);
  EXPECT_TRUE(process.isAlive());
  EXPECT_FALSE(process.hasEnded());
}

TEST_F(InspectorProcessTest, goesOnAfterAFailure) {
  InspectorProcess process = start();
  EXPECT_EQ(ask(process, "fail").metadata.error().message, "it is damaged");
  EXPECT_EQ(ask(process, "fail with control characters").metadata.error().message,
            "it\\x0Ais \\x1B[31mbad");
  EXPECT_EQ(*ask(process, "4").metadata, rated(4));
}

TEST_F(InspectorProcessTest, isNotAskedAgainWhenItLeaves) {
  InspectorProcess process = start();
  EXPECT_TRUE(ask(process, "leave").metadata.ok());
  EXPECT_FALSE(process.isAlive());
}

TEST_F(InspectorProcessTest, saysHowItEnded) {
  EXPECT_EQ(lastWord("die"), "its inspector crashed (Segmentation fault)");
  EXPECT_EQ(lastWord("die of the time limit"), "reading it took longer than 20 s");
  EXPECT_EQ(lastWord("end with status 7"), "its inspector ended (status 7)");
  EXPECT_EQ(lastWord("close and live on"), "its inspector gave no answer");
  EXPECT_EQ(lastWord("hang", kShort), "reading it took longer than 0.5 s");
}

TEST_F(InspectorProcessTest, tellsWhatNeedNotBeTheFilesFault) {
  const auto isPassing = [this](std::string_view text, std::chrono::milliseconds deadline = kLong) {
    InspectorProcess process = start(deadline);
    return ask(process, text).metadata.isPassing;
  };
  EXPECT_TRUE(isPassing("hang", kShort));
  EXPECT_TRUE(isPassing("die of the time limit"));
  EXPECT_TRUE(isPassing("die of the disk"));
  for (const char* text : {"die", "fail", "nonsense", "end with status 7", "4"}) {
    EXPECT_FALSE(isPassing(text)) << text;
  }
}

TEST_F(InspectorProcessTest, believesNothingThatIsWrong) {
  for (const char* text :
       {"another magic", "another serial", "the serial before", "no outcome", "no flag",
        "half a reply", "nonsense", "half of the metadata", "too much", "far too much",
        "a descriptor", "no reason", "an endless reason"}) {
    EXPECT_THAT(lastWord(text), StartsWith("its inspector gave a wrong answer (")) << text;
  }
}

TEST_F(InspectorProcessTest, isFoundOutWhenItAnswersTwice) {
  InspectorProcess process = start();
  EXPECT_TRUE(ask(process, "answer twice").metadata.ok());
  EXPECT_THAT(ask(process, "4").metadata.error().message, HasSubstr("to another question"));
  EXPECT_FALSE(process.isAlive());
}

TEST_F(InspectorProcessTest, blamesNoFileForABadBegin) {
  for (const auto& [name, word] :
       {std::pair("dies-at-once", "its inspector crashed (Segmentation fault)"),
        std::pair("lacks-libraries", "its inspector cannot start its libraries"),
        std::pair("lacks-a-sandbox",
                  "its inspector cannot shut itself off from the system, and so does not start"),
        std::pair("is-unfriendly", "its inspector gave a wrong answer (to another question)"),
        std::pair("greets-with-a-failure", "its inspector gave a wrong answer (no greeting)"),
        std::pair("greets-with-a-gift", "its inspector gave a wrong answer (no greeting)")}) {
    InspectorProcess process = startAs(name);
    (void)process.ask(telling("3").get());
    const auto answer = process.next();
    EXPECT_FALSE(answer.wasTaken) << name;
    EXPECT_FALSE(process.isAlive()) << name;
    EXPECT_EQ(answer.metadata.error().message, word);
  }
}

TEST_F(InspectorProcessTest, blamesNoFileForOneThatDoesNotBegin) {
  InspectorProcess process = startAs("hangs-at-once", kShort);
  ASSERT_EQ(process.ask(telling("3").get()), 0);
  const auto answer = process.next();
  EXPECT_FALSE(answer.wasTaken);
  EXPECT_EQ(answer.metadata.error().message, "the start of its inspector took longer than 0.5 s");
}

TEST_F(InspectorProcessTest, cannotBeStartedWithoutAProgram) {
  const auto process = InspectorProcess::start(folder.path() / "nothing", kLong, late);
  EXPECT_THAT(process.error().message, HasSubstr("cannot be started"));
}

}  // namespace pelmora::platform
