// The small text files through which the engine and this program talk, as values. Each reader takes
// what stood there before and gives it back with what could be read; what is missing, cut off or no
// number stays as it was.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "text/field_reader.h"

namespace velt {

// "status.cfg": what the engine does.
struct EngineStatus {
  std::string mode = {};              // "USB", "LSB", "CW-USB", ..., as it stands there
  std::array<float, 3> values = {};   // the first two are the passband's edges
  std::string transmitterLine = {};   // "usb", ..., "lock_to_txcr", or empty
  std::string invertedSideband = {};  // "on" or anything else
};
EngineStatus ReadEngineStatus(FieldReader file, EngineStatus before);

// "calall.cfg": the calibration of all modes and that of each.
struct Calibration {
  int16_t a = 0;
  int16_t offsetKHz = 0;
  int16_t c = 0;
  bool operator==(const Calibration&) const = default;
};
struct Calibrations {
  Calibration all = {};
  std::array<Calibration, 4> ofMode = {};  // USB, LSB, CW-USB, CW-LSB

  // That of a mode tied to the transceiver; for other modes the one of all.
  const Calibration& Of(std::string_view mode) const;
};
Calibrations ReadCalibrations(FieldReader file, Calibrations before);

// "transmitter.cfg": what the engine wants of the transceiver. What cannot be read is not there: a
// state or a request of before means nothing.
struct TransmitFile {
  std::optional<std::string> state = {};    // line 1; "on" transmits
  std::optional<int32_t> frequencyHz = {};  // greater than 1: to be tuned to

  bool Requests() const { return frequencyHz.value_or(0) > 1; }
};
TransmitFile ReadTransmitFile(FieldReader file);

// The same file once its request was met.
std::string MetRequestText(std::string_view state);

// "STATUSRX.CFG": what this program tells the engine. -2 says that the transceiver is off, other
// values below 1 that there is no link to it.
inline constexpr int32_t kRigIsOff = -2;
std::string StatusRxText(int32_t frequencyHz, std::string_view transmitState,
                         int32_t dominantFrequencyHz);

}  // namespace velt
