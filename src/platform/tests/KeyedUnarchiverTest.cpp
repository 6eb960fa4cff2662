#include "platform/KeyedArchive.h"

#include <gtest/gtest.h>

#include <limits>

namespace pelmora::plist {

namespace {

Value sample() {
  return Dictionary{{"on", true},
                    {"count", -7},
                    {"chance", 0.1},
                    {"date", ReferenceTime{718283.123456789}},
                    {"name", "Bücher 📷"},
                    {"$null", "$null"},
                    {"data", Bytes{0, 255}},
                    {"list", Array{Dictionary{}, Array{Array{}}, "x", "x"}}};
}

/// An archive of these objects behind "$null", the first being the root.
Bytes archiveOf(Array objects) {
  objects.insert(objects.begin(), "$null");
  return writeBinary(Dictionary{{"$archiver", "NSKeyedArchiver"},
                                {"$objects", std::move(objects)},
                                {"$top", Dictionary{{"root", Uid{1}}}},
                                {"$version", 100000}});
}

Value classNamed(const char* name) {
  return Dictionary{{"$classes", Array{name, "NSObject"}}, {"$classname", name}};
}

/// An archive of an object with these fields, and of its class.
Bytes instanceOf(const char* className, Dictionary fields) {
  fields["$class"] = Uid{2};
  return archiveOf({std::move(fields), classNamed(className), "text", 5});
}

std::string problemIn(const Bytes& file) {
  const Result<Value> outcome = unarchive(file);
  return outcome ? "none" : outcome.error().message;
}

}  // namespace

TEST(KeyedUnarchiver, readsBackWhatWasArchived) {
  const Result<Value> read = unarchive(archive(sample()));
  ASSERT_TRUE(read) << read.error().message;
  EXPECT_EQ(*read, sample());
}

TEST(KeyedUnarchiver, keepsKeysThatAreNotUtf8) {
  const Value value = Dictionary{{"caf\xE9", 1}};
  const Result<Value> read = unarchive(archive(value));
  ASSERT_TRUE(read) << read.error().message;
  EXPECT_EQ(*read, value);
}

TEST(KeyedUnarchiver, readsTheTwinsOfEachClass) {
  const Array one = {Uid{3}};
  for (const char* const name : {"NSDictionary", "NSMutableDictionary"}) {
    EXPECT_EQ(*unarchive(instanceOf(name, {{"NS.keys", one}, {"NS.objects", Array{Uid{4}}}})),
              Value(Dictionary{{"text", 5}}));
  }
  for (const char* const name : {"NSArray", "NSMutableArray"}) {
    EXPECT_EQ(*unarchive(instanceOf(name, {{"NS.objects", one}})), Value(Array{"text"}));
  }
  for (const char* const name : {"NSString", "NSMutableString"}) {
    EXPECT_EQ(*unarchive(instanceOf(name, {{"NS.string", "in place"}})), Value("in place"));
    EXPECT_EQ(*unarchive(instanceOf(name, {{"NS.string", Uid{3}}})), Value("text"));
  }
  for (const char* const name : {"NSData", "NSMutableData"}) {
    EXPECT_EQ(*unarchive(instanceOf(name, {{"NS.data", Bytes{7}}})), Value(Bytes{7}));
  }
  EXPECT_EQ(*unarchive(instanceOf("NSDate", {{"NS.time", 2.5}})), Value(ReferenceTime{2.5}));
  EXPECT_EQ(*unarchive(instanceOf("NSNumber", {{"NS.intval", 3}})), Value(3));
  EXPECT_EQ(*unarchive(instanceOf("NSNumber", {{"NS.dblval", 3.5}})), Value(3.5));
  EXPECT_EQ(*unarchive(instanceOf("NSNumber", {{"NS.boolval", true}})), Value(true));
}

TEST(KeyedUnarchiver, refusesOtherClasses) {
  const std::string refused = "the archive holds an object of a class that is not allowed";
  EXPECT_EQ(problemIn(instanceOf("NSSet", {{"NS.objects", Array{}}})), refused);
  EXPECT_EQ(problemIn(instanceOf("NSTask", {})), refused);
  EXPECT_EQ(problemIn(archiveOf({Dictionary{}})), refused);
}

TEST(KeyedUnarchiver, refusesObjectsOfTheWrongShape) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const Bytes& wrong :
       {instanceOf("NSArray", {}), instanceOf("NSArray", {{"NS.objects", 1}}),
        instanceOf("NSArray", {{"NS.objects", Array{1}}}),
        instanceOf("NSArray", {{"NS.objects", Array{Uid{99}}}}),
        instanceOf("NSDictionary", {{"NS.keys", Array{Uid{3}}}, {"NS.objects", Array{}}}),
        instanceOf("NSDictionary", {{"NS.keys", Array{Uid{4}}}, {"NS.objects", Array{Uid{4}}}}),
        instanceOf("NSDictionary",
                   {{"NS.keys", Array{Uid{3}, Uid{3}}}, {"NS.objects", Array{Uid{4}, Uid{4}}}}),
        instanceOf("NSString", {{"NS.string", 1}}), instanceOf("NSData", {{"NS.data", "x"}}),
        instanceOf("NSDate", {{"NS.time", "now"}}), instanceOf("NSDate", {{"NS.time", nan}}),
        instanceOf("NSDate", {}), instanceOf("NSNumber", {}), archiveOf({Uid{1}})}) {
    EXPECT_NE(problemIn(wrong), "none");
  }
}

TEST(KeyedUnarchiver, refusesAnArchiveThatContainsItself) {
  EXPECT_EQ(problemIn(instanceOf("NSArray", {{"NS.objects", Array{Uid{1}}}})),
            "the archive contains itself");
}

TEST(KeyedUnarchiver, refusesWhatIsTooDeep) {
  const auto nested = [](int depth) {
    Value value = Array{};
    for (int i = 1; i < depth; ++i) value = Array{std::move(value)};
    return problemIn(archive(value));
  };
  EXPECT_EQ(nested(128), "none");
  EXPECT_EQ(nested(129), "the archive is too deep");
}

TEST(KeyedUnarchiver, refusesOneLongTextManyTimes) {
  const Array often(10'000, Uid{3});
  const Dictionary fields = {{"$class", Uid{2}}, {"NS.objects", often}};
  EXPECT_EQ(problemIn(archiveOf({fields, classNamed("NSArray"), std::string(10'000, 'x')})),
            "the archive is too large");
}

TEST(KeyedUnarchiver, refusesAFileCutAtAnyLength) {
  const Bytes whole = archive(sample());
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_FALSE(unarchive(std::span(whole).first(length))) << length;
  }
}

TEST(KeyedUnarchiver, survivesAnyChangedByte) {
  const Bytes whole = archive(sample());
  int different = 0;
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const int mask : {0x01, 0x10, 0x80, 0xFF}) {
      Bytes changed = whole;
      changed[at] = static_cast<std::uint8_t>(changed[at] ^ mask);
      const Result<Value> outcome = unarchive(changed);
      if (!outcome || !(*outcome == sample())) ++different;
    }
  }
  EXPECT_GT(different, static_cast<int>(whole.size()) * 2);
}

}  // namespace pelmora::plist
