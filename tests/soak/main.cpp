#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/SystemClock.h"
#include "SoakDay.h"

#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace pelmora;

constexpr int kUsage = 2;
constexpr std::size_t kViews = 4;
constexpr std::size_t kPictures = 10'000;
// One in a million of fair runs is farther off.
constexpr double kMostDeviations = 4.753;

struct Outcome {
  // Days with a filter have the index beside them, with a thread and files of its own.
  std::vector<soak::ProcessUse> filtered;
  std::vector<soak::ProcessUse> unfiltered;
  std::vector<soak::ProcessUse> between;  // the runs
  bool isRight = true;

  void fail(const std::string& problem) {
    std::printf("FAILED: %s\n", problem.c_str());
    isRight = false;
  }
};

/// A user of the run's own, without a session.
void moveTo(const FilePath& home) {
  setenv("HOME", home.c_str(), 1);
  for (const char* name : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME",
                           "DBUS_SESSION_BUS_ADDRESS"}) {
    unsetenv(name);
  }
  setenv("TZ", "Europe/Berlin", 1);
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
}

void printUse(const soak::ProcessUse& use) {
  std::printf(" %8ld %6ld %5ld %7ld %8ld", use.kilobytes, use.heapKilobytes, use.descriptors,
              use.threads, use.children);
}

void printRow(int day, const soak::ProcessUse& in, const soak::ProcessUse& after, double seconds) {
  std::printf("%4d", day + 1);
  printUse(in);
  printUse(after);
  std::printf(" %8.1f\n", seconds);
  std::fflush(stdout);
}

soak::ProcessUse runDay(const soak::SoakTree& tree, int day, int hours, soak::PickTallies& tallies,
                        Outcome& outcome) {
  soak::SoakDay run(tree, tallies, day, hours);
  for (const std::string& problem : run.run()) outcome.fail(problem);
  (run.isFiltered() ? outcome.filtered : outcome.unfiltered).push_back(run.use());
  return run.use();
}

void runDays(int days, int hours, soak::PickTallies& tallies, Outcome& outcome) {
  const platform::TemporaryFolder home;
  moveTo(home.path());
  int count = 1;
  char name[] = "pelmora_soak";
  char* words[] = {name, nullptr};
  const QGuiApplication application(count, words);
  soak::SoakTree tree(home.mkdir("Pictures"), kPictures);
  const platform::SystemClock clock;
  constexpr char kUse[] = "  KiB RSS   heap files threads children";
  std::printf("     %-38s |%s\n day%s%s  seconds\n", " in the run's last moments", " after it",
              kUse, kUse);
  for (int day = 0; day < days; ++day) {
    const double start = clock.mediaTime();
    tree.changeForDay(day);
    const soak::ProcessUse use = runDay(tree, day, hours, tallies, outcome);
    outcome.between.push_back(soak::ProcessUse::now());
    printRow(day, use, outcome.between.back(), clock.mediaTime() - start);
  }
}

void judgePicks(const soak::PickTallies& tallies, int days, Outcome& outcome) {
  const std::uint64_t cards = soak::SoakDay::kCards * static_cast<std::uint64_t>(days);
  std::printf("view    picks  by source: sum  freedom  off  by folder: sum  freedom  off\n");
  for (std::size_t view = 0; view < tallies.size(); ++view) {
    const soak::PickTally& tally = tallies[view];
    const soak::ChiSquare source = tally.bySource();
    const soak::ChiSquare folder = tally.byFolder();
    std::printf("%4zu %8llu %15.1f %8.0f %4.1f %15.1f %8.0f %4.1f\n", view,
                static_cast<unsigned long long>(tally.picks()), source.sum, source.freedom,
                source.deviations(), folder.sum, folder.freedom, folder.deviations());
    const std::string which = "view " + std::to_string(view);
    if (tally.picks() != cards) {
      outcome.fail(which + " had " + std::to_string(tally.picks()) + " pictures");
    }
    if (!tally.strays().empty()) {
      outcome.fail(which + " showed " + std::to_string(tally.strays().size()) +
                   " pictures that it must not, first " + tally.strays().front());
    }
    if (source.deviations() > kMostDeviations || folder.deviations() > kMostDeviations) {
      outcome.fail(which + " does not choose by the weights");
    }
  }
}

}  // namespace

int main(int count, char** words) {
  const int days = count == 2 || count == 3 ? std::atoi(words[1]) : 0;
  const int hours = count == 3 ? std::atoi(words[2]) : 24;
  if (days < 1 || days > 3660 || hours < 1 || hours > 24) {
    std::fprintf(stderr, "usage: pelmora_soak DAYS [HOURS of each, around its midnight]\n");
    return kUsage;
  }
  soak::PickTallies tallies(kViews);
  Outcome outcome;
  runDays(days, hours, tallies, outcome);
  judgePicks(tallies, days, outcome);
  bool isLongEnough = true;
  const auto judge = [&](const std::vector<soak::ProcessUse>& uses) {
    isLongEnough = isLongEnough && uses.size() >= soak::kFewestSamples;
    for (const std::string& problem : soak::growth(uses)) outcome.fail(problem);
  };
  judge(outcome.filtered);
  judge(outcome.unfiltered);
  judge(outcome.between);
  const char* const fair = isLongEnough ? "flat and fair" : "fair, and too short to be called flat";
  std::printf("verdict: %s\n", outcome.isRight ? fair : "FAILED");
  return outcome.isRight ? EXIT_SUCCESS : EXIT_FAILURE;
}
