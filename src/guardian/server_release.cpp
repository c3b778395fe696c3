#include "guardian/server_release.h"

#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "guardian/peer_address.h"

namespace velt {
namespace {

// Read in one turn; others want theirs too.
constexpr size_t kReadAtOnce = size_t{64} * 1024;

// Repeated attempts at a port where nobody listens can meet themselves there.
bool IsConnectedToItself(int connection) {
  sockaddr_storage near{};
  sockaddr_storage far{};
  socklen_t nearSize = sizeof near;
  socklen_t farSize = sizeof far;
  return ::getsockname(connection, reinterpret_cast<sockaddr*>(&near), &nearSize) == 0 &&
         ::getpeername(connection, reinterpret_cast<sockaddr*>(&far), &farSize) == 0 &&
         nearSize == farSize && std::memcmp(&near, &far, nearSize) == 0;
}

bool WouldWait() {
  return errno == EAGAIN || errno == EINTR;
}

}  // namespace

ServerRelease::ServerRelease(const ReleaseRecipe& recipe, SteadyTime keyMayComeUntil,
                             FollowUp::Limits limits, SteadyTime now)
    : recipe_(recipe),
      followUp_(now,
                {.answers = !recipe.answerEnd.empty(),
                 .tells = !recipe.answerEnd.empty() && !recipe.ask.empty() && !recipe.tells.empty(),
                 .keyMayComeUntil = keyMayComeUntil},
                limits),
      reader_(recipe) {}

pollfd ServerRelease::Waits() const {
  const bool writes = connecting_ || !unsent_.empty();
  return {connection_.Number(), static_cast<short>(writes ? POLLIN | POLLOUT : POLLIN), 0};
}

SteadyTime ServerRelease::Due() const {
  return leaving_ ? std::min(lookAgain_, followUp_.Due()) : followUp_.Due();
}

ReleaseTask::State ServerRelease::Turn(SteadyTime now, short happened) {
  if (connection_.IsOpen() && happened != 0) {
    if (connecting_) {
      FinishConnecting(now);
    } else {
      WriteOn(now);
      Read(now);
    }
  }
  if (leaving_) SeeWhetherItLeft(now);
  Carry(followUp_.Tick(now), now);
  return state_;
}

void ServerRelease::Carry(FollowUp::Order order, SteadyTime now) {
  switch (order) {
    case FollowUp::Order::Nothing:
      return;
    case FollowUp::Order::Connect:
      return Connect(now);
    case FollowUp::Order::Drop:
      leaving_ = false;
      return connection_.Close();
    case FollowUp::Order::Release:
      leaving_ = recipe_.answerEnd.empty();
      return Send(recipe_.release, now);
    case FollowUp::Order::Ask:
      return Send(recipe_.ask, now);
    case FollowUp::Order::Done:
    case FollowUp::Order::Failed:
      state_ = order == FollowUp::Order::Done ? State::Released : State::Failed;
      leaving_ = false;
      return connection_.Close();
  }
}

void ServerRelease::Connect(SteadyTime now) {
  const auto peer = NumericAddress(recipe_.host, recipe_.port);
  if (!peer) return Lose(now);
  connection_ =
      Descriptor(::socket(peer->address.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  const int on = 1;
  ::setsockopt(connection_.Number(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  const int result = ::connect(connection_.Number(),
                               reinterpret_cast<const sockaddr*>(&peer->address), peer->size);
  connecting_ = result != 0;
  if (result == 0) return Carry(followUp_.Connected(now), now);
  if (errno != EINPROGRESS) Lose(now);
}

void ServerRelease::FinishConnecting(SteadyTime now) {
  int error = 0;
  socklen_t size = sizeof error;
  ::getsockopt(connection_.Number(), SOL_SOCKET, SO_ERROR, &error, &size);
  if (error != 0 || IsConnectedToItself(connection_.Number())) return Lose(now);
  connecting_ = false;
  Carry(followUp_.Connected(now), now);
}

void ServerRelease::Send(const std::string& command, SteadyTime now) {
  reader_.Begin();
  unsent_ = command;
  WriteOn(now);
}

void ServerRelease::WriteOn(SteadyTime now) {
  if (unsent_.empty()) return;
  const ssize_t sent =
      ::send(connection_.Number(), unsent_.data(), unsent_.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  if (sent >= 0) {
    unsent_.erase(0, static_cast<size_t>(sent));
  } else if (!WouldWait()) {
    Lose(now);
  }
}

void ServerRelease::Read(SteadyTime now) {
  if (!connection_.IsOpen()) return;
  std::array<char, kReadAtOnce> bytes;
  const ssize_t size = ::recv(connection_.Number(), bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (size == 0 || (size < 0 && !WouldWait())) return Lose(now);
  if (size < 0) return;
  const auto answer = reader_.Read({bytes.data(), static_cast<size_t>(size)});
  if (answer) Carry(followUp_.Answered(now, *answer), now);
}

// Closed before the peer's system has everything, the rest could be lost with the connection.
void ServerRelease::SeeWhetherItLeft(SteadyTime now) {
  int waiting = 0;
  const bool left =
      unsent_.empty() && (::ioctl(connection_.Number(), SIOCOUTQ, &waiting) != 0 || waiting == 0);
  lookAgain_ = now + kLookAgain;
  if (!left) return;
  leaving_ = false;
  Carry(followUp_.Left(now), now);
}

void ServerRelease::Lose(SteadyTime now) {
  connection_.Close();
  connecting_ = leaving_ = false;
  followUp_.Lost(now);
}

}  // namespace velt
