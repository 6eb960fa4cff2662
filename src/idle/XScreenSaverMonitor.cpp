#include "idle/XScreenSaverMonitor.h"

#include <poll.h>
#include <xcb/xcbext.h>

#include <cmath>
#include <cstdlib>
#include <utility>

namespace pelmora::idle {

namespace {

constexpr double kPatience = 2;  // with the server, in seconds
/// The server counts in milliseconds of its own; less than this is no difference.
constexpr std::chrono::milliseconds kTolerance{500};

struct Freed {
  void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using Reply = std::unique_ptr<T, Freed>;

/// The reply to a request, if it comes in time. Never waits longer, unlike the library itself.
void* replyInTime(xcb_connection_t* connection, const platform::Clock& clock,
                  unsigned int request) {
  xcb_flush(connection);
  const double end = clock.mediaTime() + kPatience;
  void* reply = nullptr;
  xcb_generic_error_t* error = nullptr;
  while (xcb_poll_for_reply(connection, request, &reply, &error) == 0) {
    const double left = end - clock.mediaTime();
    pollfd descriptor{xcb_get_file_descriptor(connection), POLLIN, 0};
    if (left <= 0 || poll(&descriptor, 1, static_cast<int>(std::ceil(left * 1000))) == 0) {
      xcb_discard_reply(connection, request);
      return nullptr;
    }
  }
  std::free(error);
  return reply;
}

}  // namespace

struct XScreenSaverMonitor::Settings {
  std::int16_t timeout;
  std::int16_t interval;
  std::uint8_t preferBlanking;
  std::uint8_t allowExposures;
};

Result<std::unique_ptr<XScreenSaverMonitor>> XScreenSaverMonitor::open() {
  int screenNumber = 0;
  xcb_connection_t* connection = xcb_connect(nullptr, &screenNumber);
  std::unique_ptr<XScreenSaverMonitor> monitor(new XScreenSaverMonitor(connection));
  if (xcb_connection_has_error(connection) != 0) return Error{"the X server does not answer"};
  xcb_screen_iterator_t screen = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; screen.rem > 1 && screenNumber > 0; --screenNumber) xcb_screen_next(&screen);
  if (screen.rem <= 0) return Error{"the X server has no screen"};
  monitor->_root = screen.data->root;
  const auto* extension = xcb_get_extension_data(connection, &xcb_screensaver_id);
  if (!extension || !extension->present) {
    return Error{"the X server has no MIT-SCREEN-SAVER extension"};
  }
  monitor->_firstEvent = extension->first_event;
  return monitor;
}

XScreenSaverMonitor::~XScreenSaverMonitor() {
  _notifier.reset();
  if (_rest) _needs->scheduler.cancel(*_rest);
  if (_timeoutBefore && xcb_connection_has_error(_connection) == 0) {
    const std::optional<Settings> settings = readSettings();
    if (settings && settings->timeout == _delay.count()) {
      setTimeout(*settings, *_timeoutBefore);
      readSettings();  // so that it has happened
    }
  }
  xcb_disconnect(_connection);
}

void XScreenSaverMonitor::attach(Needs needs) {
  _needs.emplace(std::move(needs));
  _notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(_connection),
                                                QSocketNotifier::Read);
  QObject::connect(_notifier.get(), &QSocketNotifier::activated, _notifier.get(),
                   [this] { readEvents(); });
}

void XScreenSaverMonitor::start(std::chrono::seconds delay, Events events) {
  _delay = delay;
  _events = std::move(events);
  xcb_screensaver_select_input(_connection, _root, XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
  // What the server shows is a window of ours beside the screen, so that it blanks nothing.
  _ownLooks = xcb_screensaver_set_attributes(_connection, _root, -1, -1, 1, 1, 0,
                                             XCB_WINDOW_CLASS_COPY_FROM_PARENT,
                                             XCB_COPY_FROM_PARENT, XCB_COPY_FROM_PARENT, 0, nullptr)
                  .sequence;
  if (const std::optional<Settings> settings = readSettings()) {
    _timeoutBefore = settings->timeout;
    setTimeout(*settings, static_cast<std::int16_t>(delay.count()));
  }
  _question = xcb_screensaver_query_info(_connection, _root).sequence;
  xcb_flush(_connection);
  // Events that came with the reply lie in memory already, where no descriptor tells of them.
  readEvents();
}

std::optional<XScreenSaverMonitor::Settings> XScreenSaverMonitor::readSettings() {
  const Reply<xcb_get_screen_saver_reply_t> reply(static_cast<xcb_get_screen_saver_reply_t*>(
      replyInTime(_connection, _needs->clock, xcb_get_screen_saver(_connection).sequence)));
  if (!reply) return std::nullopt;
  return Settings{static_cast<std::int16_t>(reply->timeout),
                  static_cast<std::int16_t>(reply->interval), reply->prefer_blanking,
                  reply->allow_exposures};
}

void XScreenSaverMonitor::setTimeout(const Settings& settings, std::int16_t seconds) {
  xcb_set_screen_saver(_connection, seconds, settings.interval, settings.preferBlanking,
                       settings.allowExposures);
}

void XScreenSaverMonitor::readEvents() {
  while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(_connection)}) handle(*event);
  readIdleTime();
  xcb_flush(_connection);
  if (xcb_connection_has_error(_connection) != 0) lose();
}

void XScreenSaverMonitor::handle(const xcb_generic_event_t& event) {
  constexpr std::uint8_t kSent = 0x80;  // by a client, not by the server
  if (event.response_type == 0) {
    const auto& error = reinterpret_cast<const xcb_generic_error_t&>(event);
    if (_ownLooks && error.full_sequence == *_ownLooks) {
      _needs->log.write("Pelmora: Another program draws the X server's screen saver");
    }
    return;
  }
  if ((event.response_type & kSent) != 0) return;
  if (event.response_type != _firstEvent + XCB_SCREENSAVER_NOTIFY) return;
  const auto& notice = reinterpret_cast<const xcb_screensaver_notify_event_t&>(event);
  if (notice.state == XCB_SCREENSAVER_STATE_ON) wentOn(notice.forced != 0);
  if (notice.state == XCB_SCREENSAVER_STATE_OFF) wentOff();
}

void XScreenSaverMonitor::wentOn(bool isForced) {
  forgetQuestion();
  if (isForced) return becomeIdle();  // someone wants it now
  // It may be another's timeout that is over, and not the delay.
  _question = xcb_screensaver_query_info(_connection, _root).sequence;
}

void XScreenSaverMonitor::wentOff() {
  forgetQuestion();
  if (_rest) _needs->scheduler.cancel(*std::exchange(_rest, std::nullopt));
  if (std::exchange(_isIdle, false)) _events.becameActive();
}

void XScreenSaverMonitor::forgetQuestion() {
  _hasStarted = true;  // an event says more than the answer will
  if (_question) xcb_discard_reply(_connection, *std::exchange(_question, std::nullopt));
}

void XScreenSaverMonitor::readIdleTime() {
  void* found = nullptr;
  xcb_generic_error_t* error = nullptr;
  if (!_question || xcb_poll_for_reply(_connection, *_question, &found, &error) == 0) return;
  _question.reset();
  const bool isFirst = !std::exchange(_hasStarted, true);
  const Reply<xcb_generic_error_t> ownedError(error);
  const Reply<xcb_screensaver_query_info_reply_t> reply(
      static_cast<xcb_screensaver_query_info_reply_t*>(found));
  if (!reply || reply->state != XCB_SCREENSAVER_STATE_ON) return;
  if (!isFirst) return takeIdleTime(std::chrono::milliseconds(reply->ms_since_user_input));
  // It was on before it was ours, and would tell nothing: the delay begins now.
  xcb_force_screen_saver(_connection, XCB_SCREEN_SAVER_RESET);
}

void XScreenSaverMonitor::takeIdleTime(std::chrono::milliseconds idle) {
  if (idle + kTolerance >= _delay) return becomeIdle();
  const std::chrono::duration<double> rest = _delay - idle;
  _rest = _needs->scheduler.after(rest.count(), [this] {
    _rest.reset();
    becomeIdle();
  });
}

void XScreenSaverMonitor::becomeIdle() {
  if (!std::exchange(_isIdle, true)) _events.becameIdle();
}

void XScreenSaverMonitor::lose() {
  if (std::exchange(_isLost, true)) return;
  _notifier->setEnabled(false);
  _needs->lost("The X server has gone");
}

}  // namespace pelmora::idle
