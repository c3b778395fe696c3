// For runs that can key no real transmitter.
#pragma once

#include "ports/guardian.h"

namespace velt {

class NoGuardian : public Guardian {
 public:
  uint32_t Hold(const ReleaseRecipe&) override { return ++lastTicket_; }
  void Forget(uint32_t) override {}
  void Follow(uint32_t) override {}
  void Beat() override {}

 private:
  uint32_t lastTicket_ = 0;
};

}  // namespace velt
