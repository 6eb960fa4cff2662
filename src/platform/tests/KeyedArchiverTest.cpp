#include "platform/KeyedArchive.h"

#include <gtest/gtest.h>

namespace pelmora::plist {

namespace {

/// The archive as the property list that it is.
Dictionary layoutOf(const Value& value) {
  const Result<Value> layout = read(archive(value));
  return layout && layout->get<Dictionary>() ? *layout->get<Dictionary>() : Dictionary();
}

Array objectsOf(const Value& value) { return *layoutOf(value).at("$objects").get<Array>(); }

Value classEntry(const Array& classes) {
  return Dictionary{{"$classes", classes}, {"$classname", classes.front()}};
}

}  // namespace

TEST(KeyedArchiver, writesThePlatformsLayout) {
  const Dictionary layout = layoutOf("text");
  EXPECT_EQ(layout.size(), 4U);
  EXPECT_EQ(layout.at("$archiver"), Value("NSKeyedArchiver"));
  EXPECT_EQ(layout.at("$version"), Value(100000));
  EXPECT_EQ(layout.at("$top"), Value(Dictionary{{"root", Uid{1}}}));
  EXPECT_EQ(layout.at("$objects"), Value(Array{"$null", "text"}));
}

TEST(KeyedArchiver, makesEachDictionaryAMutableOne) {
  const Array expected = {
      "$null",
      Dictionary{{"$class", Uid{4}}, {"NS.keys", Array{Uid{2}}}, {"NS.objects", Array{Uid{3}}}},
      "key", 5, classEntry({"NSMutableDictionary", "NSDictionary", "NSObject"})};
  EXPECT_EQ(objectsOf(Dictionary{{"key", 5}}), expected);
}

TEST(KeyedArchiver, writesArraysDatesAndData) {
  const Array expected = {"$null",
                          Dictionary{{"$class", Uid{5}}, {"NS.objects", Array{Uid{3}, Uid{4}}}},
                          classEntry({"NSDate", "NSObject"}),
                          Dictionary{{"$class", Uid{2}}, {"NS.time", 0.5}},
                          Bytes{1, 2},
                          classEntry({"NSArray", "NSObject"})};
  EXPECT_EQ(objectsOf(Array{ReferenceTime{0.5}, Bytes{1, 2}}), expected);
}

TEST(KeyedArchiver, writesEqualTextsAndClassesOnce) {
  const Array array = {"a", "a", Array{}, Array{}};
  EXPECT_EQ(objectsOf(array).size(), 1U + 1 + 1 + 1 + 2);  // null, root, "a", the class, two arrays
}

TEST(KeyedArchiver, writesNullAsTheNullObject) {
  const Array objects = objectsOf(Array{Value()});
  const Array expected = {Uid{0}};
  EXPECT_EQ(objects.at(1).get<Dictionary>()->at("NS.objects"), Value(expected));
}

}  // namespace pelmora::plist
