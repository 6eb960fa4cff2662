#include "host/tests/CommandRun.h"

namespace pelmora::host {

class SaverCommand : public CommandFixture {
 protected:
  SaverCommand() {
    for (const char* name :
         {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XSCREENSAVER_WINDOW"})
      unsetenv(name);
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

TEST_F(SaverCommand, refusesAWindowThatIsNone) {
  EXPECT_EQ(run({"--window-id", "0"}).status, ExitStatus::badUsage);
  EXPECT_EQ(run({"-window-id", "token"}).status, ExitStatus::badUsage);
  EXPECT_EQ(run({"--window-id"}).status, ExitStatus::badUsage);
  const Outcome saver = run({"--window-id", "0x600016"});
  EXPECT_EQ(saver.status, ExitStatus::failure);
  EXPECT_EQ(saver.error,
            "pelmora: there is no X server that answers, so there is no window of it\n");
}

TEST_F(SaverCommand, goesOnWithoutAWindowThatNoServerCouldHave) {
  setenv("XSCREENSAVER_WINDOW", "0x600016", 1);
  const Outcome saver = run({"-root", "--renderer", "software"});
  unsetenv("XSCREENSAVER_WINDOW");
  EXPECT_EQ(saver.status, ExitStatus::failure);
  EXPECT_EQ(saver.error,
            "pelmora: note: XSCREENSAVER_WINDOW is ignored, as no X server answers that could have "
            "it\npelmora: there is no display; 'pelmora render' makes pictures without one\n");
}

}  // namespace pelmora::host
