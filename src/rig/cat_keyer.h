// Keys one of the CAT server's rigs over its link.
#pragma once

#include <cstdint>

#include "rig/keyer.h"

namespace velt {

class CatKeyer : public Keyer {
 public:
  CatKeyer(IOmniRigX& server, int32_t rigNumber);

  bool Key() override;
  void Release() override;
  void ReleaseNow(Milliseconds limit) override;
  Report Look() const override;
  std::optional<ReleaseRecipe> Recipe() const override { return Rig().Recipe(); }

  int32_t RigNumber() const { return rigNumber_; }

 private:
  IRigX& Rig() const { return rigNumber_ == 2 ? server_.Rig2() : server_.Rig1(); }

  IOmniRigX& server_;
  int32_t rigNumber_;
  Connections connections_;
};

}  // namespace velt
