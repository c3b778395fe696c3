// Hears when a window of this program is taken away: any client of the X server may destroy it. Qt
// would go on without it.
#pragma once

#include <QAbstractNativeEventFilter>
#include <functional>
#include <memory>

#include "event/event.h"
#include "ports/scheduler.h"

namespace velt {

class WindowLoss : public QAbstractNativeEventFilter {
 public:
  // `window` tells the server's number of the one that is watched, which Qt may change; 0: none.
  // Needs the application, connected to an X server.
  WindowLoss(Scheduler& scheduler, std::function<uint32_t()> window);

  // From the loop.
  Event<> lost;

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  Scheduler& scheduler_;
  std::function<uint32_t()> window_;
  std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace velt
