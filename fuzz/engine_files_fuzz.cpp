// The engine's files: whatever stands in them, what was asked of the transmitter stands there in
// full, and a file that may be half-written asks for nothing that the whole one does not.
#include <cstdint>
#include <string>

#include "require.h"
#include "rig/engine_files.h"
#include "rig/serial_config.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace velt;
  const std::string text(reinterpret_cast<const char*>(data), size);
  using Tail = FieldReader::Tail;

  const EngineStatus mark{"?", {1, 2, 3}, "?", "?"};
  ReadEngineStatus(FieldReader(text), mark);
  ReadCalibrations(FieldReader(text), {});
  const EngineStatus empty = ReadEngineStatus(FieldReader(""), mark);
  Require(empty.mode == "?" && empty.values[2] == 3, "a missing file changes nothing");

  const TransmitFile whole = ReadTransmitFile(FieldReader(text));
  const TransmitFile half = ReadTransmitFile(FieldReader(text, Tail::MayGoOn));
  Require(!half.state || half.state == whole.state, "half a state is none");
  Require(!half.frequencyHz || half.frequencyHz == whole.frequencyHz, "half a number is none");
  if (whole.state) {
    const std::string met = MetRequestText(*whole.state);
    const TransmitFile again = ReadTransmitFile(FieldReader(met, Tail::MayGoOn));
    Require(again.state == whole.state && !again.Requests(), "a met request asks for nothing");
  }

  const SerialConfig port = ReadSerialConfig(text);
  Require(port.complete || port.pttMethod == "NONE", "an unreadable port keys nothing");
  return 0;
}
