#include "platform/metadata/MetadataProtocol.h"

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <limits>
#include <string>

namespace pelmora::platform::metadata {

using predicate::Constant;

namespace {

FileMetadata everyAttribute() {
  FileMetadata metadata;
  for (std::size_t i = 0; i < attributeTable().size(); ++i) {
    const Attribute& attribute = attributeTable()[i];
    if (attribute.origin == Origin::file) continue;
    std::vector<Constant> values;
    for (int number = 0; number < (attribute.hasSeveral ? 3 : 1); ++number) {
      const int value = number + static_cast<int>(i);
      if (attribute.type == ValueType::text)
        values.emplace_back("t\u00E4xt " + std::to_string(value));
      if (attribute.type == ValueType::integer) values.emplace_back(-value);
      if (attribute.type == ValueType::real) values.emplace_back(value / 3.0);
      if (attribute.type == ValueType::date) values.emplace_back(ReferenceTime{value + 0.5});
    }
    metadata.set(i, std::move(values));
  }
  return metadata;
}

/// Bytes of a message, made piece by piece.
class Message {
 public:
  explicit Message(std::string_view attribute, std::uint16_t count = 1) { add(attribute, count); }

  Message& add(std::string_view attribute, std::uint16_t count = 1) {
    return raw(static_cast<std::uint8_t>(attributeNamed(attribute).value())).raw(count);
  }
  Message& text(std::string_view text) {
    raw(static_cast<std::uint16_t>(text.size()));
    const auto from = std::as_bytes(std::span(text));
    bytes.insert(bytes.end(), from.begin(), from.end());
    return *this;
  }
  template <typename T>
  Message& raw(const T& value) {
    const auto from = std::as_bytes(std::span(&value, 1));
    bytes.insert(bytes.end(), from.begin(), from.end());
    return *this;
  }

  std::vector<std::byte> bytes;
};

std::string problemOf(const Message& message) {
  const auto decoded = decodeMetadata(message.bytes);
  return decoded ? "" : decoded.error().message;
}

}  // namespace

TEST(MetadataProtocol, givesBackEveryAttribute) {
  const FileMetadata metadata = everyAttribute();
  EXPECT_GT(metadata.all().size(), 20U);
  EXPECT_EQ(decodeMetadata(encodeMetadata(metadata)).value(), metadata);
  EXPECT_EQ(decodeMetadata({}).value(), FileMetadata());
}

TEST(MetadataProtocol, sendsNothingThatIsNotEmbedded) {
  FileMetadata metadata;
  metadata.set("kMDItemFSName", {"a.jpg"});
  EXPECT_TRUE(encodeMetadata(metadata).empty());
}

TEST(MetadataProtocol, sendsNoTextThatWouldNotBeTaken) {
  FileMetadata metadata;
  metadata.set("kMDItemTitle", {"two\nlines"});
  metadata.set("kMDItemKeywords", {"", "lake", std::string(kMaxTextBytes + 1, 'x')});
  FileMetadata kept;
  kept.set("kMDItemKeywords", {"lake"});
  EXPECT_EQ(decodeMetadata(encodeMetadata(metadata)).value(), kept);
}

TEST(MetadataProtocol, leavesOutWhatDoesNotFitIntoAReply) {
  FileMetadata metadata;
  metadata.set("kMDItemKeywords",
               std::vector<Constant>(kMaxValues, std::string(kMaxTextBytes, 'x')));
  metadata.set("kMDItemISOSpeed", {200});
  FileMetadata kept;
  kept.set("kMDItemISOSpeed", {200});
  const auto bytes = encodeMetadata(metadata);
  EXPECT_LE(sizeof(InspectReply) + bytes.size(), kMaxReplyBytes);
  EXPECT_EQ(decodeMetadata(bytes).value(), kept);
}

TEST(MetadataProtocol, refusesWhatEndsEarlyAtAnyByte) {
  const auto bytes = encodeMetadata(everyAttribute());
  std::size_t refused = 0;
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    const auto decoded = decodeMetadata(std::span(bytes).first(size));
    // Between two attributes it is only less.
    if (!decoded) ++refused;
  }
  EXPECT_GT(refused, bytes.size() - attributeTable().size() - 1);
}

TEST(MetadataProtocol, refusesAttributesThatItDoesNotWant) {
  EXPECT_EQ(problemOf(Message("kMDItemPath").text("/etc")), "an attribute that is not embedded");
  Message unknown("kMDItemTitle");
  unknown.bytes[0] = std::byte{255};
  EXPECT_EQ(problemOf(unknown.text("x")), "no such attribute");
  EXPECT_EQ(problemOf(Message("kMDItemTitle").text("x").add("kMDItemTitle").text("x")),
            "attributes out of order");
  EXPECT_EQ(problemOf(Message("kMDItemCity").text("x").add("kMDItemTitle").text("x")),
            "attributes out of order");
}

TEST(MetadataProtocol, refusesAWrongNumberOfValues) {
  EXPECT_EQ(problemOf(Message("kMDItemTitle", 0)), "a wrong number of values");
  EXPECT_EQ(problemOf(Message("kMDItemTitle", 2).text("x").text("x")), "a wrong number of values");
  EXPECT_EQ(problemOf(Message("kMDItemKeywords", kMaxValues + 1)), "a wrong number of values");
}

TEST(MetadataProtocol, refusesTextsThatAreNone) {
  EXPECT_EQ(problemOf(Message("kMDItemTitle").text("")), "a text of a wrong length");
  EXPECT_EQ(problemOf(Message("kMDItemTitle").text(std::string(kMaxTextBytes + 1, 'x'))),
            "a text of a wrong length");
  for (const char* text : {"\x1b[2J", "two\nlines", "\xFF", " blank", "blank "}) {
    EXPECT_EQ(problemOf(Message("kMDItemTitle").text(text)), "a text that is none") << text;
  }
  EXPECT_EQ(problemOf(Message("kMDItemTitle").raw(std::uint16_t{5})), "a text that ends early");
}

TEST(MetadataProtocol, refusesNumbersThatAreNone) {
  for (const double number :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    EXPECT_EQ(problemOf(Message("kMDItemFNumber").raw(number)), "a number that is none");
    EXPECT_EQ(problemOf(Message("kMDItemContentCreationDate").raw(number)),
              "a number that is none");
  }
  EXPECT_EQ(problemOf(Message("kMDItemFNumber").raw(1.0F)), "a number that ends early");
  EXPECT_EQ(problemOf(Message("kMDItemISOSpeed").raw(1)), "a number that ends early");
}

TEST(MetadataProtocol, refusesMoreThanAReplyMayHave) {
  const std::vector<std::byte> bytes(kMaxReplyBytes);
  EXPECT_EQ(decodeMetadata(bytes).error().message, "too much");
}

}  // namespace pelmora::platform::metadata
