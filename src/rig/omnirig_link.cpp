#include "rig/omnirig_link.h"

#include <utility>

#include "rig/shown_frequency.h"

namespace velt {

OmniRigLink::OmniRigLink(RigControls& form, RigState& state, CurrentRig& rig, IOmniRigX& server,
                         RigDisplay& display, Prompts& prompts, Questions questions)
    : form_(form),
      state_(state),
      rig_(rig),
      server_(server),
      display_(display),
      prompts_(prompts),
      questions_(questions) {
  connections_ += server_.statusChanged.Listen(
      [this](int32_t rigNumber) { OmniRigEngine_StatusChange(rigNumber); });
  connections_ += server_.paramsChanged.Listen(
      [this](int32_t rigNumber, int32_t params) { OmniRigEngine_ParamsChange(rigNumber, params); });
}

// Nothing of the server's may call back here any more.
OmniRigLink::~OmniRigLink() {
  if (On()) server_.Close();
}

void OmniRigLink::StartOmniRig() {
  Start([this](bool isStarted) {
    if (!isStarted) StartFailed();
  });
}

void OmniRigLink::Start(const std::function<void(bool started)>& answered) {
  if (stage_ == Stage::Started) return answered(Conclude(true));
  if (stage_ != Stage::Off) return;
  stage_ = Stage::Opening;
  server_.Open(ValidChoice(state_.rigChoice), [this, answered](bool reached) {
    if (stage_ == Stage::Opening) answered(Conclude(reached));
  });
}

void OmniRigLink::StopOmniRig() {
  if (rig_.Exists()) {
    if (leaving) leaving(true);
    display_.MarkStale(true);
  }
  rig_.Drop();
  server_.Close();
  stage_ = Stage::Off;
}

void OmniRigLink::SelectRig(int16_t newRigNo) {
  if (stage_ != Stage::Started) return;
  const bool known = newRigNo == 1 || newRigNo == 2;
  if (known && rig_.Exists() && rig_.Number() != newRigNo && leaving) leaving(false);
  state_.rigNumber = newRigNo;
  if (known) {
    OpenIfOff(newRigNo);
    rig_.Take(RigObject(newRigNo), newRigNo);
  }
  display_.ShowRigStatus();
  display_.ShowRigParams();
}

void OmniRigLink::ChooseRig(int16_t rigNo) {
  state_.rigChoice = ValidChoice(rigNo);
  if (stage_ == Stage::Started) return SelectRig(state_.rigChoice);
  if (stage_ == Stage::Off) return;
  stage_ = Stage::Trying;
  OpenIfOff(state_.rigChoice);
  StartIfItAnswersNow(state_.rigChoice);
}

void OmniRigLink::OmniRigEngine_StatusChange(int32_t rigNumber) {
  if (stage_ == Stage::Trying) StartIfItAnswersNow(rigNumber);
  if (rig_.Exists() && rigNumber == state_.rigNumber) display_.ShowRigStatus();
  if (onEvent) onEvent(rigNumber);
}

void OmniRigLink::OmniRigEngine_ParamsChange(int32_t rigNumber, int32_t) {
  if (rig_.Exists() && rigNumber == state_.rigNumber) display_.ShowRigParams();
  if (onEvent) onEvent(rigNumber);
}

RigLink OmniRigLink::Link() const {
  if (!On()) return {};
  return rig_.Exists() ? rig_->Link() : RigObject(ValidChoice(state_.rigChoice)).Link();
}

IRigX& OmniRigLink::RigObject(int32_t rigNumber) const {
  return rigNumber == 2 ? server_.Rig2() : server_.Rig1();
}

// Takes the server's answer. One that is not there is tried on, one of another version is not.
bool OmniRigLink::Conclude(bool reached) {
  const int32_t version = server_.InterfaceVersion();
  if (reached && version >= kLeastVersion && version <= kMostVersion) {
    stage_ = Stage::Started;
    state_.omniRigActive = true;
    SelectRig(ValidChoice(state_.rigChoice));
    if (started) started();
    return true;
  }
  stage_ = reached ? Stage::Off : Stage::Trying;
  state_.omniRigActive = false;
  if (reached) server_.Close();
  return false;
}

void OmniRigLink::StartIfItAnswersNow(int32_t rigNumber) {
  if (rigNumber != ValidChoice(state_.rigChoice)) return;
  const RigLink::State link = RigObject(rigNumber).Link().state;
  if (link == RigLink::State::Linked || link == RigLink::State::Silent) Conclude(true);
}

void OmniRigLink::StartFailed() {
  const bool known = rig_.Exists() && (rig_->GetRxFrequency() >= 1 || rig_->GetTxFrequency() >= 1);
  if (!known) {
    form_.lblFrequency.caption = kRigOffLine;
    // One question in a run is enough; without a user there is nobody to answer it.
    if (std::exchange(questions_, Questions::Never) == Questions::Asked) {
      prompts_.Ask({.title = "OmniRig not Configured for CAT",
                    .text = "OmniRig is not yet configured (or incompatible version number).\n"
                            "Do you want to configure OmniRig now?",
                    .icon = BoxIcon::Information},
                   [this](bool yes) {
                     if (yes && openDialog) openDialog();
                   });
    }
  }
  if (failed) failed();
}

void OmniRigLink::OpenIfOff(int16_t rigNo) {
  if (RigObject(rigNo).Link().state != RigLink::State::Off) return;
  server_.Open(rigNo, [this, rigNo](bool) {
    if (stage_ == Stage::Trying) StartIfItAnswersNow(rigNo);
  });
}

}  // namespace velt
