#include "form/player_form.h"

namespace velt {

PlayerForm::PlayerForm()
    : Window(*this, "WAV-Player"),
      Drive1(*this),
      Dir1(*this),
      File1(*this),
      lblFolder(*this),
      lblProgress(*this),
      lblProblem(*this),
      prgPlay(*this),
      chkPtt(*this, "Key Rig when Playing"),
      CmdPlay(*this, {{0, "Play"}, {1, "Stop"}}),
      cmdfiles(*this, {{0, "Del"}, {1, "Ren"}, {2, "Run Explorer"}}) {
  chkPtt.toolTip = "This will PTT the rig when playing, and go back to RX when stop is pressed";
  cmdfiles[0].toolTip = "Delete";
  cmdfiles[1].toolTip = "Rename";
  cmdfiles[2].toolTip = "open Explorer from here";
}

}  // namespace velt
