// The CAT port over two rigctld servers, one for each rig.
#pragma once

#include <array>
#include <memory>

#include "adapters/rigctld/rigctld_rig.h"
#include "adapters/rigctld/tcp_channel.h"
#include "ports/omnirig.h"

namespace velt {

class RigctldServer : public IOmniRigX {
 public:
  explicit RigctldServer(Scheduler& scheduler);

  std::string Address(int32_t rigNumber) const override;
  bool IsAddress(const std::string& text) const override;
  bool SetAddress(int32_t rigNumber, const std::string& hostAndPort) override;
  Capabilities Can() const override { return {}; }
  void Open(int32_t rigNumber, std::function<void(bool reached)> answered) override;
  void Close() override;
  int32_t InterfaceVersion() const override;
  IRigX& Rig1() override { return sides_[0]->rig; }
  IRigX& Rig2() override { return sides_[1]->rig; }
  void ReleaseNow(int32_t rigNumber, int32_t limitMs) override;

 private:
  struct Side {
    Side(Scheduler& scheduler, uint16_t port);

    ServerAddress address;
    TcpChannel channel;
    RigctldRig rig;
    bool statusPosted = false;
    int32_t params = 0;  // of the posted event
    Connections connections;
  };

  Side* Of(int32_t rigNumber) const;
  std::unique_ptr<Side> MakeSide(int32_t rigNumber, uint16_t port);
  void PostStatus(int32_t rigNumber);
  void PostParams(int32_t rigNumber, int32_t params);
  void PostRefusal(int32_t rigNumber);
  void PostSafely(std::function<void()> f);

  Scheduler& scheduler_;
  std::shared_ptr<char> open_;  // what was posted before Close() is dropped
  std::array<std::unique_ptr<Side>, 2> sides_;
};

}  // namespace velt
