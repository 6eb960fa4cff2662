#include "platform/linux/IsolatedImageLoader.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/tests/ChildrenCount.h"
#include "platform/linux/tests/FakeDecoder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <thread>

namespace pelmora::platform {

namespace {

using std::chrono::milliseconds;

const FilePath kFakeDecoder(PELMORA_FAKE_DECODER);

struct Breach {
  FakeBehaviour behaviour;
  const char* reason;
};

constexpr std::array kDeaths{
    Breach{kDiesBeforeReading, "its decoder ended (status 9)"},
    Breach{kDiesAfterReading, "its decoder crashed (Segmentation fault)"},
    Breach{kDiesAfterTheMemory, "its decoder crashed (Aborted)"},
    Breach{kEndsOutOfMemory, "it needs more than 1024 MB of memory to decode"},
    Breach{kEndsWithStatusSeven, "its decoder ended (status 7)"},
    Breach{kSaysItIsDamaged, "it is damaged"},
    Breach{kIsLeavingAfterAFailure, "it is damaged"},
    Breach{kSaysControlCharacters, "it\\x0Ais \\x1B[31m bad"},
};

constexpr const char* kWrong = "its decoder gave a wrong answer (";
constexpr std::array kWrongAnswers{
    Breach{kSendsHalfAReply, "a wrong length"},
    Breach{kSendsTooMuch, "a wrong length"},
    Breach{kSendsManyDescriptors, "a wrong length"},
    Breach{kSendsAnotherMagic, "not a reply"},
    Breach{kSendsAnotherSerial, "to another question"},
    Breach{kSendsNoOutcome, "no such outcome"},
    Breach{kSendsNoFlag, "no such flag"},
    Breach{kSendsNoOrientation, "no such orientation"},
    Breach{kSendsEndlessText, "an endless text"},
    Breach{kSendsEndlessReason, "no reason"},
    Breach{kSendsNoReason, "no reason"},
    Breach{kSendsNoPixels, "a wrong size"},
    Breach{kSendsNegativeSides, "a wrong size"},
    Breach{kSendsHugeSides, "a wrong size"},
    Breach{kSendsMoreThanWasAsked, "a wrong size"},
    Breach{kSendsAnotherShape, "a wrong size"},
    Breach{kSendsNoMemory, "not one memory"},
    Breach{kSendsTwoMemories, "not one memory"},
    Breach{kSendsMemoryWithAFailure, "memory that was not asked for"},
    Breach{kSendsUnsealedMemory, "not the memory that it should be"},
    Breach{kSendsGrowingMemory, "not the memory that it should be"},
    Breach{kSendsShortMemory, "not the memory that it should be"},
    Breach{kSendsLongMemory, "not the memory that it should be"},
    Breach{kSendsAFile, "not the memory that it should be"},
    Breach{kSendsASocket, "not the memory that it should be"},
};

}  // namespace

class IsolatedImageLoaderTest : public testing::Test {
 protected:
  /// What stands in the way of the picture; empty if nothing does.
  static std::string reason(IsolatedImageLoader& loader, const FilePath& file, int longestSide) {
    const auto loaded = loader.load(file, longestSide);
    return loaded ? "" : loaded.error().message;
  }

  TemporaryFolder folder;
  const FilePath file = folder.write("a.jpg", "x");
};

TEST_F(IsolatedImageLoaderTest, givesThePictureAndWhatItsFileSays) {
  IsolatedImageLoader loader({.program = kFakeDecoder});
  const auto image = loader.load(file, kAnswersWell);
  ASSERT_TRUE(image.ok()) << image.error().message;
  EXPECT_TRUE(image->isValid());
  EXPECT_EQ(image->size, (Size{kFakeWidth, kFakeHeight}));
  const auto inspected = loader.inspect(file, kAnswersWell);
  ASSERT_TRUE(inspected.ok());
  EXPECT_EQ(inspected->format, "FAKE");
  EXPECT_EQ(inspected->orientation, 6);
}

TEST_F(IsolatedImageLoaderTest, loadsTheNextPictureWhateverBecameOfTheOneBefore) {
  IsolatedImageLoader loader({.program = kFakeDecoder});
  ASSERT_EQ(reason(loader, file, kAnswersWell), "");
  const std::size_t descriptors = openDescriptors();
  const auto expectRecovery = [&](int behaviour) {
    EXPECT_EQ(reason(loader, file, kAnswersWell), "") << behaviour;
    EXPECT_EQ(openDescriptors(), descriptors) << behaviour;
    EXPECT_EQ(mappedPictures(), 0U) << behaviour;
  };
  for (const Breach& death : kDeaths) {
    EXPECT_EQ(reason(loader, file, death.behaviour), death.reason) << death.behaviour;
    expectRecovery(death.behaviour);
  }
  for (const Breach& breach : kWrongAnswers) {
    EXPECT_EQ(reason(loader, file, breach.behaviour), std::string(kWrong) + breach.reason + ")");
    expectRecovery(breach.behaviour);
  }
  for (const int behaviour : {kIsLeaving, kSendsControlCharacters}) {
    EXPECT_EQ(reason(loader, file, behaviour), "");
    expectRecovery(behaviour);
  }
  EXPECT_EQ(reason(loader, file, kAnswersTwice), "");
  // Its second answer is noticed before the next request, or taken for the answer to it: one load
  // at most.
  (void)loader.load(file, kAnswersWell);
  expectRecovery(kAnswersTwice);
}

TEST_F(IsolatedImageLoaderTest, leavesNoProcessBehind) {
  {
    IsolatedImageLoader loader({.program = kFakeDecoder});
    for (const int behaviour : {kAnswersWell, kDiesAfterReading, kIsLeaving, kAnswersTwice}) {
      (void)loader.load(file, behaviour);
    }
    EXPECT_TRUE(hasChildren());
  }
  EXPECT_FALSE(hasChildren());
  {
    IsolatedImageLoader loader({.program = kFakeDecoder, .deadline = milliseconds(100)});
    for (const int behaviour : {kHangs, kSendsNothing, kClosesAndLivesOn}) {
      (void)loader.load(file, behaviour);
    }
  }
  EXPECT_FALSE(hasChildren());
}

TEST_F(IsolatedImageLoaderTest, endsADecoderThatTakesTooLong) {
  IsolatedImageLoader loader({.program = kFakeDecoder, .deadline = milliseconds(100)});
  EXPECT_EQ(reason(loader, file, kHangs), "decoding it took longer than 0.1 seconds");
  EXPECT_FALSE(hasChildren());
}

TEST_F(IsolatedImageLoaderTest, givesUpWhatIsBeingLoadedAndLoadsNothingMore) {
  IsolatedImageLoader loader({.program = kFakeDecoder, .deadline = milliseconds(600'000)});
  std::thread loading([&] { EXPECT_EQ(reason(loader, file, kHangs), "its loading was given up"); });
  loader.giveUp();  // wherever the other thread is by now
  loading.join();
  EXPECT_EQ(reason(loader, file, kHangs), "its loading was given up");
}

TEST_F(IsolatedImageLoaderTest, makesWhatTheDecoderSaysPrintable) {
  IsolatedImageLoader loader({.program = kFakeDecoder});
  EXPECT_EQ(loader.inspect(file, kSendsControlCharacters)->format, "\\x1B[2J\\x0A");
}

TEST_F(IsolatedImageLoaderTest, loadsOnSeveralThreadsAtOnce) {
  const std::size_t descriptors = openDescriptors();
  {
    IsolatedImageLoader loader({.program = kFakeDecoder});
    std::vector<std::thread> threads;
    for (int i = 0; i < 6; ++i) {
      threads.emplace_back([&loader, this] {
        for (int j = 0; j < 10; ++j) {
          EXPECT_EQ(reason(loader, file, kAnswersWell), "");
          EXPECT_NE(reason(loader, file, kDiesAfterReading), "");
        }
      });
    }
    for (std::thread& thread : threads) thread.join();
  }
  EXPECT_FALSE(hasChildren());
  EXPECT_EQ(openDescriptors(), descriptors);
}

TEST_F(IsolatedImageLoaderTest, opensNothingButFiles) {
  IsolatedImageLoader loader({.program = FilePath("/nonexistent")});
  const FilePath pipe = folder.path() / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(reason(loader, pipe, 100), "it is not a file");
  EXPECT_EQ(reason(loader, folder.mkdir("folder"), 100), "it is not a file");
  EXPECT_EQ(reason(loader, FilePath("/dev/zero"), 100), "it is not a file");
  EXPECT_EQ(reason(loader, folder.path() / "gone.jpg", 100),
            "it cannot be opened: No such file or directory");
  EXPECT_EQ(reason(loader, folder.write("empty.jpg"), 100), "it is empty");
  EXPECT_EQ(reason(loader, folder.link("link.jpg", "link.jpg"), 100),
            "it cannot be opened: Too many levels of symbolic links");
}

TEST_F(IsolatedImageLoaderTest, readsNoMoreThanFourGigabytes) {
  IsolatedImageLoader loader({.program = kFakeDecoder});
  ASSERT_EQ(truncate(file.c_str(), 4'000'000'000), 0);
  EXPECT_EQ(reason(loader, file, kAnswersWell), "");
  ASSERT_EQ(truncate(file.c_str(), 4'000'000'001), 0);
  EXPECT_EQ(reason(loader, file, kAnswersWell), "it is 4.1 GB, and no more than 4 GB are read");
}

TEST_F(IsolatedImageLoaderTest, saysThatItsProgramCannotBeStarted) {
  IsolatedImageLoader missing({.program = FilePath("/nonexistent/decoder")});
  EXPECT_EQ(reason(missing, file, 100),
            "the program /nonexistent/decoder cannot be started (No such file or directory)");
  EXPECT_FALSE(missing.isAtWork());
  IsolatedImageLoader another({.program = FilePath("/bin/false")});
  EXPECT_EQ(reason(another, file, 100), "its decoder ended (status 1)");
  EXPECT_FALSE(another.isAtWork());
}

TEST_F(IsolatedImageLoaderTest, isAtWorkWhateverAPictureDoesToItsDecoder) {
  IsolatedImageLoader loader({.program = kFakeDecoder});
  EXPECT_TRUE(loader.isAtWork());
  EXPECT_NE(reason(loader, file, kDiesAfterReading), "");
  EXPECT_TRUE(loader.isAtWork());
  EXPECT_NE(reason(loader, folder.path() / "nowhere.jpg", kAnswersWell), "");
  EXPECT_TRUE(loader.isAtWork());
}

TEST_F(IsolatedImageLoaderTest, isNotAtWorkWhileNoDescriptorCanBeHad) {
  IsolatedImageLoader loader({.program = kFakeDecoder});
  ASSERT_EQ(reason(loader, file, kAnswersWell), "");
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  const rlimit none{0, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  EXPECT_EQ(reason(loader, file, kAnswersWell), "it cannot be opened: Too many open files");
  EXPECT_FALSE(loader.isAtWork());
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
  EXPECT_EQ(reason(loader, file, kAnswersWell), "");
  EXPECT_TRUE(loader.isAtWork());
}

}  // namespace pelmora::platform
