#include "rig/rig.h"

namespace velt {

Rig::Rig(RigControls& form, OmniRigForm& dialogForm, const Ports& ports,
         OmniRigLink::Questions questions, const ShowMessage& showMessage)
    : display(form, state, engine, current),
      guard(ports.server, ports.scheduler),
      control(form, state, current, display, ports.scheduler, showMessage),
      ptt(form, state, current, control, display, guard),
      link(form, state, current, ports.server, display, ports.prompts, questions),
      menus(form, state, current, control, ptt, ports.prompts),
      dialog(dialogForm,
             {ports.server, link, current, guard, state, ports.prompts, ports.scheduler}) {
  guard.showMessage = showMessage;
  guard.ended = [this](int32_t rigNumber) { ptt.TransmissionEnded(rigNumber); };
  link.leaving = [this](bool closing) { ptt.LeaveRig(closing); };
  link.openDialog = [this] { dialog.Open(); };
  link.onEvent = [this](int32_t) {
    guard.Check();
    dialog.Refresh();
  };
  menus.openDialog = [this] { dialog.Open(); };
}

}  // namespace velt
