#include "platform/linux/DecodeReply.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/tests/ChildrenCount.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstring>
#include <limits>
#include <random>
#include <string_view>

namespace pelmora::platform {

namespace {

constexpr int kSeals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;

FileDescriptor memory(off_t size, int seals = kSeals, unsigned flags = 0) {
  FileDescriptor made(memfd_create("pixels", MFD_CLOEXEC | MFD_ALLOW_SEALING | flags));
  if (ftruncate(made.get(), size) != 0 || fcntl(made.get(), F_ADD_SEALS, seals) != 0) return {};
  return made;
}

template <std::size_t size>
void setText(std::array<char, size>& field, std::string_view text) {
  field.fill('\0');
  std::copy(text.begin(), text.end(), field.begin());
}

DecodeReply shown(const PixelSize& own, const PixelSize& pixels) {
  DecodeReply reply;
  reply.serial = 5;
  reply.outcome = DecodeOutcome::shown;
  reply.ownSize = reply.storedSize = own;
  reply.pixelSize = pixels;
  setText(reply.format, "JPEG");
  setText(reply.profile, "sRGB");
  return reply;
}

Result<CheckedReply> check(const DecodeReply& reply, std::vector<FileDescriptor> descriptors,
                           int longestSide = 1000) {
  const auto bytes = std::as_bytes(std::span(&reply, 1));
  return checkReply({bytes, false, std::move(descriptors)},
                    {.serial = 5, .longestSide = longestSide, .deadlineSeconds = 1});
}

Result<CheckedReply> check(const DecodeReply& reply, FileDescriptor descriptor,
                           int longestSide = 1000) {
  std::vector<FileDescriptor> descriptors;
  descriptors.push_back(std::move(descriptor));
  return check(reply, std::move(descriptors), longestSide);
}

/// Whether a picture of these sizes is taken.
bool takes(const PixelSize& own, const PixelSize& pixels, int longestSide) {
  const off_t size =
      pixels.width > 0 && pixels.height > 0 ? off_t{4} * pixels.width * pixels.height : 4;
  return check(shown(own, pixels), memory(size), longestSide).ok();
}

}  // namespace

TEST(DecodeReply, isAPictureInTheMemoryThatCameWithIt) {
  auto reply = check(shown({8, 4}, {8, 4}), memory(128));
  ASSERT_TRUE(reply.ok());
  EXPECT_FALSE(reply->isLeaving);
  ASSERT_TRUE(reply->picture.ok());
  const InspectedPicture& picture = *reply->picture;
  EXPECT_EQ(picture.format, "JPEG");
  EXPECT_EQ(picture.profile, "sRGB");
  EXPECT_FALSE(picture.image.pixels->opaque);
  EXPECT_EQ(picture.image.pixels->bytes.size(), 128U);
  EXPECT_EQ(mappedPictures(), 1U);
  reply = Error{"gone"};
  EXPECT_EQ(mappedPictures(), 0U);
}

TEST(DecodeReply, isTheReasonOfAFailure) {
  DecodeReply reply;
  reply.serial = 5;
  reply.isLeaving = 1;
  setText(reply.message, "it is\ndamaged");
  const auto checked = check(reply, std::vector<FileDescriptor>());
  ASSERT_TRUE(checked.ok());
  EXPECT_TRUE(checked->isLeaving);
  EXPECT_EQ(checked->picture.error().message, "it is\\x0Adamaged");
}

TEST(DecodeReply, mayBeOfAnySizeThatFits) {
  EXPECT_TRUE(takes({1, 1}, {1, 1}, 1));
  EXPECT_TRUE(takes({4000, 3000}, {1000, 750}, 1000));
  EXPECT_TRUE(takes({3000, 4000}, {750, 1000}, 1000));
  EXPECT_TRUE(takes({4001, 3001}, {999, 751}, 1000));  // a reduced size's rounding
  EXPECT_TRUE(takes({100'000, 3}, {1000, 1}, 1000));
  EXPECT_TRUE(takes({640, 480}, {640, 480}, 16'384));
}

TEST(DecodeReply, isRefusedWithASizeThatIsNone) {
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr int kLeast = std::numeric_limits<int>::min();
  for (const int bad : {0, -1, kLeast}) {
    EXPECT_FALSE(takes({8, 4}, {bad, 4}, 1000));
    EXPECT_FALSE(takes({8, 4}, {8, bad}, 1000));
    EXPECT_FALSE(takes({bad, 4}, {8, 4}, 1000));
    EXPECT_FALSE(takes({bad, bad}, {bad, bad}, 1000));
  }
  EXPECT_FALSE(takes({kMost, kMost}, {8, 8}, 8));
  EXPECT_FALSE(takes({kMost, 1}, {8, 1}, 8));
  EXPECT_TRUE(takes({500'000'000, 1}, {8, 1}, 8));
  EXPECT_FALSE(takes({500'000'001, 1}, {8, 1}, 8));
  DecodeReply reply = shown({8, 4}, {8, 4});
  reply.storedSize = {8, 0};
  EXPECT_FALSE(check(reply, memory(128)).ok());
}

TEST(DecodeReply, isRefusedWithASizeThatDoesNotFit) {
  EXPECT_FALSE(takes({4000, 3000}, {1001, 750}, 1000));  // more than asked
  EXPECT_FALSE(takes({4000, 3000}, {900, 675}, 1000));   // less
  EXPECT_FALSE(takes({40, 30}, {41, 31}, 1000));         // enlarged
  EXPECT_FALSE(takes({4000, 3000}, {750, 1000}, 1000));  // turned
}

TEST(DecodeReply, isRefusedWithoutItsMemory) {
  const DecodeReply reply = shown({8, 4}, {8, 4});
  EXPECT_FALSE(check(reply, std::vector<FileDescriptor>()).ok());
  std::vector<FileDescriptor> two;
  two.push_back(memory(128));
  two.push_back(memory(128));
  EXPECT_FALSE(check(reply, std::move(two)).ok());
}

TEST(DecodeReply, isRefusedWithMemoryThatMayChange) {
  const DecodeReply reply = shown({8, 4}, {8, 4});
  for (const int seal : {F_SEAL_SEAL, F_SEAL_SHRINK, F_SEAL_GROW, F_SEAL_WRITE}) {
    EXPECT_FALSE(check(reply, memory(128, kSeals & ~seal)).ok()) << seal;
  }
  EXPECT_FALSE(check(reply, memory(127)).ok());
  EXPECT_FALSE(check(reply, memory(129)).ok());
  EXPECT_FALSE(check(reply, memory(0)).ok());
}

TEST(DecodeReply, isRefusedWithAnythingButMemory) {
  const DecodeReply reply = shown({8, 4}, {8, 4});
  const TemporaryFolder folder;
  const FilePath file = folder.write("pixels", std::string(128, 'x'));
  EXPECT_FALSE(check(reply, FileDescriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC))).ok());
  EXPECT_FALSE(check(reply, FileDescriptor(open("/dev/zero", O_RDONLY | O_CLOEXEC))).ok());
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
  const FileDescriptor writing(ends[1]);
  EXPECT_FALSE(check(reply, FileDescriptor(ends[0])).ok());
}

TEST(DecodeReply, isRefusedWithMemoryInHugePages) {
  // 2 MiB or more: the smallest picture that fills such a page. Without huge pages on this machine
  // its memory can be made all the same, which is why it must not be read.
  FileDescriptor huge = memory(2 << 20, kSeals, MFD_HUGETLB);
  const bool isMade = huge.isOpen();
  EXPECT_FALSE(check(shown({1024, 512}, {1024, 512}), std::move(huge), 1024).ok()) << isMade;
}

TEST(DecodeReply, isRefusedWhenItIsNoReply) {
  const DecodeReply good = shown({8, 4}, {8, 4});
  const auto bytes = std::as_bytes(std::span(&good, 1));
  const DecodeRequest request{.serial = 5, .longestSide = 1000};
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_FALSE(checkReply({bytes.first(size), false, {}}, request).ok());
  }
  EXPECT_FALSE(checkReply({bytes, true, {}}, request).ok());
  DecodeReply reply = good;
  reply.serial = 4;
  EXPECT_FALSE(check(reply, memory(128)).ok());
  reply = good;
  reply.magic = kRequestMagic;
  EXPECT_FALSE(check(reply, memory(128)).ok());
  reply = good;
  reply.isLeaving = 2;
  EXPECT_FALSE(check(reply, memory(128)).ok());
  for (const int orientation : {0, 9, -1}) {
    reply = good;
    reply.orientation = orientation;
    EXPECT_FALSE(check(reply, memory(128)).ok());
  }
}

TEST(DecodeReply, closesWhateverCameWithIt) {
  const std::size_t before = openDescriptors();
  DecodeReply reply = shown({8, 4}, {8, 4});
  EXPECT_TRUE(check(reply, memory(128)).ok());
  reply.magic = 0;
  std::vector<FileDescriptor> many;
  for (int i = 0; i < 5; ++i) many.push_back(memory(128));
  EXPECT_FALSE(check(reply, std::move(many)).ok());
  EXPECT_EQ(openDescriptors(), before);
}

TEST(DecodeReply, isNeverTakenWrongWhateverItsBytes) {
  std::minstd_rand random(1);
  const DecodeReply good = shown({8, 4}, {8, 4});
  for (int round = 0; round < 1000; ++round) {
    DecodeReply reply = good;
    std::array<unsigned char, sizeof reply> bytes{};
    std::memcpy(bytes.data(), &reply, sizeof reply);
    for (int change = 0; change < 1 + round % 3; ++change) {
      // The fields in front are of more interest than the texts.
      const std::size_t at = random() % (change % 2 == 0 ? 56 : sizeof reply);
      bytes[at] = static_cast<unsigned char>(random());
    }
    std::memcpy(&reply, bytes.data(), sizeof reply);
    const auto checked = check(reply, memory(128));
    if (!checked.ok() || !checked->picture.ok()) continue;
    const Pixels& pixels = *checked->picture->image.pixels;
    ASSERT_EQ(pixels.size, (PixelSize{8, 4}));
    ASSERT_EQ(pixels.bytes.size(), 128U);
  }
}

}  // namespace pelmora::platform
