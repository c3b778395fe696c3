#include "adapters/rigctld/rigctld_server.h"

#include <utility>

namespace velt {

namespace {

constexpr const char* kHost = "127.0.0.1";
constexpr uint16_t kPort1 = 4532;
constexpr uint16_t kPort2 = 4534;

}  // namespace

RigctldServer::Side::Side(Scheduler& scheduler, uint16_t port)
    : address{kHost, port}, channel(scheduler), rig(channel, scheduler) {}

RigctldServer::RigctldServer(Scheduler& scheduler)
    : scheduler_(scheduler),
      open_(std::make_shared<char>()),
      sides_{MakeSide(1, kPort1), MakeSide(2, kPort2)} {}

std::unique_ptr<RigctldServer::Side> RigctldServer::MakeSide(int32_t rigNumber, uint16_t port) {
  auto side = std::make_unique<Side>(scheduler_, port);
  RigctldRig& rig = side->rig;
  side->connections += rig.statusChanged.Listen([this, rigNumber] { PostStatus(rigNumber); });
  side->connections += rig.keyRefused.Listen([this, rigNumber] { PostRefusal(rigNumber); });
  side->connections += rig.writeRefused.Listen([this, rigNumber](const RefusedWrite& write) {
    PostSafely([this, rigNumber, write] { writeRefused.Raise(rigNumber, write); });
  });
  side->connections += rig.paramsChanged.Listen(
      [this, rigNumber](int32_t params) { PostParams(rigNumber, params); });
  return side;
}

std::string RigctldServer::Address(int32_t rigNumber) const {
  const Side* side = Of(rigNumber);
  return side ? side->address.Text() : std::string();
}

bool RigctldServer::IsAddress(const std::string& text) const {
  return ParseServerAddress(text).has_value();
}

bool RigctldServer::SetAddress(int32_t rigNumber, const std::string& hostAndPort) {
  Side* side = Of(rigNumber);
  const auto address = ParseServerAddress(hostAndPort);
  if (!side || !address) return false;
  if (*address == side->address) return true;
  side->address = *address;
  side->rig.Move(*address);
  return true;
}

void RigctldServer::Open(int32_t rigNumber, std::function<void(bool reached)> answered) {
  auto later = [this, answered = std::move(answered)](bool reached) {
    if (answered) PostSafely([answered, reached] { answered(reached); });
  };
  if (Side* side = Of(rigNumber)) {
    side->rig.Open(side->address, std::move(later));
  } else {
    later(false);
  }
}

void RigctldServer::Close() {
  for (const auto& side : sides_) {
    side->rig.Close();
    side->statusPosted = false;
    side->params = 0;
  }
  open_ = std::make_shared<char>();
}

int32_t RigctldServer::InterfaceVersion() const {
  const bool answered = sides_[0]->rig.HasAnswered() || sides_[1]->rig.HasAnswered();
  return answered ? 0x101 : 0;
}

void RigctldServer::ReleaseNow(int32_t rigNumber, int32_t limitMs) {
  if (Side* side = Of(rigNumber)) side->rig.ReleaseNow(Milliseconds(limitMs));
}

RigctldServer::Side* RigctldServer::Of(int32_t rigNumber) const {
  return rigNumber == 1 || rigNumber == 2 ? sides_[rigNumber - 1].get() : nullptr;
}

void RigctldServer::PostStatus(int32_t rigNumber) {
  Side& side = *Of(rigNumber);
  if (std::exchange(side.statusPosted, true)) return;
  PostSafely([this, &side, rigNumber] {
    side.statusPosted = false;
    statusChanged.Raise(rigNumber);
  });
}

void RigctldServer::PostParams(int32_t rigNumber, int32_t params) {
  Side& side = *Of(rigNumber);
  if (std::exchange(side.params, side.params | params) != 0) return;
  PostSafely([this, &side, rigNumber] {
    const int32_t changed = std::exchange(side.params, 0);
    paramsChanged.Raise(rigNumber, changed);
  });
}

void RigctldServer::PostRefusal(int32_t rigNumber) {
  PostSafely([this, rigNumber] {
    if (Of(rigNumber)->rig.KeyRefused()) keyRefused.Raise(rigNumber);
  });
}

void RigctldServer::PostSafely(std::function<void()> f) {
  scheduler_.Post([weak = std::weak_ptr(open_), f = std::move(f)] {
    if (weak.lock()) f();
  });
}

}  // namespace velt
