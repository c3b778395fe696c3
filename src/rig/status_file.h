// Tells the engine where the transceiver is, in the file that it reads.
#pragma once

#include <cstdint>
#include <optional>

#include "form/main_form.h"
#include "platform/installation.h"
#include "ports/files.h"

namespace velt {

class StatusFile {
 public:
  struct Parts {
    const RigControls& form;
    const Installation& installation;
  };
  StatusFile(const Parts& parts, Files& files) : parts_(parts), files_(files) {}

  // Writes the transceiver's frequency in Hz, whether it transmits, and the dominant frequency.
  // kRigIsOff says that it is off, other values below 1 that there is no link to it. Nothing
  // without an engine; the engine never finds half of it.
  void WriteStatusRX(int32_t frequencyHz);

  // What could not be written, as on a full disk, is tried again.
  void TryAgain();

  // The dominant audio frequency that goes with the next writing, in Hz.
  void SetDominantFrequency(int32_t frequencyHz) { dominantFrequencyHz_ = frequencyHz; }

 private:
  Parts parts_;
  Files& files_;
  std::optional<int32_t> unwrittenHz_;
  int32_t dominantFrequencyHz_ = 0;
};

}  // namespace velt
