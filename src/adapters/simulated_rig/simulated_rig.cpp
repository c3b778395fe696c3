#include "adapters/simulated_rig/simulated_rig.h"

#include <utility>

namespace velt {

namespace {

constexpr int32_t kLowestHz = 10'000;
constexpr int32_t kHighestHz = 2'000'000'000;
constexpr int32_t kRetrySeconds = 5;
// As long as a real server takes to answer, and a real rig until it reports what it was told.
constexpr Milliseconds kAnswer{5};
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

SimulatedRig::SimulatedRig(Scheduler& scheduler, int32_t frequencyHz, int32_t mode)
    : scheduler_(scheduler),
      panel_{.freq = frequencyHz, .freqB = frequencyHz, .mode = mode},
      reportDelay_(kReport),
      answerDelay_(kAnswer) {}

void SimulatedRig::Tune(int32_t frequencyHz) {
  panel_.freq = frequencyHz;
  Show();
}

void SimulatedRig::TuneB(int32_t frequencyHz) {
  panel_.freqB = frequencyHz;
  Show();
}

void SimulatedRig::Select(int32_t mode) {
  panel_.mode = mode;
  Show();
}

void SimulatedRig::Split(int32_t frequencyHz) {
  panel_.split = frequencyHz;
  Show();
}

void SimulatedRig::Key(bool on) {
  transmitting_ = on;
  ReportSoon();
}

void SimulatedRig::Drift(int32_t hertzPerSecond) {
  driftHertz_ = hertzPerSecond;
  drift_.Cancel();
  if (driftHertz_ != 0) drift_ = scheduler_.After(kDriftStep, [this] { DriftStep(); });
}

void SimulatedRig::DriftStep() {
  const int64_t next = panel_.freq + int64_t{driftHertz_} * kDriftStep.count() / 1000;
  if (InRange(next)) Tune(static_cast<int32_t>(next));
  drift_ = scheduler_.After(kDriftStep, [this] { DriftStep(); });
}

void SimulatedRig::Vanish() {
  reachable_ = false;
  if (IsOpen()) Lose();
}

void SimulatedRig::ComeBack() {
  reachable_ = true;
  if (IsOpen()) Connect();
}

void SimulatedRig::BeSilent(bool on) {
  silent_ = on;
  if (Reachable()) Connect();
}

void SimulatedRig::HideTransmitter(bool on) {
  hidesTransmitter_ = on;
  told_ = TxReport::Untold;
  shownTransmitting_ = false;
  ReportSoon();
}

void SimulatedRig::Open() {
  if (!IsOpen()) SetState(RigLink::State::Connecting, RigLink::Cause::None);
}

void SimulatedRig::Decide() {
  if (link_.state == RigLink::State::Connecting) Connect();
}

void SimulatedRig::Connect() {
  if (!reachable_) return Lose();
  countdown_.Cancel();
  hasAnswered_ = true;
  link_.retryInSeconds = 0;
  if (std::exchange(releaseWaits_, false)) Send(PM_RX);
  if (silent_) {
    told_ = TxReport::Untold;
    return SetState(RigLink::State::Silent, RigLink::Cause::RigSilent);
  }
  SetState(RigLink::State::Linked, RigLink::Cause::None);
  Show();
  ReportSoon();
}

void SimulatedRig::Lose() {
  answer_.Cancel();
  refusal_.Cancel();
  report_.Cancel();
  told_ = TxReport::Untold;
  SetState(RigLink::State::Reconnecting, RigLink::Cause::Refused);
  link_.retryInSeconds = kRetrySeconds;
  countdown_ = scheduler_.After(Milliseconds(1000), [this] { CountDown(); });
}

void SimulatedRig::CountDown() {
  link_.retryInSeconds = link_.retryInSeconds > 1 ? link_.retryInSeconds - 1 : kRetrySeconds;
  // No event: a link that is still lost is no news.
  countdown_ = scheduler_.After(Milliseconds(1000), [this] { CountDown(); });
}

void SimulatedRig::Close() {
  countdown_.Cancel();
  answer_.Cancel();
  refusal_.Cancel();
  report_.Cancel();
  told_ = TxReport::Untold;
  hasAnswered_ = false;
  link_ = RigLink();
}

void SimulatedRig::Move() {
  const bool open = IsOpen();
  Close();
  releaseWaits_ = releaseAccepted_ = false;
  shown_ = {};
  if (open) Open();
}

std::string SimulatedRig::StatusStr() const {
  switch (link_.state) {
    case RigLink::State::Off:
      return "Disabled";
    case RigLink::State::Linked:
      return "On-line";
    case RigLink::State::Reconnecting:
      return "Port is not available";
    default:
      return "Rig is not responding";
  }
}

int32_t SimulatedRig::GetTxFrequency() const {
  if (!shownTransmitting_) return 0;
  return shown_.split != 0 ? shown_.split : shown_.freq;
}

bool SimulatedRig::SetFreq(int32_t frequencyHz) {
  return InRange(frequencyHz) && Write("Freq ", &Panel::freq, frequencyHz);
}

bool SimulatedRig::SetFreqA(int32_t frequencyHz) {
  return InRange(frequencyHz) && Write("FreqA ", &Panel::freq, frequencyHz);
}

bool SimulatedRig::SetFreqB(int32_t frequencyHz) {
  return InRange(frequencyHz) && Write("FreqB ", &Panel::freqB, frequencyHz);
}

bool SimulatedRig::SetMode(int32_t mode) {
  return IsMode(mode) && Write("Mode ", &Panel::mode, mode);
}

bool SimulatedRig::Write(const char* name, int32_t Panel::*target, int32_t value) {
  if (!Linked()) return false;
  answeredAt_ = scheduler_.Now() + answerDelay_;
  written.Raise(name + std::to_string(value));
  if (!refusesWrites_) {
    panel_.*target = value;
    Show();
    return true;
  }
  // Shown until the answer comes.
  shown_.*target = value;
  refusal_ = scheduler_.After(kAnswer, [this, isMode = target == &Panel::mode, value] {
    Show();
    writeRefused.Raise({isMode, value});
  });
  return true;
}

bool SimulatedRig::SetTx(int32_t value) {
  if (value != PM_RX && (value != PM_TX || !Linked())) return false;
  releaseAccepted_ = false;
  if (Reachable()) {
    Send(value);
  } else {
    releaseWaits_ = true;
  }
  return true;
}

void SimulatedRig::Send(int32_t transmit) {
  const bool key = transmit == PM_TX;
  const bool refused = key && refusesKeys_;
  answeredAt_ = scheduler_.Now() + answerDelay_;
  written.Raise(key ? "TX" : "RX");
  if (!silent_ && !refused && (key || !ignoresReleases_)) transmitting_ = key;
  answer_ = scheduler_.After(kAnswer, [this, transmit, refused] { Answered(transmit, refused); });
}

void SimulatedRig::Answered(int32_t transmit, bool refused) {
  if (silent_) return;
  ReportSoon();
  if (transmit == PM_RX) {
    releaseAccepted_ = true;
  } else if (refused) {
    keyRefused.Raise();
  }
}

std::optional<ReleaseRecipe> SimulatedRig::Recipe() const {
  if (!Reachable()) return std::nullopt;
  return ReleaseRecipe{};
}

void SimulatedRig::SetState(RigLink::State state, RigLink::Cause cause) {
  const bool wasLinked = Linked();
  link_.state = state;
  link_.cause = cause;
  link_.stale = !Linked() && (wasLinked || link_.stale);
  statusChanged.Raise();
}

void SimulatedRig::Show() {
  if (!Linked()) return;
  const Panel before = std::exchange(shown_, panel_);
  int32_t params = 0;
  if (shown_.freq != before.freq) params |= PM_FREQ | PM_FREQA;
  if (shown_.freqB != before.freqB) params |= PM_FREQB;
  if (shown_.mode != before.mode) params |= shown_.mode != 0 ? shown_.mode : PM_UNKNOWN;
  if (shown_.split != before.split) params |= shown_.split != 0 ? PM_SPLITON : PM_SPLITOFF;
  if (params != 0) paramsChanged.Raise(params);
}

void SimulatedRig::ReportSoon() {
  if (Linked()) report_ = scheduler_.After(reportDelay_, [this] { Report(); });
}

void SimulatedRig::Report() {
  if (!Linked() || hidesTransmitter_) return;
  shownTransmitting_ = transmitting_;
  const TxReport now = transmitting_ ? TxReport::Transmits : TxReport::Receives;
  if (std::exchange(told_, now) != now)
    paramsChanged.Raise(transmitting_ ? PM_FREQ | PM_TX : PM_FREQ | PM_RX);
}

SimulatedRigServer::SimulatedRigServer(Scheduler& scheduler, Capabilities capabilities)
    : scheduler_(scheduler),
      capabilities_(capabilities),
      open_(std::make_shared<char>()),
      rigs_{MakeRig(1, 14'074'000, PM_SSB_U), MakeRig(2, 7'074'000, PM_SSB_L)} {}

std::unique_ptr<SimulatedRig> SimulatedRigServer::MakeRig(int32_t rigNumber, int32_t frequencyHz,
                                                          int32_t mode) {
  auto rig = std::make_unique<SimulatedRig>(scheduler_, frequencyHz, mode);
  connections_ += rig->statusChanged.Listen(
      [=, this] { PostSafely([=, this] { statusChanged.Raise(rigNumber); }); });
  connections_ += rig->paramsChanged.Listen([=, this](int32_t params) {
    PostSafely([=, this] { paramsChanged.Raise(rigNumber, params); });
  });
  connections_ += rig->writeRefused.Listen([=, this](const RefusedWrite& write) {
    PostSafely([=, this] { writeRefused.Raise(rigNumber, write); });
  });
  connections_ +=
      rig->keyRefused.Listen([=, this] { PostSafely([=, this] { keyRefused.Raise(rigNumber); }); });
  return rig;
}

std::string SimulatedRigServer::Address(int32_t rigNumber) const {
  return Of(rigNumber) ? addresses_[rigNumber - 1] : std::string();
}

bool SimulatedRigServer::IsAddress(const std::string& text) const {
  const size_t colon = text.rfind(':');
  return colon != std::string::npos && colon != 0;
}

bool SimulatedRigServer::SetAddress(int32_t rigNumber, const std::string& hostAndPort) {
  SimulatedRig* rig = Of(rigNumber);
  if (!rig || !IsAddress(hostAndPort)) return false;
  if (std::exchange(addresses_[rigNumber - 1], hostAndPort) != hostAndPort) {
    rig->Move();
    PostSafely([rig] { rig->Decide(); });
  }
  return true;
}

void SimulatedRigServer::Open(int32_t rigNumber, std::function<void(bool reached)> answered) {
  SimulatedRig* rig = Of(rigNumber);
  if (rig) rig->Open();
  PostSafely([rig, answered = std::move(answered)] {
    if (rig) rig->Decide();
    if (answered) answered(rig && rig->Reachable());
  });
}

void SimulatedRigServer::Close() {
  for (const auto& rig : rigs_) rig->Close();
  open_ = std::make_shared<char>();
}

int32_t SimulatedRigServer::InterfaceVersion() const {
  return rigs_[0]->HasAnswered() || rigs_[1]->HasAnswered() ? version_ : 0;
}

void SimulatedRigServer::ReleaseNow(int32_t rigNumber, int32_t) {
  SimulatedRig* rig = Of(rigNumber);
  if (rig && rig->Link().state != RigLink::State::Off) rig->SetTx(PM_RX);
}

SimulatedRig* SimulatedRigServer::Of(int32_t rigNumber) const {
  return rigNumber == 1 || rigNumber == 2 ? rigs_[rigNumber - 1].get() : nullptr;
}

void SimulatedRigServer::PostSafely(std::function<void()> f) {
  scheduler_.Post([weak = std::weak_ptr(open_), f = std::move(f)] {
    if (weak.lock()) f();
  });
}

}  // namespace velt
