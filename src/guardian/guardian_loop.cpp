#include "guardian/guardian_loop.h"

#include <algorithm>
#include <filesystem>
#include <limits>

#include "guardian/device_release.h"
#include "guardian/server_release.h"

namespace velt {
namespace {

using Kind = GuardianMessage::Kind;

SteadyTime Now() {
  return std::chrono::steady_clock::now();
}

std::string NameOf(const ReleaseRecipe& recipe, const Descriptor& device) {
  if (recipe.host.empty()) {
    std::error_code error;
    const auto path =
        std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(device.Number()), error);
    return error ? "a serial port" : path.string();
  }
  const bool six = recipe.host.find(':') != std::string::npos;
  return (six ? "[" + recipe.host + "]" : recipe.host) + ":" + std::to_string(recipe.port);
}

}  // namespace

GuardianLoop::GuardianLoop(GuardianSocket socket, const GuardianLimits& limits)
    : socket_(std::move(socket)), limits_(limits), holdings_(limits.silence) {}

void GuardianLoop::Run() {
  Tell(Kind::Here, 0);
  while (!holdings_.Finished()) {
    const Turns turns = Wait();
    // First of all: after a time without a turn of its own, what the program said meanwhile lies
    // there, and it was not silent.
    Hear();
    Carry(holdings_.Tick(Now()), Now());
    TakeTurns(turns);
    if (!IsBusy()) report_.WriteLog();
  }
  report_.WriteLog();
}

GuardianLoop::Turns GuardianLoop::Wait() const {
  std::vector<pollfd> waits{{socket_.Number(), POLLIN, 0}};
  std::vector<uint32_t> tickets{0};
  for (const auto& [ticket, entry] : entries_) {
    if (!entry.task) continue;
    waits.push_back(entry.task->Waits());
    tickets.push_back(ticket);
  }
  ::poll(waits.data(), waits.size(), WaitAtMost(Now()));
  Turns turns;
  for (size_t i = 1; i < waits.size(); ++i) turns[tickets[i]] = waits[i].revents;
  return turns;
}

int GuardianLoop::WaitAtMost(SteadyTime now) const {
  auto due = holdings_.Due().value_or(SteadyTime::max());
  for (const auto& [ticket, entry] : entries_) {
    if (entry.task) due = std::min(due, entry.task->Due());
  }
  if (due == SteadyTime::max()) return -1;
  const auto left = std::chrono::ceil<Milliseconds>(due - now).count();
  return static_cast<int>(std::clamp<int64_t>(left, 0, std::numeric_limits<int>::max()));
}

void GuardianLoop::Hear() {
  while (socket_.IsOpen()) {
    GuardianSocket::Received received = socket_.Receive();
    const SteadyTime now = Now();
    switch (received.what) {
      case GuardianSocket::Received::What::Nothing:
        return;
      case GuardianSocket::Received::What::Damaged:
        break;
      case GuardianSocket::Received::What::Message:
        Obey(received, now);
        Carry(holdings_.Heard(now), now);
        break;
      case GuardianSocket::Received::What::End:
        socket_.Close();
        Carry(holdings_.Ended(), now);
        break;
    }
  }
}

void GuardianLoop::Obey(GuardianSocket::Received& received, SteadyTime now) {
  GuardianMessage& message = received.message;
  switch (message.kind) {
    case Kind::Hold: {
      const std::string name = NameOf(message.recipe, received.device);
      Carry(holdings_.Hold(now, message.ticket, name), now);
      Entry& entry = entries_[message.ticket];
      entry.recipe = std::move(message.recipe);
      entry.device = std::move(received.device);
      entry.name = name;
      return;
    }
    case Kind::Forget:
      return Carry(holdings_.Forget(message.ticket), now);
    case Kind::Follow:
      return Carry(holdings_.Follow(message.ticket), now);
    case Kind::LogFile:
      return report_.SetLogFile(message.text);
    case Kind::Beat:
      return Tell(Kind::Here, 0);
    case Kind::Here:
    case Kind::ReleasedInSilence:
    case Kind::FollowUpDone:
    case Kind::FollowUpFailed:
      return;
  }
}

void GuardianLoop::Carry(const Holdings::Orders& orders, SteadyTime now) {
  for (const uint32_t ticket : orders.drop) entries_.erase(ticket);
  for (const uint32_t ticket : orders.done) Tell(Kind::FollowUpDone, ticket);
  for (const uint32_t ticket : orders.failed) Tell(Kind::FollowUpFailed, ticket);
  if (orders.tellSilence) {
    report_.Note("the program stood still while it transmitted");
    Tell(Kind::ReleasedInSilence, holdings_.LastTicket());
  }
  for (const uint32_t ticket : orders.release) Begin(ticket, now);
}

void GuardianLoop::Begin(uint32_t ticket, SteadyTime now) {
  Entry& entry = entries_.at(ticket);
  if (!entry.recipe.host.empty()) {
    const SteadyTime until = holdings_.HeldSince(ticket) + limits_.followUp.key;
    entry.task = std::make_unique<ServerRelease>(entry.recipe, until, limits_.followUp, now);
  } else if (entry.device.IsOpen()) {
    entry.task = std::make_unique<DeviceRelease>(entry.recipe, entry.device.Number(),
                                                 limits_.followUp.all, now);
  } else {
    Carry(holdings_.FollowedUp(ticket, false), now);
  }
}

void GuardianLoop::TakeTurns(const Turns& turns) {
  std::vector<uint32_t> tickets;
  for (const auto& [ticket, entry] : entries_) {
    if (entry.task) tickets.push_back(ticket);
  }
  for (const uint32_t ticket : tickets) {
    const auto happened = turns.find(ticket);
    const SteadyTime now = Now();
    const ReleaseTask::State state =
        entries_.at(ticket).task->Turn(now, happened == turns.end() ? short{0} : happened->second);
    if (state != ReleaseTask::State::UnderWay) {
      TaskEnded(ticket, state == ReleaseTask::State::Released, now);
    }
  }
}

void GuardianLoop::TaskEnded(uint32_t ticket, bool released, SteadyTime now) {
  Entry& entry = entries_.at(ticket);
  if (released) {
    report_.Note("released the transmitter at " + entry.name);
  } else {
    report_.Warn("the transmitter at " + entry.name +
                 " could not be released and may still be on: switch it off at the radio");
  }
  entry.task.reset();
  entry.device.Close();
  Carry(holdings_.FollowedUp(ticket, released), now);
}

void GuardianLoop::Tell(Kind kind, uint32_t ticket) const {
  GuardianMessage message;
  message.kind = kind;
  message.ticket = ticket;
  // A program that does not take it is frozen or gone.
  if (socket_.IsOpen()) (void)socket_.Send(message);
}

bool GuardianLoop::IsBusy() const {
  return std::ranges::any_of(entries_,
                             [](const auto& entry) { return entry.second.task != nullptr; });
}

}  // namespace velt
