#include "sources/AddFolderOp.h"

#include "sources/tests/SourcesTest.h"

namespace pelmora::sources {

namespace {

class AddFolderOpTest : public SourcesTest {
 protected:
  AddFolderOpTest() {
    (void)temporary.write("p/a.jpg");
    (void)temporary.write("p/known/b.jpg");
    (void)temporary.write("p/unknown/c.jpg");
    (void)temporary.mkdir("p/known/sub");
    (void)temporary.mkdir("p/unknown/sub");
    queue.setSuspended(true);
  }

  const FilePath folder = temporary.path() / "p";
  platform::OperationQueue queue{{}};
};

}  // namespace

TEST_F(AddFolderOpTest, keepsWhatItWasMadeWith) {
  PMSourceList& sources = makeList();
  const AddFolderOp operation(folder, 3, true, queue, sources);
  EXPECT_EQ(operation.url, folder);
  EXPECT_EQ(operation.screen, 3U);
  EXPECT_TRUE(operation.isBaseFolder);
  EXPECT_EQ(&operation.addToQueue, &queue);
  EXPECT_EQ(&operation.sourceList, &sources);
}

TEST_F(AddFolderOpTest, enumeratesItsFolder) {
  AddFolderOp(folder, 0, true, queue, makeList()).main();
  EXPECT_TRUE(recordOf(folder)->isBaseFolder);
  EXPECT_EQ(queue.operationCount(), 2U);
}

TEST_F(AddFolderOpTest, takesTheSubfoldersThatTheWalkKnows) {
  AddFolderOp(folder, 0, false, queue, makeList(), makeNameList({"known"})).main();
  EXPECT_TRUE(recordOf(folder / "known"));
  EXPECT_FALSE(recordOf(folder / "unknown"));
  EXPECT_EQ(fakes.files.count(platform::CountingFiles::Call::list, folder), 0U);
}

TEST_F(AddFolderOpTest, doesNothingOnceItIsCancelled) {
  AddFolderOp operation(folder, 0, true, queue, makeList());
  operation.cancel();
  operation.main();
  EXPECT_TRUE(list->dirItems().empty());
  EXPECT_EQ(queue.operationCount(), 0U);
}

}  // namespace pelmora::sources
