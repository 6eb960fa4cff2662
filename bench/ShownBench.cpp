#include "BenchCards.h"
#include "Benches.h"
#include "Report.h"

#include "platform/linux/RunLoopScheduler.h"
#include "platform/linux/SystemClock.h"
#include "render/LayerTree.h"
#include "render/RasterWindow.h"

#include <QGuiApplication>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace pelmora::bench {

namespace {

constexpr int kRestingCards = 5;
constexpr double kSettling = 1.0;  // seconds until the resting cards are shown
constexpr double kHeld = 0.3;      // seconds that the module is held up in

/// An entrance in a real window, its module on a thread of its own; frames shown of 60 a second.
double framesShown(const Size& size, bool holdsTheModule) {
  int count = 1;
  char name[] = "pelmora_bench";
  char* words[] = {name, nullptr};
  const QGuiApplication application(count, words);
  platform::SystemClock clock;
  platform::RunLoopScheduler scheduler(clock);
  render::RasterWindow window(clock);
  window.setGeometry(0, 0, static_cast<int>(size.width), static_cast<int>(size.height));
  window.show();
  std::uint64_t before = 0;
  std::thread module([&] {
    const Rect screen{{0, 0}, size};
    auto root = std::make_shared<render::Layer>();
    root->setBounds(screen);
    render::LayerTree tree(clock, scheduler, root);
    tree.setPresenter(&window);
    scheduler.setEndOfTurn([&tree] { tree.commit(); });
    for (int i = 0; i < kRestingCards; ++i) root->addSublayer(makeCard(screen, i));
    scheduler.after(kSettling, [&] {
      before = window.framesDrawn();
      const auto card = makeCard(screen, kRestingCards);
      addEntrance(*card, screen);
      root->addSublayer(card);
    });
    if (holdsTheModule) scheduler.after(kSettling + 0.2, [&] { scheduler.sleep(kHeld); });
    scheduler.after(kSettling + kEntrance + 0.3, [&] {
      scheduler.stop();
      QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    scheduler.run();
    tree.setPresenter(nullptr);
  });
  QGuiApplication::exec();
  module.join();
  return static_cast<double>(window.framesDrawn() - before) / kEntrance;
}

void benchSize(const std::string& name, const Size& size) {
  report({.name = "shown." + name,
          .value = framesShown(size, false),
          .unit = "frames/s",
          .base = "of-60",
          .baseValue = 60,
          .least = 0.98});
  report({.name = "shown." + name + ".module-held",
          .value = framesShown(size, true),
          .unit = "frames/s",
          .base = "of-60",
          .baseValue = 60,
          .least = 0.98});
}

}  // namespace

void benchHeldFrames() {
  if (!std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY")) {
    std::puts("# shown: left out, as it needs a display");
    return;
  }
  benchSize("1080p", {1920, 1080});
  benchSize("4k", {3840, 2160});
}

}  // namespace pelmora::bench
