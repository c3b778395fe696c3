// The guardian in a process of its own, started again when it is gone.
#pragma once

#include <QPointer>
#include <QSocketNotifier>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "adapters/guardian/guardian_spawn.h"
#include "guardian/descriptor.h"
#include "ports/guardian.h"
#include "ports/scheduler.h"

namespace velt {

class GuardianProcess : public Guardian {
 public:
  // At most this often a new one is started.
  static constexpr Milliseconds kRespawnEvery{1000};
  // One that does not answer a beat for so long is replaced.
  static constexpr Milliseconds kAnswerLimit{2000};

  // With the guardian that was started at the beginning of the run; without one it is started now.
  // Needs the application's event loop. Beats go out while `windowAnswers`; where it does not, the
  // program counts as standing still.
  GuardianProcess(
      Scheduler& scheduler, GuardianSpawn spawn,
      std::function<bool()> windowAnswers = [] { return true; });
  ~GuardianProcess() override;

  uint32_t Hold(const ReleaseRecipe& recipe) override;
  void Forget(uint32_t ticket) override;
  void Follow(uint32_t ticket) override;
  void Beat() override;

  // The guardian writes into this file too what it has to say. Empty: none.
  void SetLogFile(const std::string& file);

 private:
  // The guardian itself gives up before.
  static constexpr Milliseconds kFollowUpLimit{12'000};

  struct Held {
    ReleaseRecipe recipe;
    Descriptor device;  // a duplicate of our own, for the next guardian
    bool followed = false;
    Scheduler::Handle limit;  // of the follow-up
  };

  void Adopt(GuardianSpawn spawn);
  void SpawnLater();
  void HoldAgain();
  void Reap();
  bool Send(const GuardianMessage& message);
  void Replace();
  void Hear();
  void Take(const GuardianMessage& message);
  void FollowUpEnds(uint32_t ticket, GuardianNews::Kind kind);
  void Lost();
  void Tell(GuardianNews news);

  Scheduler& scheduler_;
  std::function<bool()> windowAnswers_;
  GuardianSpawn guardian_;
  QPointer<QSocketNotifier> notifier_;
  bool ready_ = false;                    // it was heard
  std::optional<SteadyTime> unanswered_;  // the first beat without an answer
  bool wasMissing_ = false;               // since it was last ready
  SteadyTime lastSpawn_;
  Scheduler::Handle spawning_;
  std::vector<pid_t> gone_;  // not yet seen to have ended
  std::map<uint32_t, Held> held_;
  uint32_t lastTicket_ = 0;
  std::string logFile_;
  std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace velt
