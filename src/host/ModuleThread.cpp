#include "host/ModuleThread.h"

#include "host/XDisplayPower.h"
#include "platform/Clock.h"

#include <QGuiApplication>

#include <utility>

namespace pelmora::host {

ModuleThread::ModuleThread(platform::Clock& clock, platform::Displays& displays,
                           ServiceChoices choices)
    : _choices(choices), _scheduler(clock) {
  _choices.clock = &clock;
  _choices.displays = &displays;
  _choices.scheduler = &_scheduler;
  _scheduler.post([this] { _session->startFrames(); });
  _thread = std::thread([this] { run(); });
}

ModuleThread::~ModuleThread() { end(); }

void ModuleThread::end() {
  std::call_once(_ended, [this] {
    _scheduler.stop();
    {
      const std::lock_guard lock(_mutex);
      if (_services != nullptr) _services->giveUpWaiting();
    }
    _thread.join();
  });
}

void ModuleThread::run() {
  LinuxServices linuxServices(_choices);
  const auto lend = [this](LinuxServices* services) {
    const std::lock_guard lock(_mutex);
    _services = services;
  };
  lend(&linuxServices);
  const auto power = QGuiApplication::platformName() == "xcb" ? XDisplayPower::open() : nullptr;
  SaverSession session(linuxServices.services(), power.get());
  _scheduler.setEndOfTurn([&session] { session.commit(); });
  _session = &session;
  _scheduler.run();
  _session = nullptr;
  session.stop();
  lend(nullptr);
}

std::size_t ModuleThread::addView(ViewPlace place) {
  _scheduler.post([this, place = std::move(place)] { _session->addView(place); });
  return _nextView++;  // as the session counts
}

void ModuleThread::removeView(std::size_t view, std::function<void()> released) {
  _scheduler.post([this, view, released = std::move(released)] {
    _session->removeView(view);
    released();
  });
}

void ModuleThread::resize(std::size_t view, const Size& size, double scale) {
  _scheduler.post([this, view, size, scale] { _session->resize(view, size, scale); });
}

}  // namespace pelmora::host
