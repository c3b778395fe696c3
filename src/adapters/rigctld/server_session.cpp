#include "adapters/rigctld/server_session.h"

#include <algorithm>
#include <array>

namespace velt {

namespace {

constexpr Milliseconds kConnectLimit{3000};
constexpr std::array<Milliseconds, 6> kRetries = {Milliseconds(500),  Milliseconds(1000),
                                                  Milliseconds(2000), Milliseconds(4000),
                                                  Milliseconds(8000), Milliseconds(10000)};
// While something urgent waits.
constexpr Milliseconds kUrgentRetry{1000};
// A link that held for so long starts the retries from the shortest again.
constexpr Milliseconds kGoodLink{3000};

}  // namespace

ServerSession::ServerSession(ByteChannel& channel, Scheduler& scheduler, Client& client)
    : channel_(channel), scheduler_(scheduler), client_(client) {
  connections_ += channel_.connected.Listen([this] { OnConnected(); });
  connections_ += channel_.received.Listen([this](std::string_view bytes) { OnBytes(bytes); });
  connections_ += channel_.closed.Listen([this](RigLink::Cause cause) { Drop(cause); });
}

void ServerSession::Start(const ServerAddress& address) {
  Stop();
  address_ = address;
  attempt_ = 0;
  Connect();
}

void ServerSession::Stop() {
  timer_.Cancel();
  channel_.Disconnect();
  underWay_.clear();
  state_ = State::Stopped;
}

bool ServerSession::WriteUnderWay() const {
  return std::any_of(underWay_.begin(), underWay_.end(), [](const RigCommand& command) {
    return command.property != RigProperty::None;
  });
}

std::optional<ServerAddress> ServerSession::Peer() const {
  return IsConnected() ? channel_.Peer() : std::nullopt;
}

int32_t ServerSession::RetryInSeconds() const {
  if (state_ != State::Waiting) return 0;
  const auto left = std::chrono::ceil<std::chrono::seconds>(retryAt_ - scheduler_.Now());
  return static_cast<int32_t>(std::max<int64_t>(left.count(), 0));
}

void ServerSession::Pump() {
  const bool waits = state_ == State::Waiting && client_.IsUrgent();
  if (waits && retryAt_ - scheduler_.Now() > kUrgentRetry) return RetryAfter(kUrgentRetry);
  if (state_ != State::Connected || !underWay_.empty()) return;
  if (auto command = client_.NextCommand()) {
    underWay_.push_back(std::move(*command));
    StartLimit();
    channel_.Send(underWay_.back().line);
  } else {
    timer_ = scheduler_.After(client_.Pause(), [this] { Pump(); });
  }
}

bool ServerSession::SendAhead(const RigCommand& command, Milliseconds limit) {
  if (state_ == State::Stopped) return false;
  if (state_ == State::Connected) {
    underWay_.push_back(command);
    if (underWay_.size() == 1) StartLimit();
  }
  return channel_.SendNow(address_, command.line, limit);
}

void ServerSession::Connect() {
  state_ = State::Connecting;
  reader_.Reset();
  goodSince_.reset();
  timer_ = scheduler_.After(kConnectLimit, [this] {
    Drop(channel_.LooksUp() ? RigLink::Cause::HostNotFound : RigLink::Cause::Unreachable);
  });
  channel_.Connect(address_);
}

void ServerSession::OnConnected() {
  state_ = State::Connected;
  timer_.Cancel();
  client_.Connected();
  Pump();
}

void ServerSession::OnBytes(std::string_view bytes) {
  for (const RigReply& reply : reader_.Feed(bytes)) {
    const bool expected = !underWay_.empty() && !reply.lines.empty() &&
                          reply.lines.front().starts_with(EchoOf(underWay_.front().kind));
    if (!expected) return Drop(RigLink::Cause::WrongAnswer);
    const RigCommand command = std::move(underWay_.front());
    underWay_.pop_front();
    timer_.Cancel();
    if (!underWay_.empty()) StartLimit();
    if (!goodSince_) goodSince_ = scheduler_.Now();
    client_.Replied(command, reply);
  }
  if (reader_.Overflowed()) return Drop(RigLink::Cause::WrongAnswer);
  Pump();
}

void ServerSession::Drop(RigLink::Cause cause) {
  if (goodSince_ && scheduler_.Now() - *goodSince_ >= kGoodLink) attempt_ = 0;
  goodSince_.reset();
  channel_.Disconnect();
  const std::deque<RigCommand> unanswered = std::move(underWay_);
  underWay_.clear();
  state_ = State::Waiting;
  client_.Lost(cause, unanswered.empty() ? nullptr : &unanswered.front());
  const Milliseconds pause = kRetries[std::min(attempt_, kRetries.size() - 1)];
  ++attempt_;
  RetryAfter(client_.IsUrgent() ? std::min(pause, kUrgentRetry) : pause);
}

void ServerSession::RetryAfter(Milliseconds pause) {
  retryAt_ = scheduler_.Now() + pause;
  WaitForRetry();
}

// Wakes once a second, so that the countdown can be shown.
void ServerSession::WaitForRetry() {
  const auto left = std::chrono::ceil<Milliseconds>(retryAt_ - scheduler_.Now());
  if (left.count() <= 0) {
    Connect();
    client_.CountdownChanged();
    return;
  }
  const Milliseconds toNextSecond((left.count() - 1) % 1000 + 1);
  timer_ = scheduler_.After(toNextSecond, [this] {
    client_.CountdownChanged();
    WaitForRetry();
  });
}

void ServerSession::StartLimit() {
  timer_ =
      scheduler_.After(LimitOf(underWay_.front().kind), [this] { Drop(RigLink::Cause::NoAnswer); });
}

}  // namespace velt
