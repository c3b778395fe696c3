#include "shell/shortcut_keys.h"

namespace velt {

ShortcutKeys::ShortcutKeys(const Parts& parts) : parts_(parts) {
  connections_ += parts_.form.Window.keyDown.Listen([this](int32_t key) { Form_KeyDown(key); });
}

void ShortcutKeys::Form_KeyDown(int32_t keyCode) {
  const Main& form = parts_.form;
  switch (keyCode) {
    case kKeyF2:
      return form.mnusavebmp.Click();
    case kKeyF5:
      return form.mnucopy.Click();
    case kKeyF9:
      return form.mnusetupcalib.Click();
    case kKeyF11:
      return form.mnurunzoka.Click();
    case kKeyF12:
      return form.mnuclosezoka.Click();
    default:
      // Page Up lies outside: it has never had a function here.
      if (keyCode >= kKeyPageDown && keyCode <= kKeyDown) TuneByKey(keyCode);
  }
}

void ShortcutKeys::TuneByKey(int32_t keyCode) {
  switch (keyCode) {
    case kKeyLeft:
      return parts_.control.Step(-10);
    case kKeyRight:
      return parts_.control.Step(10);
    case kKeyUp:
      return parts_.control.Step(1000);
    case kKeyDown:
      return parts_.control.Step(-1000);
    case kKeyPageDown:
      return parts_.control.Step(-1'000'000);
    default:
      return parts_.control.Step(0);
  }
}

}  // namespace velt
