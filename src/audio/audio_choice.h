// Which sound input the user has chosen, and what there is to choose from.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "audio/capture.h"
#include "ports/audio_input.h"

namespace velt {

class AudioChoice {
 public:
  // In the settings, in a section of its own.
  static constexpr const char* kSection = "Audio";
  static constexpr const char* kNameKey = "Device";
  static constexpr const char* kDescriptionKey = "Description";

  // What capture was made with holds for this run, whatever is stored, until the user chooses.
  AudioChoice(Capture& capture, AudioInput& input) : capture_(capture), input_(input) {}

  // An empty name is the system's default.
  void Load(const AudioDevice& stored);
  const AudioDevice& Stored() const { return stored_; }

  // Asks for the devices, which are then offered in their time.
  void Look() { input_.FindDevices(); }

  // What there is: the system's default (its name is empty), the devices known at the moment, and
  // the one in use and `chosen` even if they are not there. The descriptions tell all apart.
  std::vector<AudioDevice> Offered(const std::string& chosen) const;

  // The user has chosen that; sound that runs goes on from there. Nothing for what is in use.
  void Choose(const std::string& name);

 private:
  std::string Description(const std::string& name) const;

  Capture& capture_;
  AudioInput& input_;
  AudioDevice stored_;
};

}  // namespace velt
