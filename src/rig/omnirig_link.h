// The link to the CAT server: starts and stops it, picks one of its two rigs and turns its events
// into updates of the rig display. Starting takes as long as it takes; a server that cannot be
// reached is tried on, and the link starts by itself when it answers.
#pragma once

#include <cstdint>
#include <functional>

#include "form/main_form.h"
#include "ports/omnirig.h"
#include "ports/prompts.h"
#include "rig/current_rig.h"
#include "rig/ptt.h"
#include "rig/rig_display.h"
#include "rig/rig_state.h"

namespace velt {

class OmniRigLink {
 public:
  // Whether a failed start may put a question to the user.
  enum class Questions { Asked, Never };

  // Versions of the server's interface that are accepted, both ends included.
  static constexpr int32_t kLeastVersion = 0x101;
  static constexpr int32_t kMostVersion = 0x299;

  struct Parts {
    RigControls& form;
    RigState& state;
    CurrentRig& rig;
    IOmniRigX& server;
    RigDisplay& display;
    Ptt& ptt;
    Prompts& prompts;
  };
  OmniRigLink(const Parts& parts, Questions questions);
  ~OmniRigLink();
  OmniRigLink(const OmniRigLink&) = delete;
  OmniRigLink& operator=(const OmniRigLink&) = delete;

  // The user wants to configure the link.
  Event<> configurationWanted;
  // After each event of either rig.
  Event<> rigHeard;
  // It was started, stopped or given another rig, or a start has come to its end.
  Event<> changed;

  // Starts the link. When it fails and no frequency is known, the label shows "RigOffLine" and the
  // user is asked, once in a run, whether to configure it. `then` is called with false when it
  // fails, and with true, once, when it is started, however late; the rig is shown then. After the
  // link was stopped it is not called any more.
  void StartOmniRig(std::function<void(bool started)> then);

  // The same without label and question; `answered` tells whether the link is started. It is not
  // called when the link is stopped before, nor while an earlier start is under way.
  void Start(const std::function<void(bool started)>& answered);

  // The labels keep the last values.
  void StopOmniRig();

  // Takes rig 1 or 2 while the link is started. Another number is kept, so that no event matches
  // it, with the rig object as it was.
  void SelectRig(int16_t newRigNo);

  // Makes rig 1 or 2 the one to start with and selects it, or starts with it, if the link is on.
  void ChooseRig(int16_t rigNo);

  void OmniRigEngine_StatusChange(int32_t rigNumber);
  void OmniRigEngine_ParamsChange(int32_t rigNumber, int32_t params);

  bool Started() const { return stage_ == Stage::Started; }
  // Started, starting or being tried on.
  bool On() const { return stage_ != Stage::Off; }

  // Something that was written to either rig has not been answered yet.
  bool WritesWait() const;

  // How the link to the rig in use, or to the one to start with, stands.
  RigLink Link() const;

 private:
  enum class Stage { Off, Opening, Trying, Started };

  static int16_t ValidChoice(int16_t rigNo) { return rigNo == 2 ? int16_t{2} : int16_t{1}; }
  IRigX& RigObject(int32_t rigNumber) const;
  bool Conclude(bool reached);
  void StartIfItAnswersNow(int32_t rigNumber);
  void StartFailed();
  void OpenIfOff(int16_t rigNo);

  Parts parts_;
  Questions questions_;
  Stage stage_ = Stage::Off;
  std::function<void(bool started)> whenStarted_;  // what StartOmniRig still has to go on with
  Connections connections_;
};

}  // namespace velt
