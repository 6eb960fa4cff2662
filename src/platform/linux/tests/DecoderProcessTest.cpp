#include "platform/linux/DecoderProcess.h"

#include "platform/linux/tests/ChildrenCount.h"
#include "platform/linux/tests/FakeDecoder.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <csignal>

namespace pelmora::platform {

namespace {

using std::chrono::milliseconds;

const FilePath kFakeDecoder(PELMORA_FAKE_DECODER);
constexpr milliseconds kLong{10'000};

}  // namespace

class DecoderProcessTest : public testing::Test {
 protected:
  DecoderProcess start(milliseconds deadline = kLong) {
    return DecoderProcess::start(kFakeDecoder, deadline, late).value();
  }
  std::string reasonOf(DecoderProcess& decoder, int behaviour) {
    auto attempt = decoder.request(file.get(), behaviour);
    return attempt.picture ? "" : attempt.picture.error().message;
  }

  LateChildren late;
  const FileDescriptor file{open("/dev/null", O_RDONLY | O_CLOEXEC)};
};

TEST_F(DecoderProcessTest, givesPictureAfterPicture) {
  DecoderProcess decoder = start();
  for (int i = 0; i < 3; ++i) {
    const auto attempt = decoder.request(file.get(), kAnswersWell);
    ASSERT_TRUE(attempt.picture.ok()) << attempt.picture.error().message;
    EXPECT_TRUE(attempt.wasTaken);
    const InspectedPicture& picture = *attempt.picture;
    EXPECT_EQ(picture.image.size, (Size{kFakeWidth, kFakeHeight}));
    EXPECT_EQ(picture.image.pixels->size, (PixelSize{kFakeWidth, kFakeHeight}));
    EXPECT_EQ(picture.image.pixels->bytes.size(), 32U);
    EXPECT_EQ(picture.image.pixels->bytes[31], 31);
    EXPECT_EQ(picture.storedSize, (PixelSize{kFakeHeight, kFakeWidth}));
    EXPECT_EQ(picture.orientation, 6);
    EXPECT_EQ(picture.format, "FAKE");
    EXPECT_EQ(picture.profile, "Display P3");
    EXPECT_TRUE(decoder.isAlive());
  }
}

TEST_F(DecoderProcessTest, goesOnAfterAFileThatIsDamaged) {
  DecoderProcess decoder = start();
  EXPECT_EQ(reasonOf(decoder, kSaysItIsDamaged), "it is damaged");
  EXPECT_TRUE(decoder.request(file.get(), kAnswersWell).picture.ok());
}

TEST_F(DecoderProcessTest, hasNothingOfOursButItsSocket) {
  DecoderProcess decoder = start();
  ASSERT_EQ(reasonOf(decoder, kSaysItIsDamaged), "it is damaged");  // now it runs, and has no more
  const std::string folder = "/proc/" + std::to_string(decoder.id());
  std::size_t descriptors = 0;
  for ([[maybe_unused]] const auto& each : std::filesystem::directory_iterator(folder + "/fd")) {
    ++descriptors;
  }
  EXPECT_EQ(descriptors, 4U);
  std::ifstream environment(folder + "/environ");
  const std::string variables((std::istreambuf_iterator<char>(environment)), {});
  EXPECT_TRUE(variables.starts_with("LC_ALL=C"));
  EXPECT_EQ(variables.find("HOME="), std::string::npos);
}

TEST_F(DecoderProcessTest, keepsAPictureBeyondItsOwnEnd) {
  std::shared_ptr<const Pixels> pixels;
  {
    DecoderProcess decoder = start();
    pixels = decoder.request(file.get(), kAnswersWell).picture.value().image.pixels;
  }
  EXPECT_EQ(mappedPictures(), 1U);
  EXPECT_EQ(pixels->bytes[5], 5);
  pixels.reset();
  EXPECT_EQ(mappedPictures(), 0U);
}

TEST_F(DecoderProcessTest, isEndedWhenItTakesTooLong) {
  DecoderProcess decoder = start(milliseconds(100));
  EXPECT_EQ(reasonOf(decoder, kHangs), "decoding it took longer than 0.1 seconds");
  EXPECT_FALSE(decoder.isAlive());
  EXPECT_FALSE(hasChildren());
}

TEST_F(DecoderProcessTest, tellsWhatItDiedOf) {
  const auto reasonOfNew = [this](int behaviour) {
    DecoderProcess decoder = start();
    std::string reason = reasonOf(decoder, behaviour);
    EXPECT_FALSE(decoder.isAlive()) << reason;
    return reason;
  };
  EXPECT_EQ(reasonOfNew(kDiesAfterReading), "its decoder crashed (Segmentation fault)");
  EXPECT_EQ(reasonOfNew(kDiesAfterTheMemory), "its decoder crashed (Aborted)");
  EXPECT_EQ(reasonOfNew(kDiesOfItsTimeLimit), "decoding it took longer than 10 seconds");
  EXPECT_EQ(reasonOfNew(kFillsTheMemory), "its decoder crashed (File size limit exceeded)");
  EXPECT_EQ(reasonOfNew(kEndsOutOfMemory), "it needs more than 1024 MB of memory to decode");
  EXPECT_EQ(reasonOfNew(kEndsWithoutASandbox),
            "its decoder cannot shut itself off from the system, and so does not start");
  EXPECT_EQ(reasonOfNew(kEndsWithStatusSeven), "its decoder ended (status 7)");
  EXPECT_EQ(reasonOfNew(kClosesAndLivesOn), "its decoder gave no answer");
}

TEST_F(DecoderProcessTest, isEndedAfterSomeHundredPicturesHoweverWellItBehaves) {
  DecoderProcess decoder = start();
  const pid_t first = decoder.id();
  int answers = 0;
  for (; decoder.isAlive() && answers < 2000; ++answers) {
    ASSERT_EQ(decoder.id(), first);
    ASSERT_TRUE(decoder.request(file.get(), kAnswersWell).picture.ok());
  }
  EXPECT_EQ(answers, 500);
}

TEST_F(DecoderProcessTest, hasNoMoreTimeThanIsLeft) {
  DecoderProcess decoder = start();
  const Deadline passed(milliseconds(1));
  while (!passed.isOver()) {
  }
  EXPECT_EQ(decoder.request(file.get(), kHangs, passed).picture.error().message,
            "decoding it took longer than 10 seconds");
  EXPECT_FALSE(decoder.isAlive());
}

TEST_F(DecoderProcessTest, tellsARequestThatWasNotTaken) {
  DecoderProcess decoder = start();
  const auto attempt = decoder.request(file.get(), kDiesBeforeReading);
  EXPECT_FALSE(attempt.wasTaken);
  EXPECT_EQ(attempt.picture.error().message, "its decoder ended (status 9)");
  EXPECT_FALSE(decoder.isAlive());
}

TEST_F(DecoderProcessTest, noticesThatItWasEndedMeanwhile) {
  DecoderProcess decoder = start();
  ASSERT_TRUE(decoder.request(file.get(), kAnswersWell).picture.ok());
  kill(decoder.id(), SIGKILL);
  EXPECT_FALSE(decoder.request(file.get(), kAnswersWell).wasTaken);
  EXPECT_FALSE(decoder.isAlive());
  EXPECT_EQ(decoder.id(), 0);
  EXPECT_FALSE(decoder.request(file.get(), kAnswersWell).wasTaken);
}

TEST_F(DecoderProcessTest, isEndedAfterAWrongAnswer) {
  DecoderProcess decoder = start();
  EXPECT_EQ(reasonOf(decoder, kSendsAnotherSerial),
            "its decoder gave a wrong answer (to another question)");
  EXPECT_FALSE(decoder.isAlive());
  EXPECT_FALSE(hasChildren());
}

TEST_F(DecoderProcessTest, isEndedWhenItSaysWhatItWasNotAsked) {
  DecoderProcess decoder = start(milliseconds(100));
  ASSERT_TRUE(decoder.request(file.get(), kAnswersTwice).picture.ok());
  // Whether its second answer comes before the next request or after it.
  EXPECT_FALSE(decoder.request(file.get(), kAnswersWell).picture.ok());
  EXPECT_FALSE(decoder.isAlive());
}

TEST_F(DecoderProcessTest, mayLeaveWithItsAnswer) {
  DecoderProcess one = start();
  EXPECT_TRUE(one.request(file.get(), kIsLeaving).picture.ok());
  EXPECT_FALSE(one.isAlive());
  DecoderProcess other = start();
  EXPECT_EQ(reasonOf(other, kIsLeavingAfterAFailure), "it is damaged");
  EXPECT_FALSE(other.isAlive());
  EXPECT_FALSE(hasChildren());
}

TEST_F(DecoderProcessTest, cannotBeStartedWithoutItsProgram) {
  const auto started = DecoderProcess::start(FilePath("/nonexistent/decoder"), kLong, late);
  EXPECT_EQ(started.error().message,
            "the program /nonexistent/decoder cannot be started (No such file or directory)");
}

}  // namespace pelmora::platform
