#include "audio/audio_choice.h"

#include <algorithm>

namespace velt {

void AudioChoice::Load(const AudioDevice& stored) {
  stored_ = stored;
  if (capture_.DeviceName().empty()) capture_.ChooseDevice(stored_);
}

std::vector<AudioDevice> AudioChoice::Offered(const std::string& chosen) const {
  std::vector<AudioDevice> offered{{"", "System default"}};
  const std::vector<AudioDevice> known = input_.Devices();
  for (const AudioDevice& device : known) {
    // Two cards of one kind have the same description.
    const bool alone = std::ranges::count(known, device.description, &AudioDevice::description) < 2;
    offered.push_back(alone ? device
                            : AudioDevice{device.name, device.description + ", " + device.name});
  }
  for (const std::string& name : {capture_.DeviceName(), chosen}) {
    if (std::ranges::find(offered, name, &AudioDevice::name) != offered.end()) continue;
    // As long as nothing is known at all, it may well be there.
    offered.push_back({name, Description(name) + (known.empty() ? "" : " (not there)")});
  }
  return offered;
}

void AudioChoice::Choose(const std::string& name) {
  if (name == capture_.DeviceName()) return;
  stored_ = {name, name.empty() ? "" : Description(name)};
  capture_.ChooseDevice(stored_);
}

std::string AudioChoice::Description(const std::string& name) const {
  for (const AudioDevice& device : input_.Devices()) {
    if (device.name == name) return device.description;
  }
  return name == stored_.name && !stored_.description.empty() ? stored_.description : name;
}

}  // namespace velt
