#include "platform/fake/FakeWorkspace.h"

#include <gmock/gmock.h>

namespace pelmora::platform {

TEST(FakeWorkspace, knowsWhatItWasTold) {
  FakeWorkspace workspace;
  EXPECT_TRUE(workspace.fileLabels().empty());
  EXPECT_TRUE(workspace.tagNames(FilePath("/a")).empty());
  workspace.labels = {"Red"};
  workspace.colors = {Color{1, 0, 0, 1}};
  workspace.tags[FilePath("/a")] = {"Red", "Sea"};
  EXPECT_THAT(workspace.fileLabels(), testing::ElementsAre("Red"));
  EXPECT_THAT(workspace.fileLabelColors(), testing::ElementsAre(Color{1, 0, 0, 1}));
  EXPECT_THAT(workspace.tagNames(FilePath("/a")), testing::ElementsAre("Red", "Sea"));
}

}  // namespace pelmora::platform
