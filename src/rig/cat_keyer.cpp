#include "rig/cat_keyer.h"

namespace velt {

CatKeyer::CatKeyer(IOmniRigX& server, int32_t rigNumber) : server_(server), rigNumber_(rigNumber) {
  connections_ += server_.keyRefused.Listen([this](int32_t number) {
    if (number == rigNumber_) refused.Raise();
  });
  connections_ += server_.statusChanged.Listen([this](int32_t number) {
    if (number == rigNumber_) heard.Raise();
  });
  connections_ += server_.paramsChanged.Listen([this](int32_t number, int32_t) {
    if (number == rigNumber_) heard.Raise();
  });
}

bool CatKeyer::Key() {
  return Rig().Link().state == RigLink::State::Linked && Rig().SetTx(PM_TX);
}

void CatKeyer::Release() {
  Rig().SetTx(PM_RX);
}

void CatKeyer::ReleaseNow(Milliseconds limit) {
  server_.ReleaseNow(rigNumber_, static_cast<int32_t>(limit.count()));
}

Keyer::Report CatKeyer::Look() const {
  const RigLink::State state = Rig().Link().state;
  const bool linked = state == RigLink::State::Linked;
  return {.linked = linked,
          .reachable = linked || state == RigLink::State::Silent,
          .transmitter = Rig().Transmitter(),
          .releaseAccepted = Rig().ReleaseAccepted()};
}

}  // namespace velt
