#include "rig/arduino_counter.h"

#include "rig/shown_frequency.h"
#include "text/formats.h"
#include "text/numbers.h"

namespace velt {
namespace {

constexpr const char* kComError = "Com error";
constexpr const char* kWaiting = "Arduino";

}  // namespace

ArduinoCounter::ArduinoCounter(const Parts& parts) : parts_(parts) {
  connections_ += parts_.port.received.Listen([this](std::string_view text) { Hear(text); });
  connections_ += parts_.form.tmrFreqcount.enabled.changed.Listen([this] { Begin(); });
  connections_ += parts_.form.tmrFreqcount.ticked.Listen([this] { tmrFreqcount_Timer(); });
}

void ArduinoCounter::Offer() {
  offered_ = true;
  if (parts_.state.pttMethod != "ARDUINO") return;
  parts_.form.mnuArduinoFreq.enabled = true;
  if (!parts_.form.mnuArduinoFreq.checked || parts_.form.tmrFreqcount.enabled) return;
  parts_.form.lblFrequency.caption = kWaiting;
  parts_.form.tmrFreqcount.enabled = true;
  parts_.form.lblFrequency.toolTip =
      "Arduino Chip Readout Frequency in " + parts_.state.arduinoUnit;
}

void ArduinoCounter::FollowMethod() {
  if (parts_.state.pttMethod == "ARDUINO") {
    if (offered_ && IsRigOffLine(parts_.form.lblFrequency)) Offer();
    return;
  }
  parts_.form.mnuArduinoFreq.enabled = false;
  if (!parts_.form.tmrFreqcount.enabled) return;
  parts_.form.tmrFreqcount.enabled = false;
  parts_.form.lblFrequency.toolTip = RigDisplay::kNoRigToolTip;
  parts_.form.lblFrequency.caption = kRigOffLine;
}

void ArduinoCounter::tmrFreqcount_Timer() {
  RigLabel& shown = parts_.form.lblFrequency;
  if (!parts_.port.IsOpen()) {
    // The port tries again by itself. The analyser goes on: a picture that stands still would look
    // like one that is alive.
    shown.caption = kComError;
    return MarkStale(false);
  }
  FollowOpening();
  if (shown.caption.Get() == kComError) shown.caption = kWaiting;
  const SteadyTime now = parts_.scheduler.Now();
  if (!parts_.port.Poll() && now - lastHeard_ >= kPause) reader_.Pause();
  if (const std::string count = reader_.Take(); !count.empty()) {
    Show(count);
  } else if (now - lastShown_ >= kFreshFor) {
    MarkStale(ShownFrequencyHz(shown).has_value());
  }
}

std::string ArduinoCounter::FormatDisplay(const std::string& text) {
  const auto count = ParseWhole(text);
  if (!count) return {};
  const int64_t frequencyHz = *count + kFirstOffsetHz + kSecondOffsetHz;
  const int32_t toWrite = Clamp32(frequencyHz);
  if (toWrite != lastWritten_ && writeTurn_ == 0) {
    lastWritten_ = toWrite;
    parts_.statusFile.WriteStatusRX(toWrite);
  }
  writeTurn_ = static_cast<int16_t>((writeTurn_ + 1) % 3);
  lastCountHz_ = toWrite;
  return CountText(frequencyHz, kDisplayFormat);
}

void ArduinoCounter::Hear(std::string_view text) {
  if (!parts_.form.tmrFreqcount.enabled) return;
  FollowOpening();
  lastHeard_ = parts_.scheduler.Now();
  reader_.Feed(text);
}

// A number that was on its way through another opening does not go on.
void ArduinoCounter::FollowOpening() {
  if (opening_ == parts_.port.Openings()) return;
  opening_ = parts_.port.Openings();
  lastHeard_ = parts_.scheduler.Now();
  reader_.Reset();
}

void ArduinoCounter::Begin() {
  opening_ = parts_.port.Openings();
  lastHeard_ = lastShown_ = parts_.scheduler.Now();
  reader_.Reset();
  MarkStale(false);
}

void ArduinoCounter::Show(const std::string& count) {
  const std::string text = FormatDisplay(count);
  if (text.empty()) return;
  parts_.form.lblFrequency.caption = text;
  parts_.display.TakeFrequency(lastCountHz_);
  lastShown_ = parts_.scheduler.Now();
  MarkStale(false);
}

void ArduinoCounter::MarkStale(bool stale) {
  parts_.form.lblFrequency.stale = stale;
  parts_.form.lblFrequencyExpand.stale = stale;
}

}  // namespace velt
