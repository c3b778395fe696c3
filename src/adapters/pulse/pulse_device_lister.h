// Asks the sound server once for its sources, without opening any.
#pragma once

#include "adapters/pulse/pulse_connection.h"

namespace velt {

struct DeviceListing {
  std::vector<AudioDevice> devices;
  std::string defaultName;  // empty: the server has none
  std::string error;        // why there is no list; empty when there is one
  std::string server = {};  // its name and version
};

class PulseDeviceLister final : private PulseConnection::Listener {
 public:
  explicit PulseDeviceLister(Scheduler& scheduler);  // the scheduler outlives the lister
  ~PulseDeviceLister();

  // Calls `done` once on the window's thread within 3 s, never from within this call, and not when
  // the lister was destroyed meanwhile. Another call replaces one that is under way.
  void List(std::function<void(const DeviceListing&)> done);

 private:
  void OnSources(const PulseSources& sources) override;
  void OnConnectionFailed(const std::string& reason) override;
  void Answer(DeviceListing listing);

  Scheduler& scheduler_;
  std::shared_ptr<std::function<void(const DeviceListing&)>> done_;
  PulseLoop loop_;

  // What follows is touched under the loop's lock.
  PulseTimer start_;
  PulseTimer limit_;
  std::unique_ptr<PulseConnection> connection_;
};

}  // namespace velt
