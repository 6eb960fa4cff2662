#include "decoder/tests/PaintedPicture.h"
#include "decoder/VipsLibrary.h"
#include "platform/linux/DecoderProcess.h"
#include "platform/linux/IsolatedImageLoader.h"
#include "platform/linux/tests/ChildrenCount.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <iostream>
#include <optional>
#include <thread>

namespace pelmora::decoder {

namespace {

using platform::DecoderProcess;
using platform::FileDescriptor;
using platform::IsolatedImageLoader;
using std::chrono::milliseconds;

const FilePath kDecoder(PELMORA_DECODER);
constexpr int kLongestSide = 810;
#if defined(__SANITIZE_ADDRESS__)
constexpr milliseconds kDeadline{60'000};
constexpr int kPatience = 1;
#else
constexpr milliseconds kDeadline{10'000};
constexpr int kPatience = 4;  // how often what depends on chance is tried
#endif

struct Format {
  const char* suffix;
  const char* options;
  const char* name;
  int tolerance;
};
constexpr std::array kFormats{
    Format{".jpg", "[Q=95]", "JPEG", 8},
    Format{".png", "", "PNG", 1},
    Format{".webp", "[Q=95]", "WebP", 12},
    Format{".tif", "[compression=lzw]", "TIFF", 1},
    Format{".gif", "", "GIF", 12},
    Format{".heic", "[Q=95,effort=0]", "HEIC", 12},
    Format{".avif", "[Q=95,effort=0]", "AVIF", 12},
    Format{".jxl", "[Q=95,effort=3]", "JPEG XL", 12},
};

/// A line of /proc/PID/status in MB, such as "VmRSS".
double megabytesOf(pid_t process, const std::string& name) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name + ":")) return std::stod(line.substr(name.size() + 1)) / 1024;
  }
  return -1;
}

FileDescriptor openFile(const FilePath& file) {
  return FileDescriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC));
}

}  // namespace

class DecoderProgramTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(startVips().ok()); }

  DecoderProcess start() { return DecoderProcess::start(kDecoder, kDeadline, _late).value(); }

  /// Why it cannot be shown; empty if it can.
  std::string reason(const FilePath& file) {
    const auto loaded = loader->load(file, kLongestSide);
    return loaded ? "" : loaded.error().message;
  }

  TemporaryFolder folder;
  std::optional<IsolatedImageLoader> loader{
      std::in_place, IsolatedImageLoader::Settings{.program = kDecoder, .deadline = kDeadline}};

 private:
  platform::LateChildren _late;
};

TEST_F(DecoderProgramTest, showsPicturesOfEveryFormat) {
  const VipsPointer picture = paintQuarters(96, 64);
  for (const Format& format : kFormats) {
    const FilePath file = save(folder, picture, std::string("a") + format.suffix, format.options);
    const auto shown = loader->inspect(file, kLongestSide);
    ASSERT_TRUE(shown.ok()) << format.name << ": " << shown.error().message;
    EXPECT_EQ(shown->format, format.name);
    EXPECT_EQ(shown->image.size, (Size{96, 64})) << format.name;
    EXPECT_LE(differenceFromQuarters(*shown->image.pixels), format.tolerance) << format.name;
  }
}

TEST_F(DecoderProgramTest, showsThemAsItWouldOutsideOfTheSandbox) {
  PictureDecoder decoder;
  const VipsPointer picture = paintQuarters(900, 600);
  for (const Format& format : kFormats) {
    const FilePath file = save(folder, picture, std::string("a") + format.suffix, format.options);
    const auto inside = loader->inspect(file, 300);
    const auto outside = show(decoder, file, 300);
    ASSERT_TRUE(inside.ok() && outside.ok()) << format.name;
    const platform::SharedBytes& bytes = inside->image.pixels->bytes;
    const platform::SharedBytes& expected = outside->pixels.bytes;
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), expected.begin(), expected.end()))
        << format.name;
  }
}

TEST_F(DecoderProgramTest, showsTheCorpusAsItWouldOutsideOfTheSandbox) {
  const char* corpus = std::getenv("PELMORA_CORPUS");
  if (!corpus) {
    std::cout << "left out: the corpus (PELMORA_CORPUS is not set)\n";
    return;
  }
  PictureDecoder decoder;
  for (const auto& entry : std::filesystem::directory_iterator(corpus)) {
    const FilePath file(entry.path().string());
    const auto inside = loader->inspect(file, 300);
    if (entry.file_size() == 0) continue;
    const auto outside = show(decoder, file, 300);
    ASSERT_EQ(inside.ok(), outside.ok()) << file.c_str();
    if (!inside.ok()) {
      EXPECT_EQ(inside.error().message, outside.error().message);
      continue;
    }
    const platform::SharedBytes& bytes = inside->image.pixels->bytes;
    const platform::SharedBytes& expected = outside->pixels.bytes;
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), expected.begin(), expected.end()))
        << file.c_str();
  }
}

TEST_F(DecoderProgramTest, showsAPictureUprightWhateverItsOrientation) {
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const FilePath file =
        save(folder, storeTurned(paintQuarters(96, 64), orientation), "a.jpg", "[Q=95]");
    const auto shown = loader->inspect(file, 48);
    ASSERT_TRUE(shown.ok()) << shown.error().message;
    EXPECT_EQ(shown->orientation, orientation);
    EXPECT_EQ(shown->image.size, (Size{96, 64}));
    EXPECT_EQ(shown->image.pixels->size, (PixelSize{48, 32}));
    EXPECT_LE(differenceFromQuarters(*shown->image.pixels), 10) << orientation;
  }
}

TEST_F(DecoderProgramTest, refusesWhatIsNoPicture) {
  const FilePath pipe = folder.path() / "pipe.jpg";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(reason(pipe), "it is not a file");
  EXPECT_EQ(reason(FilePath("/dev/zero")), "it is not a file");
  EXPECT_EQ(reason(folder.path()), "it is not a file");
  EXPECT_EQ(reason(folder.path() / "gone.jpg"), "it cannot be opened: No such file or directory");
  EXPECT_EQ(reason(folder.write("text.jpg", "some text, for a while")),
            "it is not a picture of a known format");
  const FilePath closed = folder.write("closed.jpg", "x");
  ASSERT_EQ(chmod(closed.c_str(), 0), 0);
  EXPECT_EQ(reason(closed), geteuid() == 0 ? "it is not a picture of a known format"
                                           : "it cannot be opened: Permission denied");
  const FilePath huge = folder.write("huge.jpg", "x");
  ASSERT_EQ(truncate(huge.c_str(), 5'000'000'000), 0);
  EXPECT_EQ(reason(huge), "it is 5.0 GB, and no more than 4 GB are read");
}

TEST_F(DecoderProgramTest, survivesAFileThatShrinksWhileItIsRead) {
  const VipsPointer picture = paintQuarters(1200, 800);
  for (const char* suffix : {".jpg", ".png", ".webp", ".tif", ".jxl"}) {
    const std::string bytes = encoded(picture, suffix);
    for (int round = 0; round < kPatience; ++round) {
      const FilePath file = folder.write("shrinking", bytes);
      std::atomic<bool> isLoaded = false;
      std::thread shrinking([&] {
        for (auto size = static_cast<off_t>(bytes.size()); size > 0 && !isLoaded;) {
          size /= 2;
          EXPECT_EQ(truncate(file.c_str(), size), 0);
        }
      });
      (void)loader->load(file, kLongestSide);
      isLoaded = true;
      shrinking.join();
      EXPECT_EQ(reason(folder.write("whole", bytes)), "") << suffix;
    }
  }
}

TEST_F(DecoderProgramTest, mayBeKilledAtAnyMoment) {
  const FilePath file = save(folder, paintQuarters(1200, 800), "a.png");
  const FileDescriptor opened = openFile(file);
  for (int round = 0; round < 10; ++round) {
    DecoderProcess decoder = start();
    const pid_t id = decoder.id();
    if (round % 2 == 0) {
      ASSERT_TRUE(decoder.request(openFile(file).get(), 100).picture.ok());
    }
    std::thread killing([id] { kill(id, SIGKILL); });
    const auto attempt = decoder.request(opened.get(), 100);
    if (attempt.wasTaken && !attempt.picture.ok()) {
      EXPECT_EQ(attempt.picture.error().message, "its decoder crashed (Killed)");
    }
    killing.join();
  }
  EXPECT_FALSE(platform::hasChildren());
}

TEST_F(DecoderProgramTest, leavesNoDescriptorsAndProcessesBehind) {
  const FilePath good = save(folder, paintQuarters(96, 64), "a.jpg");
  const FilePath bad = folder.write("bad.jpg", "\xFF\xD8\xFF\xE0 and no more");
  ASSERT_EQ(reason(good), "");
  const std::size_t descriptors = platform::openDescriptors();
  for (int round = 0; round < 20; ++round) {
    EXPECT_EQ(reason(good), "");
    EXPECT_NE(reason(bad), "");
  }
  EXPECT_EQ(platform::openDescriptors(), descriptors);
  EXPECT_EQ(platform::mappedPictures(), 0U);
  loader.reset();
  EXPECT_FALSE(platform::hasChildren());
}

TEST_F(DecoderProgramTest, isShutOff) {
  DecoderProcess decoder = start();
  const FilePath file = save(folder, paintQuarters(96, 64), "a.jpg");
  ASSERT_TRUE(decoder.request(openFile(file).get(), 100).picture.ok());
  std::ifstream status("/proc/" + std::to_string(decoder.id()) + "/status");
  const std::string text((std::istreambuf_iterator<char>(status)), {});
  EXPECT_NE(text.find("NoNewPrivs:\t1"), std::string::npos);
  EXPECT_NE(text.find("Seccomp:\t2"), std::string::npos);
  std::ifstream limits("/proc/" + std::to_string(decoder.id()) + "/limits");
  const std::string rows((std::istreambuf_iterator<char>(limits)), {});
  EXPECT_NE(rows.find("Max core file size        0"), std::string::npos) << rows;
}

TEST_F(DecoderProgramTest, staysSmallAndIsQuick) {
  const FilePath large = save(folder, paintQuarters(4000, 3000), "large.jpg", "[Q=90]");
  const FilePath small = save(folder, paintQuarters(96, 64), "small.jpg");
  DecoderProcess decoder = start();
  for (int round = 0; round < kPatience; ++round) {
    ASSERT_TRUE(decoder.request(openFile(large).get(), kLongestSide).picture.ok());
  }
  const double resident = megabytesOf(decoder.id(), "VmRSS");
  std::cout << "resident after 12 megapixels: " << resident << " MB, at most "
            << megabytesOf(decoder.id(), "VmHWM") << " MB\n";
#if !defined(__SANITIZE_ADDRESS__)
  EXPECT_LT(resident, 40);
#endif
  constexpr int kRounds = 25 * kPatience;
  const auto begin = std::chrono::steady_clock::now();
  for (int round = 0; round < kRounds; ++round) {
    ASSERT_TRUE(decoder.request(openFile(small).get(), kLongestSide).picture.ok());
  }
  const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
  std::cout << "a round trip with 96 × 64 pixels: " << time.count() / kRounds << " ms\n";
}

}  // namespace pelmora::decoder
