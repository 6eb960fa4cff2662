#include "BenchCards.h"
#include "Benches.h"
#include "Report.h"

#include "platform/SteppedTime.h"
#include "render/LayerTree.h"
#include "render/Snapshot.h"
#include "render/SoftwareCompositor.h"

#include <algorithm>
#include <ctime>

namespace pelmora::bench {

namespace {

constexpr int kRestingCards = 5;
constexpr int kFrames = 60;

/// Keeps what was submitted, and shows it at once.
class HeldPresenter : public render::Presenter {
 public:
  explicit HeldPresenter(const platform::Clock& clock) : _clock(clock) {}
  void submit(std::shared_ptr<const render::Snapshot> snapshot) override {
    snapshot->beginAnimations(_clock.mediaTime());
    last = std::move(snapshot);
  }
  std::shared_ptr<const render::Snapshot> last;

 private:
  const platform::Clock& _clock;
};

double processorSeconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

void benchSize(const char* name, const Size& size) {
  const Rect screen{{0, 0}, size};
  platform::SteppedClock clock;
  platform::SteppedScheduler scheduler(clock);
  auto root = std::make_shared<render::Layer>();
  root->setBounds(screen);
  render::LayerTree tree(clock, scheduler, root);
  HeldPresenter presenter(clock);
  tree.setPresenter(&presenter);
  for (int i = 0; i < kRestingCards; ++i) root->addSublayer(makeCard(screen, i));
  tree.commit();
  QImage target(static_cast<int>(size.width), static_cast<int>(size.height),
                QImage::Format_ARGB32_Premultiplied);
  render::SoftwareCompositor compositor;
  compositor.paint(target, *presenter.last, 0);
  const auto entering = makeCard(screen, kRestingCards);
  addEntrance(*entering, screen);
  root->addSublayer(entering);
  const double bake = secondsOf([&] { tree.commit(); }) * 1e3;
  std::vector<double> frames;
  for (int i = 0; i < kFrames; ++i) {
    const double before = processorSeconds();
    compositor.paint(target, *presenter.last, kEntrance * i / kFrames);
    frames.push_back((processorSeconds() - before) * 1e3);
  }
  report({.name = std::string("frame.") + name + ".software",
          .value = median(frames),
          .unit = "ms-cpu",
          .most = 1000.0 / 60});
  report({.name = std::string("frame.") + name + ".worst",
          .value = *std::max_element(frames.begin(), frames.end()),
          .unit = "ms-cpu"});
  report({.name = std::string("frame.") + name + ".bake-a-card", .value = bake, .unit = "ms"});
}

}  // namespace

void benchFrames() {
  benchSize("1080p", {1920, 1080});
  benchSize("4k", {3840, 2160});
}

}  // namespace pelmora::bench
