#include "engine/key_runner.h"

#include <string>
#include <utility>

namespace velt {
namespace {

constexpr int kMostRepeats = 3;

}  // namespace

KeyRunner::KeyRunner(const Parts& parts, const Ports& ports) : parts_(parts), ports_(ports) {}

void KeyRunner::Run(KeyScript script) {
  waiting_.push_back({std::move(script), ports_.scheduler.Now()});
  if (!running_) Next();
}

void KeyRunner::RunInsteadOfAll(KeyScript script) {
  waiting_.clear();
  script_.clear();
  step_ = 0;
  if (std::exchange(pausing_, false)) {
    pause_.Cancel();
    running_ = false;
  }
  Run(std::move(script));
}

void KeyRunner::Next() {
  running_ = false;
  while (!waiting_.empty()) {
    Waiting next = std::move(waiting_.front());
    waiting_.pop_front();
    if (ports_.scheduler.Now() - next.since > kLongestWait) continue;
    script_ = std::move(next.script);
    step_ = 0;
    repeats_ = 0;
    running_ = true;
    return Step();
  }
}

void KeyRunner::Step() {
  if (step_ == script_.size()) return Next();
  const uint32_t window = parts_.installation.DetectVELTWindow(ports_.window);
  if (window == 0) return Fail("window gone");
  std::visit([this, window](const auto& step) { Take(step, window); }, script_.at(step_++));
}

void KeyRunner::Take(const ActivateStep&, uint32_t window) {
  Activate(window);
}

void KeyRunner::Activate(uint32_t window) {
  ports_.window.Activate(window, [this, alive = std::weak_ptr(alive_)](bool ok) {
    if (alive.expired()) return;
    ok ? Step() : Fail("it stays behind");
  });
}

void KeyRunner::Take(const PauseStep& pause, uint32_t) {
  pausing_ = true;
  pause_ = ports_.scheduler.After(pause.span, [this] {
    pausing_ = false;
    Step();
  });
}

void KeyRunner::Take(const ChordStep& chord, uint32_t window) {
  ports_.window.SendKeys(window, chord.keys, [this, alive = std::weak_ptr(alive_)](bool ok) {
    if (alive.expired()) return;
    ok ? Step() : TypeAgain();
  });
}

// Nothing was typed: another window took the keyboard meanwhile.
void KeyRunner::TypeAgain() {
  if (script_.empty()) return Next();
  const uint32_t window = parts_.installation.DetectVELTWindow(ports_.window);
  if (window == 0 || ++repeats_ > kMostRepeats) return Fail("keyboard taken");
  --step_;
  Activate(window);
}

// Short enough for the line at the window's foot.
void KeyRunner::Fail(const char* problem) {
  const std::string text = std::string("Engine not told: ") + problem;
  parts_.messages.Show(text);
  ports_.log.Write(LogLevel::Warning, "velt.engine", text);
  Next();
}

}  // namespace velt
