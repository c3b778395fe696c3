// What a report of a fault needs to know about the program and what is around it, as text. Nothing
// in it is secret; the user's home folder is called "~".
#pragma once

#include <filesystem>
#include <string>

#include "form/main_form.h"
#include "platform/installation.h"
#include "platform/platform_helpers.h"
#include "ports/omnirig.h"
#include "ports/session_info.h"
#include "ports/system_info.h"
#include "rig/current_rig.h"
#include "rig/rig_state.h"

namespace velt {

class SystemReport {
 public:
  struct Parts {
    const CaptureControls& captureForm;
    const Installation& installation;
    const PlatformHelpers& platform;
    const RigState& rig;
    const CurrentRig& currentRig;
  };
  struct Ports {
    const SystemInfo& system;
    const SessionInfo& session;
    IOmniRigX& server;
  };
  SystemReport(const Parts& parts, const Ports& ports);

  // A line for each fact that is known at this moment; empty when neither the system nor the
  // session tells anything. Waits for nobody.
  std::string Text() const;

 private:
  std::string CatText(int32_t rigNumber) const;
  std::string PttText() const;
  std::string EngineText() const;
  std::string PathFromHome(const std::filesystem::path& path) const;

  Parts parts_;
  Ports ports_;
};

}  // namespace velt
