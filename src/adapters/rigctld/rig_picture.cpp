#include "adapters/rigctld/rig_picture.h"

#include <utility>

#include "adapters/rigctld/mode_names.h"
#include "text/numbers.h"

namespace velt {

namespace {

constexpr int32_t kLeastHz = 10;

// As the server writes it, with or without decimals; 0 for what is no frequency.
int32_t Hertz(std::string_view text) {
  const auto value = RoundHalfEven(LeadingNumber(text));
  return value && *value >= kLeastHz ? *value : 0;
}

}  // namespace

void SettledValue::Written(int32_t value) {
  value_ = value;
  waiting_ = true;
}

void SettledValue::Acknowledged(int32_t value, bool accepted, SteadyTime now) {
  if (!waiting_ || value != value_) return;
  waiting_ = false;
  settled_ = accepted ? now + kSettling : now;
  if (!accepted) value_ = reported_;
}

void SettledValue::Reported(int32_t value, SteadyTime now) {
  reported_ = value;
  if (!waiting_ && now >= settled_) value_ = value;
}

void SettledValue::Unsettle() {
  waiting_ = false;
  settled_ = SteadyTime();
}

void TransmitState::ReleaseAnswered(SteadyTime now) {
  if (std::exchange(waiting_, false)) settled_ = now + kSettling;
}

void TransmitState::KeyAsked() {
  waiting_ = false;
  settled_ = SteadyTime();
}

void TransmitState::Reported(bool transmitting, SteadyTime now) {
  told_ = transmitting ? TxReport::Transmits : TxReport::Receives;
  const bool settled = !waiting_ && now >= settled_;
  if (!transmitting || settled) shown_ = transmitting;
}

void TransmitState::Forget() {
  told_ = TxReport::Untold;
  KeyAsked();
}

int32_t RigPicture::Values::ChangesFrom(const Values& before) const {
  int32_t bits = 0;
  if (freq != before.freq || txFreq != before.txFreq) bits |= PM_FREQ;
  if (freqA != before.freqA) bits |= PM_FREQA;
  if (freqB != before.freqB) bits |= PM_FREQB;
  if (mode != before.mode) bits |= mode;
  if (split != before.split) bits |= split ? PM_SPLITON : PM_SPLITOFF;
  if (told != before.told && told != TxReport::Untold) {
    bits |= told == TxReport::Transmits ? PM_TX : PM_RX;
  }
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
  now.told = transmit_.Told();
  if (transmit_.Shown()) now.txFreq = split_ && splitFreq_ > 0 ? splitFreq_ : now.freq;
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

void RigPicture::Acknowledged(RigProperty property, int32_t value, bool accepted, SteadyTime now) {
  switch (property) {
    case RigProperty::Freq:
      freq_.Acknowledged(value, accepted, now);
      if (SettledValue* vfo = OfCurrentVfo()) vfo->Acknowledged(value, accepted, now);
      break;
    case RigProperty::FreqA:
      freqA_.Acknowledged(value, accepted, now);
      if (vfo_ == 'A') freq_.Acknowledged(value, accepted, now);
      break;
    case RigProperty::FreqB:
      freqB_.Acknowledged(value, accepted, now);
      if (vfo_ == 'B') freq_.Acknowledged(value, accepted, now);
      break;
    case RigProperty::Mode:
      mode_.Acknowledged(value, accepted, now);
      break;
    case RigProperty::Transmit:
      if (value == 0) transmit_.ReleaseAnswered(now);
      break;
    default:
      break;
  }
}

void RigPicture::Reported(CommandKind kind, const RigReply& reply, SteadyTime now) {
  switch (kind) {
    case CommandKind::GetFreq: {
      const int32_t hz = Hertz(reply.Field("Frequency"));
      freq_.Reported(hz, now);
      if (SettledValue* vfo = OfCurrentVfo()) vfo->Reported(hz, now);
      break;
    }
    case CommandKind::GetVfoA:
      freqA_.Reported(Hertz(reply.Field("Freq")), now);
      break;
    case CommandKind::GetVfoB:
      freqB_.Reported(Hertz(reply.Field("Freq")), now);
      break;
    case CommandKind::GetMode:
      mode_.Reported(ModeOfName(reply.Field("Mode")), now);
      break;
    case CommandKind::GetTransmit:
      if (const auto keyed = ParseWhole(reply.Field("PTT"))) transmit_.Reported(*keyed != 0, now);
      break;
    case CommandKind::GetSplit:
      if (const auto on = ParseWhole(reply.Field("Split"))) split_ = *on != 0;
      if (!split_) splitFreq_ = 0;
      break;
    case CommandKind::GetSplitFreq:
      splitFreq_ = Hertz(reply.Field("TX Frequency"));
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
  transmit_.Forget();
}

SettledValue* RigPicture::OfCurrentVfo() {
  if (vfo_ == 'A') return &freqA_;
  if (vfo_ == 'B') return &freqB_;
  return nullptr;
}

void RigPicture::SetVfo(std::string_view name) {
  const char vfo = VfoLetter(name);
  if (vfo == vfo_) return;
  // What was written was meant for the VFO that was current, and is not answered for another.
  freq_.Unsettle();
  if (SettledValue* left = OfCurrentVfo()) left->Unsettle();
  vfo_ = vfo;
}

}  // namespace velt
