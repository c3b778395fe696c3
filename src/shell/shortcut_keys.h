// The keys that act on the whole main window: function keys, and cursor keys that tune the rig.
#pragma once

#include <cstdint>

#include "form/main_form.h"
#include "rig/rig_control.h"

namespace velt {

class ShortcutKeys {
 public:
  struct Parts {
    Main& form;
    RigControl& control;
  };
  explicit ShortcutKeys(const Parts& parts);

  // `keyCode` as in KeyCode; others do nothing.
  void Form_KeyDown(int32_t keyCode);

 private:
  void TuneByKey(int32_t keyCode);

  Parts parts_;
  Connections connections_;
};

}  // namespace velt
