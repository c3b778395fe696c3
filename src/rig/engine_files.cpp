#include "rig/engine_files.h"

#include <limits>
#include <utility>

#include "text/numbers.h"

namespace velt {
namespace {

constexpr const char* kLineEnd = "\r\n";

template <class T>
void Take(std::optional<T> read, T& into) {
  if (read) into = *std::move(read);
}

std::optional<float> Single(std::optional<double> number) {
  constexpr double kMost = std::numeric_limits<float>::max();
  if (!number || *number > kMost || *number < -kMost) return std::nullopt;
  return static_cast<float>(*number);
}

void ReadCalibration(FieldReader& file, Calibration& into) {
  Take(file.Number16(), into.a);
  Take(file.Number16(), into.offsetKHz);
  Take(file.Number16(), into.c);
}

std::string Quoted(std::string_view text) {
  return '"' + std::string(text) + '"';
}

}  // namespace

EngineStatus ReadEngineStatus(FieldReader file, EngineStatus before) {
  EngineStatus status = std::move(before);
  Take(file.Line(), status.mode);
  for (float& value : status.values) Take(Single(file.Number()), value);
  Take(file.Line(), status.transmitterLine);
  Take(file.Line(), status.invertedSideband);
  return status;
}

const Calibration& Calibrations::Of(std::string_view mode) const {
  static constexpr std::array<std::string_view, 4> kModes = {"USB", "LSB", "CW-USB", "CW-LSB"};
  for (size_t i = 0; i < kModes.size(); ++i) {
    if (mode == kModes[i]) return ofMode[i];
  }
  return all;
}

Calibrations ReadCalibrations(FieldReader file, Calibrations before) {
  Calibrations read = before;
  ReadCalibration(file, read.all);
  for (Calibration& one : read.ofMode) {
    file.Text();
    ReadCalibration(file, one);
  }
  return read;
}

TransmitFile ReadTransmitFile(FieldReader file) {
  TransmitFile read;
  read.state = file.Line();
  read.frequencyHz = file.Number32();
  return read;
}

std::string MetRequestText(std::string_view state) {
  return std::string(state) + kLineEnd + kLineEnd;
}

std::string StatusRxText(int32_t frequencyHz, std::string_view transmitState,
                         int32_t dominantFrequencyHz) {
  const std::string state(Trimmed(transmitState));
  if (frequencyHz >= 1) {
    return std::to_string(frequencyHz) + kLineEnd + state + kLineEnd +
           std::to_string(dominantFrequencyHz) + kLineEnd;
  }
  const bool off = frequencyHz == kRigIsOff;
  return (off ? "0" : Quoted("no-com")) + kLineEnd + (off ? "OFF" : state) + kLineEnd + "0" +
         kLineEnd;
}

}  // namespace velt
