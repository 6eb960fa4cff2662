#include "inspector/MetadataReader.h"

#include "inspector/tests/PaintedFile.h"
#include "platform/metadata/MetadataProtocol.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

namespace pelmora::inspector {

using platform::FileDescriptor;
using platform::metadata::FileMetadata;
using platform::predicate::Constant;
using testing::ElementsAre;

namespace {

std::vector<Constant> valuesOf(const FileMetadata& metadata, std::string_view attribute) {
  const auto values = metadata.values(attribute);
  return {values.begin(), values.end()};
}

class MetadataReaderTest : public testing::Test {
 protected:
  [[nodiscard]] FileMetadata read(const Bytes& bytes) const {
    return reader.read(fileOf(bytes).get()).value();
  }

  const MetadataReader reader;
};

}  // namespace

class MetadataOfFormats : public MetadataReaderTest, public testing::WithParamInterface<Format> {};

TEST_P(MetadataOfFormats, isRead) {
  const FileMetadata metadata = read(painted(GetParam(), fillWithEverything));
  EXPECT_THAT(valuesOf(metadata, "kMDItemAcquisitionMake"), ElementsAre(Constant("Maker")));
  EXPECT_THAT(valuesOf(metadata, "kMDItemOrientation"), ElementsAre(Constant(1)));
  EXPECT_THAT(valuesOf(metadata, "kMDItemFNumber"), ElementsAre(Constant(2.8)));
  EXPECT_THAT(valuesOf(metadata, "kMDItemLatitude"), ElementsAre(Constant(51.5)));
  EXPECT_THAT(valuesOf(metadata, "kMDItemLongitude"), ElementsAre(Constant(-7.51)));
  EXPECT_THAT(valuesOf(metadata, "kMDItemTitle"), ElementsAre(Constant("A title")));
  EXPECT_THAT(valuesOf(metadata, "kMDItemStarRating"), ElementsAre(Constant(4)));
  EXPECT_THAT(valuesOf(metadata, "kMDItemContentCreationDate"),
              ElementsAre(Constant(ReferenceTime::fromPosix(1620277689, 0))));
  EXPECT_FALSE(metadata.values("kMDItemContentType").empty());
}

INSTANTIATE_TEST_SUITE_P(Format, MetadataOfFormats,
                         testing::Values(Format::jpeg, Format::png, Format::tiff, Format::webp));

TEST_F(MetadataReaderTest, readsTheExifOfHeif) {
  Exiv2::ExifData exif;
  exif["Exif.Image.Make"] = "Maker";
  const FileMetadata metadata = read(paintedHeic(exif));
  EXPECT_THAT(valuesOf(metadata, "kMDItemAcquisitionMake"), ElementsAre(Constant("Maker")));
  EXPECT_THAT(valuesOf(metadata, "kMDItemContentType"), ElementsAre(Constant("public.heic")));
  EXPECT_THAT(valuesOf(metadata, "kMDItemPixelWidth"), ElementsAre(Constant(64)));
}

TEST_F(MetadataReaderTest, putsTogetherTheKeywordsOfAllParts) {
  const FileMetadata metadata = read(painted(Format::jpeg, fillWithEverything));
  EXPECT_THAT(valuesOf(metadata, "kMDItemKeywords"),
              ElementsAre(Constant("lake"), Constant("mountain"), Constant("bridge")));
  EXPECT_THAT(valuesOf(metadata, "kMDItemCity"), ElementsAre(Constant("M\u00FCnster")));
}

TEST_F(MetadataReaderTest, findsNothingInWhatIsNoPicture) {
  const std::string film = std::string("\0\0\0\x14", 4) + "ftypisom" + std::string(100, 'x');
  EXPECT_EQ(read(Bytes(film.begin(), film.end())), FileMetadata());
  EXPECT_EQ(read(Bytes(1000, 'x')), FileMetadata());
  EXPECT_EQ(read({}), FileMetadata());
}

TEST_F(MetadataReaderTest, tellsTheTypeOfWhatItCannotReadFurther) {
  Bytes bytes(100, 0);
  bytes[0] = 0xFF;
  bytes[1] = 0x0A;
  EXPECT_THAT(valuesOf(read(bytes), "kMDItemContentType"), ElementsAre(Constant("public.jpeg-xl")));
}

TEST_F(MetadataReaderTest, looksIntoNoHugeFiles) {
  const FileDescriptor file = fileOf(painted(Format::jpeg, fillWithEverything));
  ASSERT_EQ(ftruncate(file.get(), platform::metadata::kMaxInspectedBytes + 1), 0);
  EXPECT_EQ(reader.read(file.get()).value(), FileMetadata());
}

TEST_F(MetadataReaderTest, keepsWhatCouldBeReadOfADamagedFile) {
  Bytes bytes = painted(Format::jpeg, fillWithEverything);
  bytes.resize(bytes.size() - 20);
  EXPECT_THAT(valuesOf(read(bytes), "kMDItemAcquisitionMake"), ElementsAre(Constant("Maker")));
}

TEST_F(MetadataReaderTest, saysInALineWhatIsWrong) {
  const std::string begin = "\xFF\xD8\xFF\xE1";
  const auto answer = reader.read(fileOf(Bytes(begin.begin(), begin.end())).get());
  ASSERT_FALSE(answer.ok());
  EXPECT_FALSE(answer.error().message.empty());
  EXPECT_EQ(answer.error().message.find('\n'), std::string::npos);
}

TEST_F(MetadataReaderTest, failsWithoutAFile) {
  EXPECT_FALSE(reader.read(-1).ok());
  const FileDescriptor folder(open("/", O_RDONLY | O_CLOEXEC));
  EXPECT_EQ(reader.read(folder.get()).error().message, "it is not a file");
}

}  // namespace pelmora::inspector
