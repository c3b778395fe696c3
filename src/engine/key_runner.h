// Types key scripts into the engine's window, one after the other, so that two never mix.
#pragma once

#include <deque>
#include <memory>

#include "dialogs/message_line.h"
#include "engine/key_script.h"
#include "platform/installation.h"
#include "ports/engine_window.h"
#include "ports/log.h"

namespace velt {

class KeyRunner {
 public:
  // A script that had to wait longer for its turn is not typed any more: nobody expects it now.
  static constexpr Milliseconds kLongestWait{3000};

  struct Parts {
    const Installation& installation;
    MessageLine& messages;
  };
  struct Ports {
    EngineWindow& window;
    Scheduler& scheduler;
    Log& log;
  };
  KeyRunner(const Parts& parts, const Ports& ports);

  // Its turn comes when those before it are done. A script ends, and the user is told, when the
  // window is gone, does not come to the front or loses the keyboard again and again.
  void Run(KeyScript script);

  // The same, in place of all that waits for its turn and of what the present script has not done
  // yet: receive does not stand behind anything.
  void RunInsteadOfAll(KeyScript script);

  bool Busy() const { return running_; }

 private:
  struct Waiting {
    KeyScript script;
    SteadyTime since;
  };

  void Next();
  void Step();
  void Take(const ActivateStep&, uint32_t window);
  void Take(const PauseStep& pause, uint32_t window);
  void Take(const ChordStep& chord, uint32_t window);
  void TypeAgain();
  void Activate(uint32_t window);
  void Fail(const char* problem);

  Parts parts_;
  Ports ports_;
  std::deque<Waiting> waiting_;
  KeyScript script_;
  size_t step_ = 0;
  int repeats_ = 0;  // of chords that another window would have got
  bool running_ = false;
  bool pausing_ = false;
  Scheduler::Handle pause_;
  std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace velt
