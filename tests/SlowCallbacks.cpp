#include <dlfcn.h>
#include <poll.h>
#include <unistd.h>

#include <cstring>

// To be loaded before a program on Wayland: callbacks that another thread than the first one hears
// take a while to be forgotten, so that what the first one does meanwhile comes amid that.

extern "C" {

struct wl_proxy;
const char* wl_proxy_get_class(wl_proxy* proxy);

void wl_proxy_destroy(wl_proxy* proxy) {
  static const auto destroy =
      reinterpret_cast<void (*)(wl_proxy*)>(dlsym(RTLD_NEXT, "wl_proxy_destroy"));
  constexpr int kWhile = 3;  // ms
  const bool isFirstThread = gettid() == getpid();
  const bool isCallback = std::strcmp(wl_proxy_get_class(proxy), "wl_callback") == 0;
  if (isCallback && !isFirstThread) poll(nullptr, 0, kWhile);
  destroy(proxy);
}
}
