// Where the windows of other programs cannot be seen: a Wayland session, a run without a display.
#pragma once

#include <utility>

#include "ports/engine_window.h"
#include "ports/scheduler.h"

namespace velt {

class NoEngineWindow : public EngineWindow {
 public:
  explicit NoEngineWindow(Scheduler& scheduler) : scheduler_(scheduler) {}

  std::string Unavailable() const override {
    return "Engine control needs X11: start VELT-SA in an X11 session or with -platform xcb";
  }
  uint32_t Find(const std::string&) const override { return 0; }
  void Activate(uint32_t, Done done) override { Refuse(std::move(done)); }
  void SendKeys(uint32_t, const std::string&, Done done) override { Refuse(std::move(done)); }
  void Close(uint32_t) override {}

 private:
  void Refuse(Done done) {
    scheduler_.Post([done = std::move(done)] { done(false); });
  }

  Scheduler& scheduler_;
};

}  // namespace velt
