#include "platform/linux/index/FrequentTexts.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/index/MetadataStore.h"
#include "platform/linux/index/StoreFile.h"
#include "platform/linux/index/StoreSchema.h"

#include <gmock/gmock.h>

namespace pelmora::platform {
namespace {

using predicate::Constant;
using testing::ElementsAre;
using testing::IsEmpty;

using Texts = std::vector<std::string>;

class FrequentTextsTest : public testing::Test {
 protected:
  void enter(const std::string& name, const char* attribute, std::vector<Constant> values,
             const FilePath& folder = FilePath("/Bilder")) {
    MetadataStore::Entry entry;
    entry.name = name;
    entry.metadata.set(attribute, std::move(values));
    _store.put(_store.folderId(folder), folder, {entry});
  }
  void enterCity(const std::string& city) {
    enter(std::to_string(++_files), "kMDItemCity", {Constant(city)});
  }
  Texts frequent(const char* attribute, std::size_t most = 10) {
    return _store.frequentTexts(metadata::attributeNamed(attribute).value(), most, _isOver);
  }

  TemporaryFolder _folder;
  const FilePath _path = _folder.path() / "index";
  MetadataStore _store{_path, {}, {.atMost = std::chrono::milliseconds(1)}};
  std::function<bool()> _isOver = [] { return false; };
  int _files = 0;
};

TEST_F(FrequentTextsTest, areThoseOfMostFilesFirst) {
  for (const char* city : {"Oslo", "Bergen", "Ålesund", "Bergen", "Oslo", "Bergen", "Alta"}) {
    enterCity(city);
  }
  EXPECT_THAT(frequent("kMDItemCity"), ElementsAre("Bergen", "Oslo", "Alta", "Ålesund"));
  EXPECT_THAT(frequent("kMDItemCity", 2), ElementsAre("Bergen", "Oslo"));
  EXPECT_THAT(frequent("kMDItemCity", 0), IsEmpty());
}

TEST_F(FrequentTextsTest, areEachOfTheValuesThatAFileHas) {
  enter("a", "kMDItemKeywords", {"beach", "Été"});
  enter("b", "kMDItemKeywords", {"dune", "beach"});
  EXPECT_THAT(frequent("kMDItemKeywords"), ElementsAre("beach", "dune", "Été"));
}

TEST_F(FrequentTextsTest, areTheNamesOfFilesAndThePathsOfFolders) {
  enter("a.jpg", "kMDItemCity", {"Oslo"}, FilePath("/"));
  enter("a.jpg", "kMDItemCity", {"Oslo"}, FilePath("/Bilder/Été"));
  enter("b.jpg", "kMDItemCity", {"Oslo"}, FilePath("/Bilder/Été"));
  EXPECT_THAT(frequent("kMDItemFSName"), ElementsAre("a.jpg", "b.jpg"));
  EXPECT_THAT(frequent("kMDItemDisplayName"), ElementsAre("a.jpg", "b.jpg"));
  EXPECT_THAT(frequent("kMDItemPath"), ElementsAre("/Bilder/Été/", "/"));
}

TEST_F(FrequentTextsTest, leaveOutWhatCannotBeTypedAndWhatIsTooLong) {
  for (const std::string& city :
       {std::string(), std::string("Os\nlo"), std::string("Os\tlo"), std::string("Os\x7Flo"),
        std::string("Os\xFFlo"), std::string(kLongestFrequentText + 1, 'o'), std::string("Oslo")}) {
    enterCity(city);
  }
  const std::string longest(kLongestFrequentText, 'o');
  enterCity(longest);
  EXPECT_THAT(frequent("kMDItemCity"), ElementsAre("Oslo", longest));
}

TEST_F(FrequentTextsTest, areNoneOfNumbersDatesAndWhatIsNoAttribute) {
  enter("a", "kMDItemPixelWidth", {Constant(640)});
  EXPECT_THAT(frequent("kMDItemPixelWidth"), IsEmpty());
  EXPECT_THAT(frequent("kMDItemContentCreationDate"), IsEmpty());
  EXPECT_THAT(_store.frequentTexts(metadata::attributeTable().size(), 10, _isOver), IsEmpty());
}

TEST_F(FrequentTextsTest, areThoseFoundSoFarWhenItIsToEnd) {
  for (const char* city : {"Oslo", "Bergen", "Alta"}) enterCity(city);
  int asked = 0;
  _isOver = [&] { return ++asked > 2; };
  EXPECT_THAT(frequent("kMDItemCity"), ElementsAre("Alta", "Bergen"));
}

TEST_F(FrequentTextsTest, areFoundWhileAnotherWrites) {
  enterCity("Oslo");
  SqliteDatabase other(_path.bytes());
  const SqliteTransaction writing(other);
  EXPECT_THAT(frequent("kMDItemCity"), ElementsAre("Oslo"));
}

TEST_F(FrequentTextsTest, areNoneOfAnIndexThatAnotherDoesNotLetIn) {
  enterCity("Oslo");
  StoreFile file(_path);
  const auto lock = file.lock();
  ASSERT_TRUE(lock.ok());
  MetadataStore store(_path, {}, {.atMost = std::chrono::milliseconds(1)});
  EXPECT_THAT(store.frequentTexts(metadata::attributeNamed("kMDItemCity").value(), 10, _isOver),
              IsEmpty());
}

TEST_F(FrequentTextsTest, areCountedAmongTheNewestFilesAlone) {
  for (const char* city : {"Oslo", "Oslo", "Bergen", "Alta"}) enterCity(city);
  const std::size_t attribute = metadata::attributeNamed("kMDItemCity").value();
  StoreConnection connection(_path.bytes());
  EXPECT_THAT(frequentTexts(connection, attribute, 10, _isOver, {.files = 2}),
              ElementsAre("Alta", "Bergen"));
  EXPECT_THAT(frequentTexts(connection, attribute, 10, _isOver, {.texts = 1}), ElementsAre("Alta"));
}

}  // namespace
}  // namespace pelmora::platform
