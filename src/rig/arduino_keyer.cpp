#include "rig/arduino_keyer.h"

#include "text/error_text.h"

namespace velt {

ArduinoKeyer::ArduinoKeyer(ArduinoPort& port, const Scheduler& scheduler)
    : port_(port), scheduler_(scheduler) {
  connections_ += port_.changed.Listen([this] {
    if (!port_.IsOpen()) released_ = false;
    SendHeldBack();
    heard.Raise();
  });
}

std::string ArduinoKeyer::Prepare() {
  const int error = port_.Open();
  return error == 0 ? std::string() : "the serial port could not be opened: " + ErrorText(error);
}

bool ArduinoKeyer::Key() {
  if (!port_.IsOpen()) return false;
  heldBack_ += 'T';
  keyedAt_ = scheduler_.Now();
  SendHeldBack();
  return true;
}

void ArduinoKeyer::Release() {
  // One that is still on its way will do.
  if (released_ && heldBack_.empty() && !port_.HasLeft()) return;
  heldBack_ = 'R';
  port_.Open();
  SendHeldBack();
}

void ArduinoKeyer::ReleaseNow(Milliseconds) {
  heldBack_.clear();
  port_.Write("R");
  released_ = true;
}

Keyer::Report ArduinoKeyer::Look() const {
  return {.linked = port_.IsOpen(),
          .reachable = port_.IsOpen(),
          .transmitter = TxReport::Untold,
          .releaseAccepted = released_ && heldBack_.empty() && port_.HasLeft()};
}

std::optional<ReleaseRecipe> ArduinoKeyer::Recipe() const {
  if (!port_.IsOpen()) return std::nullopt;
  return ReleaseRecipe{.descriptor = port_.Descriptor(), .release = "R"};
}

void ArduinoKeyer::SendHeldBack() {
  if (heldBack_.empty() || !port_.IsReady()) return;
  const bool keys = heldBack_.back() == 'T';
  if (keys && scheduler_.Now() - keyedAt_ >= kStale) {
    heldBack_.clear();
    return refused.Raise();
  }
  port_.Write(heldBack_);
  released_ = !keys;
  heldBack_.clear();
}

}  // namespace velt
