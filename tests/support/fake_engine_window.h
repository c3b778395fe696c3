// A desktop with other programs' windows, and what came to them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ports/engine_window.h"
#include "ports/scheduler.h"

namespace velt {

class FakeEngineWindow : public EngineWindow {
 public:
  std::map<std::string, uint32_t> windows;  // by title
  bool obeys = true;                        // whether a window comes to the front and takes keys
  int intrusions = 0;                       // how often another window will have the keyboard
  std::string unavailable;
  std::vector<std::string> did;  // "up 1", "(^s)", "close 1"

  explicit FakeEngineWindow(Scheduler& scheduler) : scheduler_(scheduler) {}
  std::string Unavailable() const override { return unavailable; }
  uint32_t Find(const std::string& title) const override {
    const auto found = windows.find(title);
    return found == windows.end() ? 0 : found->second;
  }
  void Activate(uint32_t window, Done done) override {
    did.push_back("up " + std::to_string(window));
    Answer(std::move(done));
  }
  void SendKeys(uint32_t, const std::string& keys, Done done) override {
    const bool taken = obeys && intrusions-- <= 0;
    if (taken) did.push_back(keys);
    scheduler_.Post([done = std::move(done), taken] { done(taken); });
  }
  void Close(uint32_t window) override { did.push_back("close " + std::to_string(window)); }

  void Open(const std::string& title) {
    windows[title] = 1;
    changed.Raise();
  }
  void Vanish() {
    windows.clear();
    changed.Raise();
  }
  std::string Take() {
    std::string all;
    for (const std::string& one : did) all += (all.empty() ? "" : ", ") + one;
    did.clear();
    return all;
  }

 private:
  void Answer(Done done) {
    scheduler_.Post([done = std::move(done), ok = obeys] { done(ok); });
  }

  Scheduler& scheduler_;
};

}  // namespace velt
