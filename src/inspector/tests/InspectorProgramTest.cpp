#include "inspector/MetadataReader.h"
#include "inspector/tests/PaintedFile.h"
#include "platform/fake/RecordingLog.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/ChildProcess.h"
#include "platform/linux/index/EmbeddedTags.h"
#include "platform/linux/index/FileAttributes.h"
#include "platform/linux/index/MetadataInspector.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/tests/ChildrenCount.h"
#include "platform/SteppedTime.h"
#include "platform/ThreadPriority.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace pelmora::inspector {

using platform::FileDescriptor;
using platform::MetadataInspector;
using platform::metadata::FileMetadata;
using platform::predicate::Constant;
using testing::ElementsAre;

namespace {

const FilePath kInspector(PELMORA_INSPECTOR);
const std::chrono::milliseconds kDeadline{60'000};

/// Sets a variable of the environment while it lives.
class Variable {
 public:
  Variable(const char* name, const char* value) : _name(name) { setenv(name, value, 1); }
  ~Variable() { unsetenv(_name); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* const _name;
};

/// Photos that differ in their ratings.
Bytes rated(int rating) {
  return painted(Format::jpeg, [rating](Exiv2::Image& image) {
    fillWithEverything(image);
    image.xmpData()["Xmp.xmp.Rating"] = std::to_string(rating);
  });
}

std::vector<MetadataInspector::Answer> inspectAll(MetadataInspector& inspector,
                                                  const std::vector<FileDescriptor>& files) {
  std::vector<MetadataInspector::Answer> answers;
  const Status status =
      inspector.inspect(files, [&](std::size_t index, MetadataInspector::Answer answer) {
        EXPECT_EQ(index, answers.size());
        answers.push_back(std::move(answer));
        return true;
      });
  EXPECT_TRUE(status.ok());
  EXPECT_EQ(answers.size(), files.size());
  return answers;
}

std::vector<Constant> valuesOf(const FileMetadata& metadata, std::string_view attribute) {
  const auto values = metadata.values(attribute);
  return {values.begin(), values.end()};
}

}  // namespace

TEST(InspectorProgram, readsManyFilesInTheirOrder) {
  MetadataInspector inspector({kInspector, kDeadline});
  std::vector<FileDescriptor> files;
  for (int i = 0; i < 40; ++i) files.push_back(fileOf(rated(i)));
  const auto answers = inspectAll(inspector, files);
  for (int i = 0; i < 40; ++i) {
    const auto& answer = answers[static_cast<std::size_t>(i)];
    ASSERT_TRUE(answer.ok()) << answer.error().message;
    EXPECT_THAT(valuesOf(*answer, "kMDItemStarRating"), ElementsAre(Constant(i)));
  }
}

TEST(InspectorProgram, readsTheSameAsWithoutASandbox) {
  const MetadataReader reader;
  MetadataInspector inspector({kInspector, kDeadline});
  std::vector<FileDescriptor> files;
  for (const Format format : {Format::jpeg, Format::png, Format::tiff, Format::webp}) {
    files.push_back(fileOf(painted(format, fillWithEverything)));
  }
  Exiv2::ExifData exif;
  exif["Exif.Image.Make"] = "Maker";
  files.push_back(fileOf(paintedHeic(exif)));
  const auto answers = inspectAll(inspector, files);
  for (std::size_t i = 0; i < files.size(); ++i) {
    ASSERT_TRUE(answers[i].ok()) << answers[i].error().message;
    EXPECT_EQ(*answers[i], *reader.read(files[i].get())) << i;
    EXPECT_FALSE(answers[i]->all().empty());
  }
}

TEST(InspectorProgram, givesACardTheTagsThatAFilterKnows) {
  const auto photo = painted(Format::jpeg, [](Exiv2::Image& image) {
    fillWithEverything(image);
    image.xmpData()["Xmp.digiKam.TagsList"] = "Places/Paris";
    image.xmpData()["Xmp.digiKam.ColorLabel"] = "4";
    image.iptcData()["Iptc.Application2.Keywords"] = "no tag";
  });
  const platform::TemporaryFolder folder;
  const FilePath path = folder.write("a.jpg", std::string(photo.begin(), photo.end()));
  const auto tagsForAFilter = [&path] {
    MetadataInspector inspector({kInspector, kDeadline});
    std::vector<FileDescriptor> files;
    files.emplace_back(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    const auto ofFile = platform::fileAttributes(files.front().get(), "a.jpg")->metadata;
    return valuesOf(platform::joined(ofFile, *inspectAll(inspector, files)[0]), "kMDItemUserTags");
  };
  const platform::SteppedClock clock;
  platform::RecordingLog log;
  platform::EmbeddedTags embedded(kInspector, clock, log, kDeadline);
  const platform::LinuxWorkspace workspace(
      {}, log, [&embedded](const FilePath& file) { return embedded.read(file); });
  EXPECT_THAT(workspace.tagNames(path), ElementsAre("Paris", "lake", "mountain", "Green"));
  EXPECT_THAT(tagsForAFilter(), ElementsAre("Paris", "lake", "mountain", "Green"));
  if (setxattr(path.c_str(), "user.xdg.tags", "Red", 3, 0) != 0) return;
  EXPECT_THAT(workspace.tagNames(path), ElementsAre("Red"));
  EXPECT_THAT(tagsForAFilter(), ElementsAre("Red"));
}

TEST(InspectorProgram, knowsTheLocalTime) {
  const auto photo = painted(Format::jpeg, [](Exiv2::Image& image) {
    image.exifData()["Exif.Photo.DateTimeOriginal"] = "2021:07:01 12:00:00";
  });
  const auto readIn = [&photo](const char* zone) {
    const Variable variable("TZ", zone);
    MetadataInspector inspector({kInspector, kDeadline});
    std::vector<FileDescriptor> files;
    files.push_back(fileOf(photo));
    return valuesOf(*inspectAll(inspector, files)[0], "kMDItemContentCreationDate");
  };
  const auto noon = ReferenceTime::fromPosix(1625140800, 0);
  EXPECT_THAT(readIn("UTC"), ElementsAre(Constant(noon)));
  EXPECT_THAT(readIn("Europe/Berlin"), ElementsAre(Constant(ReferenceTime{noon.seconds - 7200})));
  EXPECT_THAT(readIn("XYZ5"), ElementsAre(Constant(ReferenceTime{noon.seconds + 18000})));
}

TEST(InspectorProgram, readsLocalTimeWhereTheEnvironmentNamesNoZone) {
  const auto photo = painted(Format::jpeg, [](Exiv2::Image& image) {
    image.exifData()["Exif.Photo.DateTimeOriginal"] = "2021:07:01 12:00:00";
  });
  const char* const before = getenv("TZ");
  const std::optional<std::string> kept = before ? std::optional(before) : std::nullopt;
  unsetenv("TZ");
  const MetadataReader reader;
  MetadataInspector inspector({kInspector, kDeadline});
  std::vector<FileDescriptor> files;
  files.push_back(fileOf(photo));
  EXPECT_EQ(*inspectAll(inspector, files)[0], *reader.read(files.front().get()));
  if (kept) setenv("TZ", kept->c_str(), 1);
}

TEST(InspectorProgram, runsAtThePriorityOfWhoeverStartsIt) {
  const auto niceOfInspector = [] {
    platform::LateChildren late;
    const auto child = platform::ChildProcess::start(kInspector, late);
    if (!child) return -100;
    std::byte greeting{};
    EXPECT_GT(recv(child->socket(), &greeting, 1, 0), 0);
    return getpriority(PRIO_PROCESS, static_cast<id_t>(child->id()));
  };
  EXPECT_EQ(niceOfInspector(), getpriority(PRIO_PROCESS, 0));
  int nice = 0;
  std::thread([&] {
    platform::yieldToEverythingElse();
    nice = niceOfInspector();
  }).join();
  EXPECT_EQ(nice, 19);
}

TEST(InspectorProgram, failsForOneFileAndGoesOn) {
  MetadataInspector inspector({kInspector, kDeadline});
  const std::string broken = "\xFF\xD8\xFF\xE1";
  std::vector<FileDescriptor> files;
  files.push_back(fileOf(Bytes(broken.begin(), broken.end())));
  files.push_back(fileOf(rated(3)));
  files.emplace_back();
  files.emplace_back(open("/", O_RDONLY | O_CLOEXEC));
  files.push_back(fileOf(rated(2)));
  const auto answers = inspectAll(inspector, files);
  EXPECT_FALSE(answers[0].ok());
  EXPECT_THAT(valuesOf(*answers[1], "kMDItemStarRating"), ElementsAre(Constant(3)));
  EXPECT_EQ(answers[2].error().message, "it is not open");
  EXPECT_EQ(answers[3].error().message, "it is not a file");
  EXPECT_THAT(valuesOf(*answers[4], "kMDItemStarRating"), ElementsAre(Constant(2)));
}

TEST(InspectorProgram, leavesNothingOpenAndNobodyBehind) {
  const std::size_t before = platform::openDescriptors();
  {
    MetadataInspector inspector({kInspector, kDeadline});
    std::vector<FileDescriptor> files;
    for (int i = 0; i < 20; ++i) files.push_back(fileOf(rated(i)));
    (void)inspectAll(inspector, files);
  }
  EXPECT_EQ(platform::openDescriptors(), before);
  EXPECT_FALSE(platform::hasChildren());
}

}  // namespace pelmora::inspector
