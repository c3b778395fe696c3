// Lets go of the transmitters that this program keyed, for the registry of what must be released.
#pragma once

#include "platform/release_registry.h"
#include "ports/omnirig.h"
#include "rig/ptt_guard.h"

namespace velt {

class RigRelease : public Releasable {
 public:
  RigRelease(IOmniRigX& server, PttGuard& guard) : server_(server), guard_(guard) {}

  void Release(Milliseconds) override { guard_.ReleaseNow(); }
  void ReleaseInCrash() noexcept override { server_.ReleaseInCrash(); }

 private:
  IOmniRigX& server_;
  PttGuard& guard_;
};

}  // namespace velt
