#include "adapters/guardian/guardian_process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "guardian/peer_address.h"

namespace velt {
namespace {

using Kind = GuardianMessage::Kind;

GuardianMessage Message(Kind kind, uint32_t ticket = 0) {
  GuardianMessage message;
  message.kind = kind;
  message.ticket = ticket;
  return message;
}

GuardianMessage HoldMessage(uint32_t ticket, const ReleaseRecipe& recipe) {
  GuardianMessage message = Message(Kind::Hold, ticket);
  message.recipe = recipe;
  return message;
}

bool CanRelease(const ReleaseRecipe& recipe) {
  if (recipe.host.empty()) {
    return recipe.descriptor >= 0 && (recipe.lowersLines || !recipe.release.empty());
  }
  return !recipe.release.empty() && NumericAddress(recipe.host, recipe.port);
}

}  // namespace

GuardianProcess::GuardianProcess(Scheduler& scheduler, GuardianSpawn spawn,
                                 std::function<bool()> windowAnswers)
    : scheduler_(scheduler), windowAnswers_(std::move(windowAnswers)) {
  Adopt(spawn.socket.IsOpen() ? std::move(spawn) : SpawnGuardian());
}

GuardianProcess::~GuardianProcess() {
  delete notifier_;
  Reap();
}

uint32_t GuardianProcess::Hold(const ReleaseRecipe& recipe) {
  if (!ready_) Hear();  // perhaps it just came
  if (!ready_ || !CanRelease(recipe)) return 0;
  Held held{.recipe = recipe, .device = {}, .followed = false, .limit = {}};
  if (recipe.host.empty()) {
    held.device = Descriptor(::fcntl(recipe.descriptor, F_DUPFD_CLOEXEC, 0));
    if (!held.device.IsOpen()) return 0;
    held.recipe.descriptor = held.device.Number();
  } else {
    held.recipe.descriptor = -1;
  }
  const uint32_t ticket = ++lastTicket_;
  if (!Send(HoldMessage(ticket, held.recipe))) return 0;
  held_.emplace(ticket, std::move(held));
  return ticket;
}

void GuardianProcess::Forget(uint32_t ticket) {
  if (held_.erase(ticket) > 0) Send(Message(Kind::Forget, ticket));
}

void GuardianProcess::Follow(uint32_t ticket) {
  const auto found = held_.find(ticket);
  if (found == held_.end() || std::exchange(found->second.followed, true)) return;
  // There may be no guardian, or one that is stopped: the failure is told all the same.
  found->second.limit = scheduler_.After(
      kFollowUpLimit, [this, ticket] { FollowUpEnds(ticket, GuardianNews::Kind::FollowUpFailed); });
  Send(Message(Kind::Follow, ticket));
}

void GuardianProcess::Beat() {
  Hear();  // after a pause of our own its answer lies there
  if (!guardian_.socket.IsOpen()) return;
  const SteadyTime now = scheduler_.Now();
  if (unanswered_ && now - *unanswered_ >= kAnswerLimit) return Replace();
  if (!windowAnswers_()) return;
  if (!unanswered_) unanswered_ = now;
  Send(Message(Kind::Beat));
}

void GuardianProcess::SetLogFile(const std::string& file) {
  std::error_code error;
  logFile_ = file.empty() ? file : std::filesystem::absolute(file, error).string();
  GuardianMessage message = Message(Kind::LogFile);
  message.text = logFile_;
  Send(message);
}

void GuardianProcess::Adopt(GuardianSpawn spawn) {
  lastSpawn_ = scheduler_.Now();
  guardian_ = std::move(spawn);
  if (!guardian_.socket.IsOpen()) {
    wasMissing_ = true;
    return SpawnLater();
  }
  notifier_ = new QSocketNotifier(guardian_.socket.Number(), QSocketNotifier::Read);
  QObject::connect(notifier_, &QSocketNotifier::activated, notifier_, [this] { Hear(); });
  HoldAgain();
}

void GuardianProcess::SpawnLater() {
  const auto due = lastSpawn_ + kRespawnEvery;
  const auto wait = std::chrono::ceil<Milliseconds>(due - scheduler_.Now());
  spawning_ = scheduler_.After(std::max(wait, Milliseconds{0}), [this] {
    Reap();
    Adopt(SpawnGuardian());
  });
}

void GuardianProcess::HoldAgain() {
  if (!logFile_.empty()) SetLogFile(logFile_);
  for (const auto& [ticket, held] : held_) {
    Send(HoldMessage(ticket, held.recipe));
    if (held.followed) Send(Message(Kind::Follow, ticket));
  }
}

void GuardianProcess::Reap() {
  std::erase_if(gone_, [](pid_t process) { return ::waitpid(process, nullptr, WNOHANG) != 0; });
}

bool GuardianProcess::Send(const GuardianMessage& message) {
  if (!guardian_.socket.IsOpen()) return false;
  const GuardianSocket::Sent sent = guardian_.socket.Send(message);
  if (sent == GuardianSocket::Sent::Full) Replace();
  return sent == GuardianSocket::Sent::Yes;
}

// One that does not listen any more is none. The end of its socket will be heard.
void GuardianProcess::Replace() {
  if (guardian_.process > 0) ::kill(guardian_.process, SIGKILL);
}

void GuardianProcess::Hear() {
  while (guardian_.socket.IsOpen()) {
    const GuardianSocket::Received received = guardian_.socket.Receive();
    switch (received.what) {
      case GuardianSocket::Received::What::Nothing:
        return;
      case GuardianSocket::Received::What::Damaged:
        break;
      case GuardianSocket::Received::What::Message:
        Take(received.message);
        break;
      case GuardianSocket::Received::What::End:
        return Lost();
    }
  }
}

void GuardianProcess::Take(const GuardianMessage& message) {
  switch (message.kind) {
    case Kind::Here:
      ready_ = true;
      unanswered_.reset();
      Reap();
      if (std::exchange(wasMissing_, false)) Tell({.kind = GuardianNews::Kind::Back});
      return;
    case Kind::ReleasedInSilence:
      // What was held while this was on its way still is; what is followed up goes on.
      std::erase_if(held_, [&message](const auto& entry) {
        return entry.first <= message.ticket && !entry.second.followed;
      });
      return Tell({.kind = GuardianNews::Kind::ReleasedInSilence});
    case Kind::FollowUpDone:
      return FollowUpEnds(message.ticket, GuardianNews::Kind::FollowUpDone);
    case Kind::FollowUpFailed:
      return FollowUpEnds(message.ticket, GuardianNews::Kind::FollowUpFailed);
    case Kind::Hold:
    case Kind::Forget:
    case Kind::Follow:
    case Kind::Beat:
    case Kind::LogFile:
      return;
  }
}

void GuardianProcess::FollowUpEnds(uint32_t ticket, GuardianNews::Kind kind) {
  if (held_.erase(ticket) > 0) Tell({.kind = kind, .ticket = ticket});
}

void GuardianProcess::Lost() {
  // It may be one of the notifier's own calls that found the end.
  notifier_->setEnabled(false);
  notifier_->deleteLater();
  notifier_.clear();
  guardian_.socket.Close();
  gone_.push_back(guardian_.process);
  ready_ = false;
  unanswered_.reset();
  wasMissing_ = true;
  SpawnLater();
}

// A call of ours may have come upon the news.
void GuardianProcess::Tell(GuardianNews news) {
  scheduler_.Post([this, news, weak = std::weak_ptr(alive_)] {
    if (!weak.expired()) told.Raise(news);
  });
}

}  // namespace velt
