#include "platform/PropertyList.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/FileContents.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>

namespace pelmora::plist {

namespace {

Bytes bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

Value sample() {
  return Dictionary{{"enabled", true},
                    {"chance", 100},
                    {"delay", 0.25},
                    {"made", ReferenceTime{718283.5}},
                    {"name", "Bücher 📷"},
                    {"bookmark", Bytes{0, 1, 255}},
                    {"list", Array{1, "two", Array{}, Dictionary{}, false}}};
}

/// Gives the file to Python's own property list reader, which writes what it read to another file
/// in the binary or the XML form; the bytes of that one.
Bytes rewrittenByPython(const Bytes& file, const std::string& form) {
  const platform::TemporaryFolder folder;
  const FilePath from =
      folder.write("from", {reinterpret_cast<const char*>(file.data()), file.size()});
  const FilePath to = folder.path() / "to";
  const std::string command = std::string(PELMORA_PYTHON) + " " + PELMORA_PLATFORM_TESTS +
                              "/rewrite_property_list.py " + form + " " + from.bytes() + " " +
                              to.bytes();
  if (std::system(command.c_str()) != 0) return {};
  const auto contents = platform::FileContents::read(to, 1 << 20);
  return contents ? Bytes(contents->bytes().begin(), contents->bytes().end()) : Bytes();
}

}  // namespace

TEST(PropertyList, convertsNumbersAsThePlatformDoes) {
  EXPECT_EQ(Value(7).integerValue(), 7);
  EXPECT_EQ(Value(true).integerValue(), 1);
  EXPECT_EQ(Value(-2.9).integerValue(), -2);
  EXPECT_EQ(Value("7").integerValue(), 0);
  EXPECT_EQ(Value(7).doubleValue(), 7.0);
  EXPECT_EQ(Value(true).doubleValue(), 1.0);
  EXPECT_EQ(Value(Array{}).doubleValue(), 0.0);
  EXPECT_TRUE(Value(0.5).boolValue());
  EXPECT_TRUE(Value(-1).boolValue());
  EXPECT_FALSE(Value("yes").boolValue());
}

TEST(PropertyList, keepsRealsThatNoIntegerHoldsInRange) {
  EXPECT_EQ(Value(1e300).integerValue(), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(Value(-1e300).integerValue(), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(Value(std::nan("")).integerValue(), 0);
}

TEST(PropertyList, readsBackWhatItWrote) {
  const Result<Value> read = plist::read(writeBinary(sample()));
  ASSERT_TRUE(read) << read.error().message;
  EXPECT_EQ(*read, sample());
}

TEST(PropertyList, saysTheSameToPythonInBothForms) {
  Value whole = sample();
  whole.get<Dictionary>()->at("made") = ReferenceTime{718283};  // XML has no parts of a second
  for (const char* const form : {"FMT_BINARY", "FMT_XML"}) {
    const Result<Value> read = plist::read(rewrittenByPython(writeBinary(whole), form));
    ASSERT_TRUE(read) << form << ": " << read.error().message;
    EXPECT_EQ(*read, whole) << form;
  }
}

TEST(PropertyList, tellsTheXmlFormFromTheBinaryOne) {
  const Result<Value> xml = read(bytesOf("<plist version=\"1.0\"><integer>5</integer></plist>"));
  ASSERT_TRUE(xml) << xml.error().message;
  EXPECT_EQ(*xml, Value(5));
}

TEST(PropertyList, refusesWhatIsNeitherForm) {
  EXPECT_FALSE(read({}));
  EXPECT_FALSE(read(bytesOf("bplist")));
  EXPECT_FALSE(read(bytesOf("bplist15 something else")));
  EXPECT_FALSE(read(bytesOf("{ a = 1; }")));
  EXPECT_FALSE(read(Bytes{0xFF, 0xD8, 0xFF, 0xE0}));
}

TEST(PropertyList, refusesAFileCutAtAnyLength) {
  const Bytes whole = writeBinary(sample());
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_FALSE(read(std::span(whole).first(length))) << length;
  }
}

TEST(PropertyList, survivesAnyChangedByte) {
  const Bytes whole = writeBinary(sample());
  int different = 0;
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const int mask : {0x01, 0x10, 0x80, 0xFF}) {
      Bytes changed = whole;
      changed[at] = static_cast<std::uint8_t>(changed[at] ^ mask);
      const Result<Value> outcome = read(changed);
      if (!outcome || !(*outcome == sample())) ++different;
    }
  }
  // The five unused bytes of the trailer and its sort version may hold anything; all else counts.
  EXPECT_GE(different, static_cast<int>(whole.size() - 6) * 4);
}

}  // namespace pelmora::plist
