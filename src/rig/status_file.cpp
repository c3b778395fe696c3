#include "rig/status_file.h"

#include "rig/engine_files.h"

namespace velt {

void StatusFile::WriteStatusRX(int32_t frequencyHz) {
  if (!parts_.installation.enginePresent) return;
  // A failure has no message: the engine goes on with what it read last.
  files_.Publish(
      parts_.installation.engineFolder / "STATUSRX.CFG",
      StatusRxText(frequencyHz, parts_.form.lblTRXMode.caption.Get(), dominantFrequencyHz_));
}

}  // namespace velt
