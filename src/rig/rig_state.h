// The picture of the transceiver and what the engine's files add to it. Plain values; the mode and
// the transmit state are the captions of lblMode and lblTRXMode.
#pragma once

#include <cstdint>
#include <string>

namespace velt {

struct RigState {
  int32_t RealRigFrequency = 0;   // Hz, as the rig or the counter told it last
  int32_t savedRigFrequency = 0;  // Hz, before the shift for transmitting
  int32_t scaleAnchorHz = 0;      // where the spectrum's scale starts
  int16_t vfo = 0;               // what frequencies are written to: 0 current, 1 A, 2 B, 3 B then A
  int16_t rigNumber = 0;         // the rig selected in this run; 0 before the link started
  int16_t rigChoice = 1;         // the rig to start with, kept in the settings
  int16_t offsetKHz = 0;         // subtracted from every frequency written
  std::string invertedSideband;  // "on": the rig's sideband mirrors the engine's
  std::string pttMethod = "NONE";
  bool omniRigActive = false;  // the link has been started successfully
  int32_t bandPresetKHz = 0;   // the frequency entered last by hand
  std::string arduinoUnit = "kHz";
};

// What the engine's files say; as below until they are read.
struct EngineState {
  std::string modeText = "N/A";     // the engine's mode
  std::string transmitterModeLine;  // "lock_to_txcr" ties the rig to the engine
  int16_t scaleOffset = 0;          // calibration value A, Hz
  float calibrationC = 0.0F;        // calibration value C
  float passbandLow = 0.0F;         // equal edges: no passband
  float passbandHigh = 0.0F;
};

}  // namespace velt
