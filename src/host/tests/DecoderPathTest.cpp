#include "host/DecoderPath.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace pelmora::host {

TEST(DecoderPath, isBesideTheProgramAsItIsBuilt) {
  const platform::TemporaryFolder folder;
  const FilePath decoder = folder.write("bin/pelmora-decoder");
  folder.write("libexec/pelmora/pelmora-decoder");
  EXPECT_EQ(decoderPathFor(folder.path() / "bin/pelmora"), decoder);
}

TEST(DecoderPath, isInItsOwnFolderAsItIsInstalled) {
  const platform::TemporaryFolder folder;
  const FilePath expected = folder.path() / "libexec/pelmora/pelmora-decoder";
  EXPECT_EQ(decoderPathFor(folder.path() / "bin/pelmora"), expected);
  folder.mkdir("bin/pelmora-decoder");  // no program
  EXPECT_EQ(decoderPathFor(folder.path() / "bin/pelmora"), expected);
}

TEST(DecoderPath, leadsStraightToWhatIsInstalled) {
  const FilePath program("/opt/photos/bin/pelmora");
  EXPECT_EQ(installedFolder(program, "../libexec/pelmora").bytes(), "/opt/photos/libexec/pelmora");
  EXPECT_EQ(installedFolder(program, "../lib/x86/pelmora").bytes(), "/opt/photos/lib/x86/pelmora");
  EXPECT_EQ(installedFolder(program, "../../shared").bytes(), "/opt/shared");
}

TEST(DecoderPath, isFoundForTheRunningProgram) {
  EXPECT_TRUE(runningProgram().lastComponent().starts_with("host_tests"));
  EXPECT_EQ(decoderPath().lastComponent(), "pelmora-decoder");
  EXPECT_TRUE(decoderPath().bytes().starts_with('/'));
}

TEST(DecoderPath, hasTheInspectorInTheSamePlace) {
  EXPECT_EQ(inspectorPath().lastComponent(), "pelmora-inspector");
  EXPECT_EQ(inspectorPath().parent(), decoderPath().parent());
}

}  // namespace pelmora::host
