#include "adapters/simulated_rig/simulated_rig.h"

#include <utility>

namespace velt {

namespace {

constexpr int32_t kLowestHz = 10'000;
constexpr int32_t kHighestHz = 2'000'000'000;
constexpr int32_t kRetrySeconds = 5;
// As long as a real rig takes until it reports what it was told.
constexpr Milliseconds kReport{30};
constexpr Milliseconds kDriftStep{200};

bool IsMode(int32_t mode) {
  for (const int32_t known : {PM_CW_U, PM_CW_L, PM_SSB_U, PM_SSB_L, PM_DIG_U, PM_AM, PM_FM}) {
    if (mode == known) return true;
  }
  return false;
}

bool InRange(int64_t frequencyHz) {
  return frequencyHz >= kLowestHz && frequencyHz <= kHighestHz;
}

}  // namespace

SimulatedRig::SimulatedRig(Scheduler& scheduler, int32_t frequencyHz, int32_t mode,
                           std::function<void(int32_t)> changed)
    : scheduler_(scheduler),
      changed_(std::move(changed)),
      frequencyHz_(frequencyHz),
      frequencyBHz_(frequencyHz),
      mode_(mode) {}

void SimulatedRig::Tune(int32_t frequencyHz) {
  frequencyHz_ = frequencyHz;
  Show();
}

void SimulatedRig::Drift(int32_t hertzPerSecond) {
  driftHertz_ = hertzPerSecond;
  drift_.Cancel();
  if (driftHertz_ != 0) drift_ = scheduler_.After(kDriftStep, [this] { DriftStep(); });
}

void SimulatedRig::DriftStep() {
  const int64_t next = frequencyHz_ + int64_t{driftHertz_} * kDriftStep.count() / 1000;
  if (InRange(next)) Tune(static_cast<int32_t>(next));
  drift_ = scheduler_.After(kDriftStep, [this] { DriftStep(); });
}

void SimulatedRig::Vanish() {
  reachable_ = false;
  report_.Cancel();
  if (link_.state != RigLink::State::Off) Lose();
}

void SimulatedRig::Lose() {
  SetState(RigLink::State::Reconnecting);
  link_.retryInSeconds = kRetrySeconds;
  countdown_ = scheduler_.After(Milliseconds(1000), [this] { CountDown(); });
}

void SimulatedRig::CountDown() {
  link_.retryInSeconds = link_.retryInSeconds > 1 ? link_.retryInSeconds - 1 : kRetrySeconds;
  changed_(0);
  countdown_ = scheduler_.After(Milliseconds(1000), [this] { CountDown(); });
}

void SimulatedRig::ComeBack() {
  reachable_ = true;
  if (link_.state != RigLink::State::Off) Open();
}

void SimulatedRig::Open() {
  countdown_.Cancel();
  link_.retryInSeconds = 0;
  if (!reachable_) return Lose();
  if (std::exchange(releaseWanted_, false)) transmitting_ = false;
  SetState(RigLink::State::Linked);
  Show();
}

void SimulatedRig::Close() {
  countdown_.Cancel();
  report_.Cancel();
  link_ = RigLink();
}

RigLink SimulatedRig::Link() const {
  return link_;
}

std::string SimulatedRig::StatusStr() const {
  if (link_.state == RigLink::State::Off) return "Disabled";
  return Linked() ? "On-line" : "Port is not available";
}

std::string SimulatedRig::RigType() const {
  return "Simulated rig";
}

bool SimulatedRig::SetFreq(int32_t frequencyHz) {
  return WriteFrequency(frequencyHz_, frequencyHz);
}

bool SimulatedRig::SetFreqA(int32_t frequencyHz) {
  return WriteFrequency(frequencyHz_, frequencyHz);
}

bool SimulatedRig::SetFreqB(int32_t frequencyHz) {
  return WriteFrequency(frequencyBHz_, frequencyHz);
}

bool SimulatedRig::WriteFrequency(int32_t& target, int32_t frequencyHz) {
  if (!Linked() || !InRange(frequencyHz)) return false;
  target = frequencyHz;
  Show();
  return true;
}

bool SimulatedRig::SetMode(int32_t mode) {
  if (!Linked() || !IsMode(mode)) return false;
  mode_ = mode;
  Show();
  return true;
}

bool SimulatedRig::SetTx(int32_t value) {
  if (value == PM_RX && !Linked()) {
    releaseWanted_ = true;
    return true;
  }
  if (!Linked() || (value != PM_RX && value != PM_TX)) return false;
  transmitting_ = value == PM_TX;
  report_ = scheduler_.After(kReport, [this] {
    shown_.transmitting = transmitting_;
    changed_(PM_FREQ | (transmitting_ ? PM_TX : PM_RX));
  });
  return true;
}

void SimulatedRig::SetState(RigLink::State state) {
  const bool wasLinked = Linked();
  link_.state = state;
  link_.stale = !Linked() && (wasLinked || link_.stale);
  changed_(0);
}

// The transmit state is left to its own report while one is on its way.
void SimulatedRig::Show() {
  if (!Linked()) return;
  const Shown before = shown_;
  shown_.freq = frequencyHz_;
  shown_.freqB = frequencyBHz_;
  shown_.mode = mode_;
  int32_t params = 0;
  if (shown_.freq != before.freq) params |= PM_FREQ | PM_FREQA;
  if (shown_.freqB != before.freqB) params |= PM_FREQB;
  if (shown_.mode != before.mode) params |= shown_.mode;
  if (params != 0) changed_(params);
  if (shown_.transmitting != transmitting_) SetTx(transmitting_ ? PM_TX : PM_RX);
}

SimulatedRigServer::SimulatedRigServer(Scheduler& scheduler)
    : scheduler_(scheduler),
      open_(std::make_shared<char>()),
      rigs_{MakeRig(1, 14'074'000, PM_SSB_U), MakeRig(2, 7'074'000, PM_SSB_L)} {}

std::unique_ptr<SimulatedRig> SimulatedRigServer::MakeRig(int32_t rigNumber, int32_t frequencyHz,
                                                          int32_t mode) {
  return std::make_unique<SimulatedRig>(
      scheduler_, frequencyHz, mode,
      [this, rigNumber](int32_t params) { Changed(rigNumber, params); });
}

std::string SimulatedRigServer::Address(int32_t rigNumber) const {
  return Of(rigNumber) ? addresses_[rigNumber - 1] : std::string();
}

bool SimulatedRigServer::IsAddress(const std::string& text) const {
  const size_t colon = text.rfind(':');
  return colon != std::string::npos && colon != 0;
}

bool SimulatedRigServer::SetAddress(int32_t rigNumber, const std::string& hostAndPort) {
  if (!Of(rigNumber) || !IsAddress(hostAndPort)) return false;
  addresses_[rigNumber - 1] = hostAndPort;
  return true;
}

void SimulatedRigServer::Open(int32_t rigNumber, std::function<void(bool reached)> answered) {
  PostSafely([this, rigNumber, answered = std::move(answered)] {
    SimulatedRig* rig = Of(rigNumber);
    if (rig) rig->Open();
    const bool reached = rig && rig->Link().state == RigLink::State::Linked;
    answered_ = answered_ || reached;
    if (answered) answered(reached);
  });
}

void SimulatedRigServer::Close() {
  for (const auto& rig : rigs_) rig->Close();
  answered_ = false;
  open_ = std::make_shared<char>();
}

int32_t SimulatedRigServer::InterfaceVersion() const {
  return answered_ ? 0x101 : 0;
}

void SimulatedRigServer::ReleaseNow(int32_t rigNumber, int32_t) {
  if (SimulatedRig* rig = Of(rigNumber)) rig->SetTx(PM_RX);
}

SimulatedRig* SimulatedRigServer::Of(int32_t rigNumber) const {
  return rigNumber == 1 || rigNumber == 2 ? rigs_[rigNumber - 1].get() : nullptr;
}

void SimulatedRigServer::Changed(int32_t rigNumber, int32_t params) {
  PostSafely([this, rigNumber, params] {
    if (params != 0) {
      paramsChanged.Raise(rigNumber, params);
    } else {
      statusChanged.Raise(rigNumber);
    }
  });
}

void SimulatedRigServer::PostSafely(std::function<void()> f) {
  scheduler_.Post([weak = std::weak_ptr(open_), f = std::move(f)] {
    if (weak.lock()) f();
  });
}

}  // namespace velt
