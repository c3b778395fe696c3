// A desktop with at most one window that matters, the engine's, and what came to it.
#pragma once

#include <string>
#include <utility>

#include "ports/engine_window.h"
#include "ports/scheduler.h"

namespace velt {

class FakeEngineWindow : public EngineWindow {
 public:
  std::string title;   // of the window, empty while there is none
  bool obeys = true;   // whether it comes to the front and takes keys
  int intrusions = 0;  // how often another window will have the keyboard
  std::string unavailable;

  explicit FakeEngineWindow(Scheduler& scheduler) : scheduler_(scheduler) {}
  std::string Unavailable() const override { return unavailable; }
  uint32_t Find(const std::string& wanted) const override {
    return !title.empty() && wanted == title ? 1 : 0;
  }
  void Activate(uint32_t, Done done) override {
    Note("up");
    scheduler_.Post([done = std::move(done), ok = obeys] { done(ok); });
  }
  void SendKeys(uint32_t, const std::string& keys, Done done) override {
    const bool taken = obeys && intrusions-- <= 0;
    if (taken) Note(keys);
    scheduler_.Post([done = std::move(done), taken] { done(taken); });
  }
  void Close(uint32_t) override { Note("close"); }

  void Open(const std::string& newTitle) {
    title = newTitle;
    changed.Raise();
  }
  void Vanish() { Open(""); }
  // "up, (^s), close" since the last time.
  std::string Take() { return std::exchange(did_, {}); }

 private:
  void Note(const std::string& what) { did_ += (did_.empty() ? "" : ", ") + what; }

  std::string did_;
  Scheduler& scheduler_;
};

}  // namespace velt
