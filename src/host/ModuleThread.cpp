#include "host/ModuleThread.h"

#include "host/XDisplayPower.h"
#include "platform/Clock.h"

#include <QGuiApplication>

#include <utility>

namespace pelmora::host {

ModuleThread::ModuleThread(platform::Clock& clock, platform::Displays& displays,
                           ServiceChoices choices, std::vector<ViewPlace> places)
    : _choices(choices), _places(std::move(places)), _scheduler(clock) {
  _choices.clock = &clock;
  _choices.displays = &displays;
  _choices.scheduler = &_scheduler;
  // Before anyone can say that a window has changed: what is said is then heard by views.
  _scheduler.post([this] {
    _session->start(_places);
    _session->startFrames();
  });
  _thread = std::thread([this] { run(); });
}

ModuleThread::~ModuleThread() {
  _scheduler.stop();
  {
    const std::lock_guard lock(_mutex);
    if (_services != nullptr) _services->giveUpWaiting();
  }
  _thread.join();
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

void ModuleThread::resize(std::size_t view, const Size& size, double scale) {
  _scheduler.post([this, view, size, scale] {
    if (view < _session->viewCount()) _session->resize(view, size, scale);
  });
}

}  // namespace pelmora::host
