#include "platform/predicate/PredicateArchive.h"

#include <gtest/gtest.h>

#include <limits>

namespace pelmora::platform::predicate {

namespace {

using plist::Dictionary;
using plist::Uid;
using plist::Value;

/// An archive that is made object by object; the root is the last one.
class Archive {
 public:
  Uid add(Value object) {
    _objects.push_back(std::move(object));
    return Uid{static_cast<std::uint32_t>(_objects.size() - 1)};
  }
  Uid add(const char* className, Dictionary fields) {
    fields["$class"] = add(
        Dictionary{{"$classes", plist::Array{className, "NSObject"}}, {"$classname", className}});
    return add(std::move(fields));
  }
  Uid list(plist::Array elements) { return add("NSArray", {{"NS.objects", std::move(elements)}}); }
  Uid keyPath(Dictionary changes = {}) {
    const Uid name =
        add("NSKeyPathSpecifierExpression", {{"NSExpressionType", 10}, {"NSKeyPath", add("name")}});
    changes.merge(Dictionary{{"NSExpressionType", 3},
                             {"NSOperand", add("NSSelfExpression", {{"NSExpressionType", 1}})},
                             {"NSSelectorName", add("valueForKey:")},
                             {"NSArguments", list({name})}});
    return add("NSKeyPathExpression", std::move(changes));
  }
  Uid constant(Value value) {
    return add("NSConstantValueExpression",
               {{"NSExpressionType", 0}, {"NSConstantValue", add(std::move(value))}});
  }
  Uid equality(Dictionary changes = {}) {
    changes.merge(Dictionary{{"NSOperatorType", 4}, {"NSModifier", 0}, {"NSOptions", 0}});
    return add("NSEqualityPredicateOperator", std::move(changes));
  }
  Uid comparison(Uid left, Uid right, Uid itsOperator) {
    return add("NSComparisonPredicate", {{"NSLeftExpression", left},
                                         {"NSRightExpression", right},
                                         {"NSPredicateOperator", itsOperator}});
  }
  Uid aggregate(plist::Array elements) {
    return add("NSAggregateExpression",
               {{"NSExpressionType", 14}, {"NSCollection", list(std::move(elements))}});
  }
  Value& operator[](Uid number) { return _objects[number.index]; }
  [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(_objects.size()); }

  [[nodiscard]] plist::Bytes bytes() const {
    return plist::writeBinary(Dictionary{{"$archiver", "NSKeyedArchiver"},
                                         {"$objects", _objects},
                                         {"$top", Dictionary{{"root", Uid{size() - 1}}}},
                                         {"$version", 100000}});
  }
  [[nodiscard]] std::string problem() const {
    const Result<Predicate> read = readPredicateArchive(bytes());
    return read ? "none" : read.error().message;
  }
  [[nodiscard]] Predicate read() const {
    Result<Predicate> read = readPredicateArchive(bytes());
    EXPECT_TRUE(read) << read.error().message;
    return read ? std::move(*read) : Predicate();
  }

 private:
  plist::Array _objects = {"$null"};
};

Predicate nameIs(Expression right) {
  return Comparison{KeyPath{"name"}, Operator::equal, std::move(right)};
}

/// "name == value", with changes to its operator.
Archive withOperator(Dictionary changes) {
  Archive archive;
  const Uid left = archive.keyPath();
  archive.comparison(left, archive.constant("x"), archive.equality(std::move(changes)));
  return archive;
}

Archive withRight(const char* className, Dictionary fields) {
  Archive archive;
  const Uid left = archive.keyPath();
  const Uid right = archive.add(className, std::move(fields));
  archive.comparison(left, right, archive.equality());
  return archive;
}

Archive withKeyPath(Dictionary changes) {
  Archive archive;
  const Uid left = archive.keyPath(std::move(changes));
  archive.comparison(left, archive.constant("x"), archive.equality());
  return archive;
}

Archive withConstant(Value value) {
  Archive archive;
  const Uid left = archive.keyPath();
  archive.comparison(left, archive.constant(std::move(value)), archive.equality());
  return archive;
}

void expectSame(const Predicate& predicate) {
  const Result<plist::Bytes> bytes = writePredicateArchive(predicate);
  ASSERT_TRUE(bytes) << bytes.error().message;
  const Result<Predicate> again = readPredicateArchive(*bytes);
  ASSERT_TRUE(again) << again.error().message;
  EXPECT_EQ(*again, predicate);
}

}  // namespace

TEST(PredicateArchiveReader, readsBackEveryValue) {
  for (const auto& value :
       {Constant(), Constant(true), Constant(false), Constant(-7), Constant(INT64_MIN),
        Constant(0.1), Constant(1.0), Constant(ReferenceTime{718283.123456789}), Constant(""),
        Constant("Bücher 📷"), Constant("$null"), Constant(Array{}),
        Constant(Array{Array{1, "x"}, "x", Constant(), ReferenceTime{0}})}) {
    expectSame(nameIs(value));
  }
}

TEST(PredicateArchiveReader, readsBackEveryOperator) {
  for (unsigned number = 0; number <= 100; ++number) {
    if (number > 10 && number < 99) continue;
    for (unsigned options = 0; options <= kAllOptions; ++options) {
      for (const Modifier modifier : {Modifier::direct, Modifier::all, Modifier::any}) {
        expectSame(Comparison{KeyPath{"a.b"}, static_cast<Operator>(number), EvaluatedObject{},
                              modifier, options});
      }
    }
  }
}

TEST(PredicateArchiveReader, readsBackCompounds) {
  expectSame(Fixed{true});
  expectSame(Fixed{false});
  expectSame(Compound{CompoundType::conjunction, {}});
  const Predicate same = nameIs(Constant("x"));
  const Predicate negated = Compound{CompoundType::negation, {same}};
  expectSame(Compound{CompoundType::disjunction,
                      {negated, same, same, Compound{CompoundType::conjunction, {same}}}});
}

TEST(PredicateArchiveReader, readsBackWhatIsAtItsLimits) {
  Compound large;
  large.subpredicates.resize(kMaxNodes - 1);
  expectSame(large);
  Predicate deep;
  for (int i = 1; i < kMaxDepth; ++i) deep = Compound{CompoundType::negation, {deep}};
  expectSame(deep);
  Constant array = Array{};
  for (int i = 2; i < kMaxDepth; ++i) array = Array{array};
  expectSame(nameIs(array));
}

TEST(PredicateArchiveReader, readsWhatThePlatformMayWriteInstead) {
  EXPECT_EQ(withConstant("x").read(), nameIs(Constant("x")));
  EXPECT_EQ(withOperator({{"NSFlags", 1}, {"NSOptions", 2}, {"NSNegate", true}}).read(),
            Predicate(Comparison{KeyPath{"name"}, Operator::equal, Constant("x"), Modifier::direct,
                                 kAllOptions}));
  Archive substring;
  const Uid left = substring.keyPath();
  const Uid right = substring.constant("x");
  substring.comparison(left, right,
                       substring.add("NSSubstringPredicateOperator", {{"NSOperatorType", 99}}));
  EXPECT_EQ(substring.read(),
            Predicate(Comparison{KeyPath{"name"}, Operator::contains, Constant("x")}));
  Archive named;
  const Uid arguments = named.list({named.constant("other")});
  const Uid path = named.keyPath({{"NSArguments", arguments}});
  named.comparison(path, named.add("NSConstantValueExpression", {{"NSConstantValue", Uid{0}}}),
                   named.equality());
  EXPECT_EQ(named.read(), Predicate(Comparison{KeyPath{"other"}, Operator::equal, Constant()}));
}

TEST(PredicateArchiveReader, readsTheTwinsOfClasses) {
  Archive archive;
  const Uid string = archive.add("NSMutableString", {{"NS.string", "x"}});
  const Uid array = archive.add("NSMutableArray", {{"NS.objects", plist::Array{string}}});
  const Uid right = archive.add("NSConstantValueExpression", {{"NSConstantValue", array}});
  archive.comparison(archive.keyPath(), right, archive.equality());
  EXPECT_EQ(archive.read(), nameIs(Constant(Array{"x"})));
}

TEST(PredicateArchiveReader, readsAnAggregateOfConstants) {
  Archive archive;
  const Uid left = archive.keyPath();
  const Uid inner = archive.aggregate({archive.constant(2.5)});
  const Uid one = archive.constant(1);
  archive.comparison(left, archive.aggregate({one, archive.constant("x"), inner, one}),
                     archive.equality());
  EXPECT_EQ(archive.read(), nameIs(Aggregate{Array{1, "x", Array{2.5}, 1}}));
  expectSame(archive.read());

  Archive empty;
  empty.comparison(empty.keyPath(), empty.aggregate({}), empty.equality());
  EXPECT_EQ(empty.read(), nameIs(Aggregate{Array{}}));
  expectSame(empty.read());

  Archive wrapped;
  const Uid array = wrapped.list({wrapped.add("x")});
  const Uid constant = wrapped.add("NSConstantValueExpression", {{"NSConstantValue", array}});
  wrapped.comparison(wrapped.keyPath(), wrapped.aggregate({constant}), wrapped.equality());
  EXPECT_EQ(wrapped.read(), nameIs(Aggregate{Array{Array{"x"}}}));
  expectSame(wrapped.read());
}

TEST(PredicateArchiveReader, carriesAnAggregateOfOtherThings) {
  Archive paths;
  const Uid left = paths.keyPath();
  paths.comparison(left, paths.aggregate({paths.constant(1), left}), paths.equality());
  EXPECT_EQ(paths.read(), nameIs(UnknownExpression{14}));

  Archive nested;
  const Uid inner = nested.aggregate({nested.add("NSSelfExpression", {{"NSExpressionType", 1}})});
  nested.comparison(nested.keyPath(), nested.aggregate({inner}), nested.equality());
  EXPECT_EQ(nested.read(), nameIs(UnknownExpression{14}));

  EXPECT_EQ(
      withRight("NSAggregateExpression", {{"NSExpressionType", 14}, {"NSCollection", 5}}).read(),
      nameIs(UnknownExpression{14}));
}

TEST(PredicateArchiveReader, refusesDamagedAggregates) {
  Archive archive;
  const Uid damaged = archive.add("NSConstantValueExpression", {});
  archive.comparison(archive.keyPath(), archive.aggregate({damaged}), archive.equality());
  EXPECT_EQ(archive.problem(), "a constant of the predicate has no value");

  Archive missing;
  missing.comparison(missing.keyPath(), missing.aggregate({Uid{9999}}), missing.equality());
  EXPECT_EQ(missing.problem(), "a reference of the predicate is damaged");

  Archive endless;
  const Uid parts = endless.list({});
  const Uid itself =
      endless.add("NSAggregateExpression", {{"NSExpressionType", 14}, {"NSCollection", parts}});
  (*endless[parts].get<Dictionary>())["NS.objects"] = plist::Array{itself};
  endless.comparison(endless.keyPath(), itself, endless.equality());
  EXPECT_EQ(endless.problem(), "the predicate contains itself");

  Archive deep;
  Uid inner = deep.constant(1);
  for (int i = 0; i < kMaxDepth; ++i) inner = deep.aggregate({inner});
  deep.comparison(deep.keyPath(), inner, deep.equality());
  EXPECT_EQ(deep.problem(), "the predicate is too deep");

  Archive growing;
  Uid doubled = growing.constant(1);
  for (int i = 0; i < 20; ++i) doubled = growing.aggregate({doubled, doubled});
  growing.comparison(growing.keyPath(), doubled, growing.equality());
  EXPECT_EQ(growing.problem(), "the predicate is too large");
}

TEST(PredicateArchiveReader, carriesExpressionsThatItDoesNotUnderstand) {
  EXPECT_EQ(withRight("NSAggregateExpression", {{"NSExpressionType", 14}}).read(),
            nameIs(UnknownExpression{14}));
  EXPECT_EQ(withRight("NSFunctionExpression", {{"NSExpressionType", 4}}).read(),
            nameIs(UnknownExpression{4}));
  for (const int type : {-1, 0, 1, 3, 1001}) {
    EXPECT_EQ(withRight("NSFunctionExpression", {{"NSExpressionType", type}}).problem(),
              "an expression of the predicate is not known");
  }
}

TEST(PredicateArchiveReader, refusesClassesThatItDoesNotKnow) {
  Archive archive;
  archive.add("NSBlockPredicate", {});
  EXPECT_EQ(archive.problem(),
            "the archive holds no predicate, or one of a class that is not known");
  EXPECT_EQ(withRight("NSEvilExpression", {{"NSExpressionType", 14}}).problem(),
            "an expression of the predicate is not known");
  EXPECT_EQ(withRight("NSSelfExpression", {{"NSExpressionType", 3}}).problem(),
            "an expression of the predicate is not known");
  EXPECT_EQ(withConstant(Dictionary{}).problem(),
            "a value of the predicate is of a class that is not allowed");
  EXPECT_EQ(withConstant(plist::Bytes{1}).problem(),
            "a value of the predicate is of no known kind");
}

TEST(PredicateArchiveReader, carriesOperatorsThatItDoesNotKnow) {
  for (const std::int64_t type : {11LL, 12LL, 98LL, 101LL, 2000LL, 4294967295LL}) {
    EXPECT_EQ(withOperator({{"NSOperatorType", type}}).read(),
              Predicate(Comparison{KeyPath{"name"}, static_cast<Operator>(type), Constant("x")}));
  }
  Archive custom;
  const Uid left = custom.keyPath();
  const Uid right = custom.constant("x");
  custom.comparison(left, right,
                    custom.add("NSCustomPredicateOperator",
                               {{"NSOperatorType", 11}, {"NSSelectorName", custom.add("is:")}}));
  EXPECT_EQ(custom.read(),
            Predicate(Comparison{KeyPath{"name"}, Operator::customSelector, Constant("x")}));
}

TEST(PredicateArchiveReader, refusesOperatorsOfOtherClassesAndNumbers) {
  Archive archive;
  const Uid left = archive.keyPath();
  const Uid right = archive.constant("x");
  archive.comparison(left, right, archive.add("NSEvilOperator", {{"NSOperatorType", 11}}));
  EXPECT_EQ(archive.problem(), "an operator of the predicate is not known");
  for (const std::int64_t type : {-1LL, 0LL, 6LL, 99LL, 4294967296LL}) {
    EXPECT_EQ(withOperator({{"NSOperatorType", type}}).problem(),
              "an operator of the predicate is not known")
        << type;
  }
  EXPECT_EQ(withOperator({{"NSModifier", 3}}).problem(),
            "a modifier of the predicate is not known");
  EXPECT_EQ(withOperator({{"NSModifier", -1}}).problem(),
            "a modifier of the predicate is not known");
  EXPECT_EQ(withOperator({{"NSOptions", 4}}).problem(), "an option of the predicate is not known");
  EXPECT_EQ(withOperator({{"NSFlags", -1}}).problem(), "an option of the predicate is not known");
}

TEST(PredicateArchiveReader, refusesFieldsOfOtherTypes) {
  const char* const kNoNumber = "a number of the predicate is of another type";
  EXPECT_EQ(withOperator({{"NSOperatorType", "4"}}).problem(), kNoNumber);
  EXPECT_EQ(withOperator({{"NSOptions", 1.0}}).problem(), kNoNumber);
  EXPECT_EQ(withOperator({{"NSOptions", Uid{9999}}}).problem(),
            "a reference of the predicate is damaged");
  EXPECT_EQ(withKeyPath({{"NSSelectorName", 5}}).problem(),
            "a text of the predicate is of another type");
  EXPECT_EQ(withKeyPath({{"NSSelectorName", "class"}}).problem(),
            "a key path of the predicate is damaged");
  EXPECT_EQ(withKeyPath({{"NSOperand", Uid{0}}}).problem(),
            "a key path of the predicate is damaged");
  EXPECT_EQ(withKeyPath({{"NSArguments", plist::Array{}}}).problem(),
            "a key path of the predicate is damaged");
}

TEST(PredicateArchiveReader, refusesWhatIsMissing) {
  Archive archive;
  archive.add("NSComparisonPredicate", {{"NSLeftExpression", archive.keyPath()}});
  EXPECT_EQ(archive.problem(), "a comparison of the predicate lacks a side");
  archive.add("NSComparisonPredicate", {{"NSLeftExpression", archive.keyPath()},
                                        {"NSRightExpression", archive.constant(1)}});
  EXPECT_EQ(archive.problem(), "a comparison of the predicate has no operator");
  archive.add("NSCompoundPredicate", {{"NSCompoundPredicateType", 1}});
  EXPECT_EQ(archive.problem(), "a compound of the predicate has no list of predicates");
  archive.comparison(Uid{0}, archive.constant(1), archive.equality());
  EXPECT_EQ(archive.problem(), "an expression of the predicate is not known");
  EXPECT_EQ(withRight("NSConstantValueExpression", {}).problem(),
            "a constant of the predicate has no value");
  Archive unnamed;
  const Uid empty = unnamed.add("NSKeyPathSpecifierExpression", {{"NSKeyPath", ""}});
  unnamed.comparison(unnamed.keyPath({{"NSArguments", unnamed.list({empty})}}), unnamed.constant(1),
                     unnamed.equality());
  EXPECT_EQ(unnamed.problem(), "a key path of the predicate has no name");
}

TEST(PredicateArchiveReader, refusesDamagedValues) {
  Archive archive;
  const auto withInstance = [](const char* name, Dictionary fields) {
    Archive holder;
    const Uid value = holder.add(name, std::move(fields));
    const Uid right = holder.add("NSConstantValueExpression", {{"NSConstantValue", value}});
    holder.comparison(holder.keyPath(), right, holder.equality());
    return holder.problem();
  };
  EXPECT_EQ(withInstance("NSDate", {}), "a date of the predicate is none");
  EXPECT_EQ(withInstance("NSDate", {{"NS.time", true}}), "a date of the predicate is none");
  EXPECT_EQ(withInstance("NSDate", {{"NS.time", 5}}), "none");
  EXPECT_EQ(withInstance("NSString", {}), "a text of the predicate is missing");
  EXPECT_EQ(withInstance("NSArray", {}), "an array of the predicate lacks its elements");
  EXPECT_EQ(withInstance("NSArray", {{"NS.objects", plist::Array{1}}}),
            "a reference of the predicate is damaged");
  EXPECT_EQ(withInstance("NSArray", {{"NS.objects", plist::Array{Uid{9999}}}}),
            "an object of the predicate is missing or damaged");
  EXPECT_EQ(withConstant(std::numeric_limits<double>::infinity()).problem(),
            "a value of the predicate is of no known kind");
}

TEST(PredicateArchiveReader, refusesNegationsOfNoneOrSeveral) {
  for (const std::size_t count : {0u, 2u}) {
    Archive archive;
    const Uid part = archive.add("NSTruePredicate", {});
    const Uid parts = archive.list(plist::Array(count, part));
    archive.add("NSCompoundPredicate",
                {{"NSCompoundPredicateType", 0}, {"NSSubpredicates", parts}});
    EXPECT_EQ(archive.problem(), "a negation of the predicate is not of one predicate");
  }
  Archive archive;
  archive.add("NSCompoundPredicate", {{"NSCompoundPredicateType", 3}});
  EXPECT_EQ(archive.problem(), "a compound of the predicate is of no known type");
}

TEST(PredicateArchiveReader, refusesWhatContainsItself) {
  Archive archive;
  const Uid parts = archive.list({});
  const Uid root = archive.add("NSCompoundPredicate",
                               {{"NSCompoundPredicateType", 1}, {"NSSubpredicates", parts}});
  (*archive[parts].get<Dictionary>())["NS.objects"] = plist::Array{root};
  EXPECT_EQ(archive.problem(), "the predicate contains itself");

  Archive other;
  const Uid array = other.list({});
  (*other[array].get<Dictionary>())["NS.objects"] = plist::Array{array};
  const Uid right = other.add("NSConstantValueExpression", {{"NSConstantValue", array}});
  other.comparison(other.keyPath(), right, other.equality());
  EXPECT_EQ(other.problem(), "the predicate contains itself");
}

TEST(PredicateArchiveReader, refusesWhatIsTooDeep) {
  Archive archive;
  Uid inner = archive.add("NSTruePredicate", {});
  for (int i = 0; i < kMaxDepth; ++i) {
    inner = archive.add("NSCompoundPredicate", {{"NSCompoundPredicateType", 0},
                                                {"NSSubpredicates", archive.list({inner})}});
  }
  EXPECT_EQ(archive.problem(), "the predicate is too deep");
}

TEST(PredicateArchiveReader, refusesWhatGrowsBySharing) {
  Archive archive;
  Uid inner = archive.add("NSTruePredicate", {});
  for (int i = 0; i < 20; ++i) {
    inner = archive.add("NSCompoundPredicate", {{"NSCompoundPredicateType", 1},
                                                {"NSSubpredicates", archive.list({inner, inner})}});
  }
  EXPECT_EQ(archive.problem(), "the predicate is too large");

  Archive texts;
  const Uid text = texts.add(std::string(1 << 14, 'x'));
  const Uid array = texts.list(plist::Array(5000, text));
  const Uid right = texts.add("NSConstantValueExpression", {{"NSConstantValue", array}});
  texts.comparison(texts.keyPath(), right, texts.equality());
  EXPECT_EQ(texts.problem(), "the predicate is too large");
}

TEST(PredicateArchiveReader, refusesBytesThatAreNoArchive) {
  EXPECT_FALSE(readPredicateArchive({}));
  const plist::Bytes whole = Archive(withConstant("x")).bytes();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_FALSE(readPredicateArchive(std::span(whole).first(length)));
  }
}

}  // namespace pelmora::platform::predicate
