#include "rig/status_file.h"

#include "rig/engine_files.h"

namespace velt {

void StatusFile::WriteStatusRX(int32_t frequencyHz) {
  if (!parts_.installation.enginePresent) return;
  // A failure has no message: the engine goes on with what it read last.
  const int error = files_.Publish(
      parts_.installation.engineFolder / "STATUSRX.CFG",
      StatusRxText(frequencyHz, parts_.form.lblTRXMode.caption.Get(), dominantFrequencyHz_));
  unwrittenHz_ = error == 0 ? std::nullopt : std::optional(frequencyHz);
}

void StatusFile::TryAgain() {
  if (unwrittenHz_) WriteStatusRX(*unwrittenHz_);
}

}  // namespace velt
