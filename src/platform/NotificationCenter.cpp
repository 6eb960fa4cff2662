#include "platform/NotificationCenter.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace pelmora::platform {

NotificationCenter::Token NotificationCenter::addObserver(std::string name, Handler handler) {
  const std::lock_guard lock(_mutex);
  const Token token{_nextToken++};
  _observers.push_back(
      std::make_shared<const Observer>(Observer{token, std::move(name), std::move(handler)}));
  return token;
}

void NotificationCenter::removeObserver(Token token) {
  std::shared_ptr<const Observer> removed;  // destroyed after the lock is given back
  const std::lock_guard lock(_mutex);
  const auto found = std::find_if(_observers.begin(), _observers.end(),
                                  [token](const auto& each) { return each->token == token; });
  if (found == _observers.end()) return;
  removed = std::move(*found);
  _observers.erase(found);
}

void NotificationCenter::post(const Notification& notification) {
  std::vector<std::shared_ptr<const Observer>> called;
  {
    const std::lock_guard lock(_mutex);
    std::copy_if(_observers.begin(), _observers.end(), std::back_inserter(called),
                 [&](const auto& each) { return each->name == notification.name; });
  }
  for (const auto& observer : called) {
    if (isRegistered(observer)) observer->handler(notification);
  }
}

bool NotificationCenter::isRegistered(const std::shared_ptr<const Observer>& observer) {
  const std::lock_guard lock(_mutex);
  return std::find(_observers.begin(), _observers.end(), observer) != _observers.end();
}

}  // namespace pelmora::platform
