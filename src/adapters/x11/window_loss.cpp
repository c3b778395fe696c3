#include "adapters/x11/window_loss.h"

#include <xcb/xcb.h>

#include <QCoreApplication>
#include <utility>

namespace velt {

WindowLoss::WindowLoss(Scheduler& scheduler, std::function<uint32_t()> window)
    : scheduler_(scheduler), window_(std::move(window)) {
  QCoreApplication::instance()->installNativeEventFilter(this);
}

bool WindowLoss::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
  if (type != "xcb_generic_event_t") return false;
  const auto& event = *static_cast<const xcb_generic_event_t*>(message);
  // With the bit of an event that a client has sent it is no word of the server's.
  if (event.response_type != XCB_DESTROY_NOTIFY) return false;
  const auto& told = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
  if (told.window != window_()) return false;
  scheduler_.Post([this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) lost.Raise();
  });
  return false;
}

}  // namespace velt
