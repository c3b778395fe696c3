// The setup dialog's window over the real dialog logic.
#include "ui/setup_window.h"

#include <QLineEdit>

#include "ui/window_fixture.h"

namespace velt {
namespace {

TEST_F(WindowFixture, TheSetupDialogIsReadAndWorkedByKeyboard) {
  SetupWindow dialog(program->setupForm, &window);
  PressKey(Qt::Key_F9);
  Activate(dialog);
  EXPECT_EQ(TabWalk(18),
            "Spectrum base Sensitivity|Oscilloscope Sensitivity|S-meter Sensitivity|Resolution|"
            "Scan Frequency Timing|User Color Settings: Colors...|"
            "Change user defined frequency: Presets...|CAT OmniRig Configuration: OmniRig...|"
            "Waterfall Clarity|Waterfall Speed|Waterfall stream color|Recording sample rate|"
            "Audio input|Soundcard Audio Input and Output Settings: Volume Control|"
            "Total Reset to Defaults: Reset...|OK|Cancel|Spectrum base Sensitivity");

  // A bad field has the keyboard, with its text to be typed over.
  PressKey(Qt::Key_D, Qt::AltModifier);
  TypeText("0");
  PressKey(Qt::Key_M, Qt::AltModifier);
  TypeText("2,5");
  PressKey(Qt::Key_Return);
  EXPECT_EQ(prompts.told.back().title, "Error entered value");
  EXPECT_EQ(QApplication::focusWidget(), &velt::Find(dialog, "Waterfall Speed"));
  TypeText("7");
  PressKey(Qt::Key_T, Qt::AltModifier);
  PressKey(Qt::Key_Down);
  PressKey(Qt::Key_Return);
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(program->display.options.analysis.waterSpeed, 7);
  EXPECT_EQ(program->display.options.analysis.meterSensitivity, 2.5F);
  EXPECT_EQ(form.Timer1.interval, 50);
}

}  // namespace
}  // namespace velt
