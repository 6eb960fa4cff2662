#include "host/tests/CommandRun.h"

namespace pelmora::host {

class SaverCommand : public CommandFixture {
 protected:
  SaverCommand() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) unsetenv(name);
  }
  ~SaverCommand() override { setenv("QT_QPA_PLATFORM", "offscreen", 1); }
};

TEST_F(SaverCommand, saysThatThereIsNoDisplayAndWhatToDo) {
  const Outcome saver = run({"--renderer", "software"});
  EXPECT_EQ(saver.status, ExitStatus::failure);
  EXPECT_EQ(saver.error,
            "pelmora: there is no display; 'pelmora render' makes pictures without one\n");
  EXPECT_EQ(run({"window", "--renderer", "software"}).status, ExitStatus::failure);
}

TEST_F(SaverCommand, refusesWordsThatMakeNoSense) {
  EXPECT_EQ(run({"window", "--size", "huge"}).status, ExitStatus::badUsage);
  EXPECT_EQ(run({"window", "word"}).status, ExitStatus::badUsage);
  EXPECT_EQ(run({"--renderer"}).status, ExitStatus::badUsage);
}

}  // namespace pelmora::host
