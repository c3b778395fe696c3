#include "rig/omnirig_link.h"

#include <utility>

#include "rig/shown_frequency.h"

namespace velt {

OmniRigLink::OmniRigLink(const Parts& parts, Questions questions)
    : parts_(parts), questions_(questions) {
  connections_ += parts_.server.statusChanged.Listen(
      [this](int32_t rigNumber) { OmniRigEngine_StatusChange(rigNumber); });
  connections_ += parts_.server.paramsChanged.Listen(
      [this](int32_t rigNumber, int32_t params) { OmniRigEngine_ParamsChange(rigNumber, params); });
}

// Nothing of the server's may call back here any more.
OmniRigLink::~OmniRigLink() {
  if (On()) parts_.server.Close();
}

void OmniRigLink::StartOmniRig(std::function<void(bool)> then) {
  whenStarted_ = std::move(then);
  Start([this](bool started) {
    if (!started) StartFailed();
  });
}

void OmniRigLink::Start(const std::function<void(bool started)>& answered) {
  if (stage_ == Stage::Started) return answered(Conclude(true));
  if (stage_ != Stage::Off) return;
  stage_ = Stage::Opening;
  parts_.server.Open(ValidChoice(parts_.state.rigChoice), [this, answered](bool reached) {
    if (stage_ == Stage::Opening) answered(Conclude(reached));
  });
  changed.Raise();
}

void OmniRigLink::StopOmniRig() {
  if (parts_.rig.Exists()) {
    parts_.ptt.LeaveRig(true);
    parts_.display.MarkStale(true);
  }
  parts_.rig.Drop();
  parts_.server.Close();
  stage_ = Stage::Off;
  whenStarted_ = nullptr;
  changed.Raise();
}

void OmniRigLink::SelectRig(int16_t newRigNo) {
  if (stage_ != Stage::Started) return;
  const bool known = newRigNo == 1 || newRigNo == 2;
  if (known && parts_.rig.Exists() && parts_.rig.Number() != newRigNo) parts_.ptt.LeaveRig(false);
  parts_.state.rigNumber = newRigNo;
  if (known) {
    OpenIfOff(newRigNo);
    parts_.rig.Take(RigObject(newRigNo), newRigNo);
  }
  parts_.display.ShowRigStatus();
  parts_.display.ShowRigParams();
  changed.Raise();
}

void OmniRigLink::ChooseRig(int16_t rigNo) {
  parts_.state.rigChoice = ValidChoice(rigNo);
  if (stage_ == Stage::Started) return SelectRig(parts_.state.rigChoice);
  if (stage_ == Stage::Off) return changed.Raise();
  stage_ = Stage::Trying;
  OpenIfOff(parts_.state.rigChoice);
  StartIfItAnswersNow(parts_.state.rigChoice);
  changed.Raise();
}

void OmniRigLink::OmniRigEngine_StatusChange(int32_t rigNumber) {
  if (stage_ == Stage::Trying) StartIfItAnswersNow(rigNumber);
  if (parts_.rig.Exists() && rigNumber == parts_.state.rigNumber) parts_.display.ShowRigStatus();
  rigHeard.Raise();
}

void OmniRigLink::OmniRigEngine_ParamsChange(int32_t rigNumber, int32_t) {
  if (parts_.rig.Exists() && rigNumber == parts_.state.rigNumber) parts_.display.ShowRigParams();
  rigHeard.Raise();
}

bool OmniRigLink::WritesWait() const {
  return parts_.server.Rig1().WritesWait() || parts_.server.Rig2().WritesWait();
}

RigLink OmniRigLink::Link() const {
  if (!On()) return {};
  return parts_.rig.Exists() ? parts_.rig->Link()
                             : RigObject(ValidChoice(parts_.state.rigChoice)).Link();
}

IRigX& OmniRigLink::RigObject(int32_t rigNumber) const {
  return rigNumber == 2 ? parts_.server.Rig2() : parts_.server.Rig1();
}

// Takes the server's answer. One that is not there is tried on, one of another version is not.
bool OmniRigLink::Conclude(bool reached) {
  const int32_t version = parts_.server.InterfaceVersion();
  if (reached && version >= kLeastVersion && version <= kMostVersion) {
    stage_ = Stage::Started;
    parts_.state.omniRigActive = true;
    SelectRig(ValidChoice(parts_.state.rigChoice));
    // Called last: it may stop the link.
    if (const auto then = std::exchange(whenStarted_, nullptr)) then(true);
    return true;
  }
  stage_ = reached ? Stage::Off : Stage::Trying;
  parts_.state.omniRigActive = false;
  if (reached) parts_.server.Close();
  changed.Raise();
  return false;
}

void OmniRigLink::StartIfItAnswersNow(int32_t rigNumber) {
  if (rigNumber != ValidChoice(parts_.state.rigChoice)) return;
  const RigLink::State link = RigObject(rigNumber).Link().state;
  if (link == RigLink::State::Linked || link == RigLink::State::Silent) Conclude(true);
}

void OmniRigLink::StartFailed() {
  const bool known = parts_.rig.Exists() &&
                     (parts_.rig->GetRxFrequency() >= 1 || parts_.rig->GetTxFrequency() >= 1);
  if (!known) {
    parts_.form.lblFrequency.caption = kRigOffLine;
    // One question in a run is enough; without a user there is nobody to answer it.
    if (std::exchange(questions_, Questions::Never) == Questions::Asked) {
      parts_.prompts.Ask(
          {.title = "OmniRig not Configured for CAT",
           .text = "OmniRig is not yet configured (or incompatible version number).\n"
                   "Do you want to configure OmniRig now?",
           .icon = BoxIcon::Information},
          [this](bool yes) {
            if (yes) configurationWanted.Raise();
          });
    }
  }
  // A copy stays: the server is tried on unless it is one of another version.
  const auto then = whenStarted_;
  if (stage_ == Stage::Off) whenStarted_ = nullptr;
  if (then) then(false);
}

void OmniRigLink::OpenIfOff(int16_t rigNo) {
  if (RigObject(rigNo).Link().state != RigLink::State::Off) return;
  parts_.server.Open(rigNo, [this, rigNo](bool) {
    if (stage_ == Stage::Trying) StartIfItAnswersNow(rigNo);
  });
}

}  // namespace velt
