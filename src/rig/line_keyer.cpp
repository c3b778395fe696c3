#include "rig/line_keyer.h"

#include <utility>

#include "text/error_text.h"

namespace velt {

LineKeyer::LineKeyer(SerialPort& port) : port_(port) {
  connections_ += port_.failed.Listen([this](int) {
    if (!std::exchange(opened_, false)) return;
    lost_ = true;
    heard.Raise();
  });
}

void LineKeyer::SetLines(bool dtr, bool rts) {
  dtr_ = dtr;
  rts_ = rts;
}

// The lines stay down until the guardian has the port too. Whoever ends the program before that
// closes the only descriptor, which keeps them down.
std::string LineKeyer::Prepare() {
  if (!dtr_ && !rts_) return "no serial port is set up";
  if (opened_) return {};
  port_.SetDTREnable(false);
  port_.SetRTSEnable(false);
  if (const int error = port_.Open()) {
    return "the serial port could not be opened: " + ErrorText(error);
  }
  opened_ = true;
  lost_ = false;
  ++openings_;
  return {};
}

bool LineKeyer::Key() {
  if (!opened_) return false;
  port_.SetDTREnable(dtr_);
  port_.SetRTSEnable(rts_);
  return true;
}

void LineKeyer::GiveUp() {
  Release();
}

void LineKeyer::Release() {
  if (std::exchange(opened_, false)) port_.Close();
}

Keyer::Report LineKeyer::Look() const {
  return {.linked = !lost_,
          .reachable = !lost_,
          .transmitter = TxReport::Untold,
          .releaseAccepted = !opened_};
}

std::optional<ReleaseRecipe> LineKeyer::Recipe() const {
  if (!opened_) return std::nullopt;
  return ReleaseRecipe{.descriptor = port_.Descriptor(), .lowersLines = true};
}

}  // namespace velt
