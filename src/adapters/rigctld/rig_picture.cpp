#include "adapters/rigctld/rig_picture.h"

#include <optional>

#include "adapters/rigctld/mode_names.h"
#include "ports/omnirig.h"
#include "text/numbers.h"

namespace velt {

namespace {

// A frequency in Hz as the server writes it, with or without decimals.
std::optional<int32_t> Hertz(std::string_view text) {
  const auto value = RoundHalfEven(LeadingNumber(text));
  return value && *value > 0 ? value : std::nullopt;
}

}  // namespace

void SettledValue::Written(int32_t value) {
  value_ = value;
  waiting_ = true;
}

void SettledValue::Acknowledged(int32_t value, bool accepted) {
  if (!waiting_ || value != value_) return;
  waiting_ = false;
  if (accepted) {
    doubtful_ = kSettlingReports;
  } else {
    value_ = reported_;
    doubtful_ = 0;
  }
}

void SettledValue::Reported(int32_t value) {
  reported_ = value;
  if (waiting_) return;
  if (doubtful_ > 0) {
    --doubtful_;
  } else {
    value_ = value;
  }
}

void SettledValue::Unsettle() {
  waiting_ = false;
  doubtful_ = 0;
}

void TransmitState::ReleaseAsked() {
  waiting_ = true;
}

void TransmitState::ReleaseAnswered() {
  if (!waiting_) return;
  waiting_ = false;
  doubtful_ = kSettlingReports + 1;  // one is asked for at once
}

void TransmitState::KeyAsked() {
  waiting_ = false;
  doubtful_ = 0;
}

void TransmitState::Reported(bool transmitting) {
  const bool doubted = waiting_ || doubtful_ > 0;
  if (!waiting_ && doubtful_ > 0) --doubtful_;
  if (transmitting && !transmitting_ && doubted) return;
  transmitting_ = transmitting;
}

int32_t RigPicture::Values::ChangesFrom(const Values& before) const {
  int32_t bits = 0;
  if (freq != before.freq || txFreq != before.txFreq) bits |= PM_FREQ;
  if (freqA != before.freqA) bits |= PM_FREQA;
  if (freqB != before.freqB) bits |= PM_FREQB;
  if (mode != before.mode) bits |= mode;
  if (split != before.split) bits |= split ? PM_SPLITON : PM_SPLITOFF;
  if (transmitting != before.transmitting) bits |= transmitting ? PM_TX : PM_RX;
  // A mode that has no bit is still a change.
  if (mode != before.mode && mode == 0) bits |= PM_UNKNOWN;
  return bits;
}

RigPicture::Values RigPicture::Now() const {
  Values now;
  now.freq = freq_.Value();
  now.freqA = freqA_.Value();
  now.freqB = freqB_.Value();
  now.mode = mode_.Value();
  now.split = split_;
  now.transmitting = transmit_.Transmitting();
  if (now.transmitting) now.txFreq = split_ && splitFreq_ > 0 ? splitFreq_ : now.freq;
  return now;
}

void RigPicture::Written(RigProperty property, int32_t value) {
  switch (property) {
    case RigProperty::Freq:
      freq_.Written(value);
      if (SettledValue* vfo = OfCurrentVfo()) vfo->Written(value);
      break;
    case RigProperty::FreqA:
      freqA_.Written(value);
      if (vfo_ == 'A') freq_.Written(value);
      break;
    case RigProperty::FreqB:
      freqB_.Written(value);
      if (vfo_ == 'B') freq_.Written(value);
      break;
    case RigProperty::Mode:
      mode_.Written(value);
      break;
    default:
      break;
  }
}

void RigPicture::Acknowledged(RigProperty property, int32_t value, bool accepted) {
  switch (property) {
    case RigProperty::Freq:
      freq_.Acknowledged(value, accepted);
      if (SettledValue* vfo = OfCurrentVfo()) vfo->Acknowledged(value, accepted);
      break;
    case RigProperty::FreqA:
      freqA_.Acknowledged(value, accepted);
      if (vfo_ == 'A') freq_.Acknowledged(value, accepted);
      break;
    case RigProperty::FreqB:
      freqB_.Acknowledged(value, accepted);
      if (vfo_ == 'B') freq_.Acknowledged(value, accepted);
      break;
    case RigProperty::Mode:
      mode_.Acknowledged(value, accepted);
      break;
    case RigProperty::Transmit:
      if (value == 0) transmit_.ReleaseAnswered();
      break;
    default:
      break;
  }
}

void RigPicture::Reported(CommandKind kind, const RigReply& reply) {
  switch (kind) {
    case CommandKind::GetFreq:
      if (const auto hz = Hertz(reply.Field("Frequency"))) {
        freq_.Reported(*hz);
        if (SettledValue* vfo = OfCurrentVfo()) vfo->Reported(*hz);
      }
      break;
    case CommandKind::GetVfoA:
      if (const auto hz = Hertz(reply.Field("Freq"))) freqA_.Reported(*hz);
      break;
    case CommandKind::GetVfoB:
      if (const auto hz = Hertz(reply.Field("Freq"))) freqB_.Reported(*hz);
      break;
    case CommandKind::GetMode:
      mode_.Reported(ModeOfName(reply.Field("Mode")));
      break;
    case CommandKind::GetTransmit:
      if (const auto keyed = ParseWhole(reply.Field("PTT"))) transmit_.Reported(*keyed != 0);
      break;
    case CommandKind::GetSplit:
      if (const auto on = ParseWhole(reply.Field("Split"))) split_ = *on != 0;
      if (!split_) splitFreq_ = 0;
      break;
    case CommandKind::GetSplitFreq:
      splitFreq_ = Hertz(reply.Field("TX Frequency")).value_or(0);
      break;
    case CommandKind::GetVfo:
      SetVfo(reply.Field("VFO"));
      break;
    default:
      break;
  }
}

void RigPicture::Unsettle() {
  for (SettledValue* value : {&freq_, &freqA_, &freqB_, &mode_}) value->Unsettle();
  transmit_.KeyAsked();
}

SettledValue* RigPicture::OfCurrentVfo() {
  if (vfo_ == 'A') return &freqA_;
  if (vfo_ == 'B') return &freqB_;
  return nullptr;
}

void RigPicture::SetVfo(std::string_view name) {
  const char vfo = VfoLetter(name);
  if (vfo == vfo_) return;
  vfo_ = vfo;
  // What was written was meant for the VFO that was current.
  freq_.Unsettle();
}

}  // namespace velt
