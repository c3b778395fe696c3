// Bands and presets in a real window with a real rig server: chosen, edited, and there again after
// the next start.
#include <gtest/gtest.h>

#include "adapters/rigctld/live_loop.h"
#include "e2e/window_driver.h"

namespace velt {
namespace {

using std::chrono::seconds;

struct PresetWalk : testing::Test {
  DummyRig rig;
  const TempFolder data;
  std::unique_ptr<WindowDriver> window;

  void Start() {
    rig.Ask("F 14250000");
    rig.Ask("M AM 6000");
    window = std::make_unique<WindowDriver>(
        std::vector<std::string>{"--rig1", rig.Address(), "--data-folder", data.Path().string()});
    ASSERT_TRUE(window->Reads(window->form.lblFrequency, 21, "14.250.00"));
  }
  void Close() {
    window->Close();
    ASSERT_TRUE(window->Program().WaitForEnd(seconds(10)));
  }
  // The button of a band or preset, by the left or the right mouse button.
  const OptionButton& Band(int index) const { return window->formWithPanel.optBandsFreq[index]; }
  const OptionButton& Preset(int index) const { return window->formWithPanel.optDefFreqs[index]; }
  void Edit(const OptionButton& button, const char* title, const char* text) const {
    window->ClickAt(button, 10, 3);
    ASSERT_TRUE(window->WaitForWindow(title));
    window->Type(text);
    window->Press({"Return"});
    ASSERT_TRUE(window->WaitForWindow("VELT-SA.*"));
  }
  // What stands in the field with the keyboard, all of which is selected.
  bool FieldHas(const std::string& text) const {
    window->Press({"ctrl+c"});
    return Copied(text);
  }
  bool Copied(const std::string& text) const {
    const std::vector<std::string> paste{"xclip", "-selection", "clipboard", "-o"};
    return WaitUntil([&] { return Output(paste, window->Environment()) == text; }, seconds(5));
  }
};

TEST_F(PresetWalk, BandsAndPresetsTuneTheRigAreEditedAndKept) {
  constexpr const char* kDialog = "Setup Pre-defined Frequencies and Labels";
  data.Write("VELT-SA.ini", "[VELT-SA]\nVersion=3.0.0\nExpander=1\n");
  Start();
  window->Click(Band(1));
  window->Click(Preset(0));
  EXPECT_TRUE(rig.Has("f", "3500000") && rig.Has("m", "LSB"));
  window->Click(Band(4));
  EXPECT_TRUE(rig.Has("f", "14000000"));
  window->Click(Preset(0));
  EXPECT_TRUE(rig.Has("m", "USB"));
  Edit(Band(4), "Set Preset Band Title", "20m DX");
  Edit(Preset(2), "Set Preset Frequency", "14195.5");
  window->Click(Preset(2));
  EXPECT_TRUE(rig.Has("f", "14195500"));

  window->OpenMenu(window->form.cmdOptions);
  window->Press({"Down", "Down", "Right", "Up", "Up", "Return"});
  ASSERT_TRUE(window->WaitForWindow(kDialog));
  window->Type("Top");
  window->Press({"Tab"});
  EXPECT_TRUE(FieldHas("1800"));
  window->Type("1840.5");
  window->Press({"Return"});
  ASSERT_TRUE(window->WaitForWindow("VELT-SA.*"));
  Close();
  EXPECT_NE(ReadText(data / "ExpandPresets.ini").find("\r\nTop\r\n1840.5\r\n"), std::string::npos);

  Start();
  window->Click(Band(0));
  window->Click(Preset(0));
  EXPECT_TRUE(rig.Has("f", "1840500") && rig.Has("m", "LSB"));
  window->ClickAt(Band(4), 10, 3);
  ASSERT_TRUE(window->WaitForWindow("Set Preset Band Title"));
  EXPECT_TRUE(FieldHas("20m DX"));
  window->Press({"Escape"});
  ASSERT_TRUE(window->WaitForWindow("VELT-SA.*"));
  window->Click(Preset(2));
  EXPECT_TRUE(rig.Has("f", "14195500") && rig.Has("m", "USB"));

  // Pasted from another program, and from one that hangs.
  data.Write("copied", "14212.5");
  Process owner({"xclip", "-quiet", "-i", "-selection", "clipboard", (data / "copied").string()},
                {.environment = window->Environment()});
  EXPECT_TRUE(Copied("14212.5"));
  window->ClickAt(Preset(2), 10, 3);
  ASSERT_TRUE(window->WaitForWindow("Set Preset Frequency"));
  window->Press({"ctrl+v", "Return"});
  ASSERT_TRUE(window->WaitForWindow("VELT-SA.*"));
  window->Click(Preset(2));
  EXPECT_TRUE(rig.Has("f", "14212500"));
  owner.Signal(SIGSTOP);
  window->ClickAt(Preset(2), 10, 3);
  ASSERT_TRUE(window->WaitForWindow("Set Preset Frequency"));
  const auto before = std::chrono::steady_clock::now();
  window->Press({"ctrl+v", "Escape"});
  EXPECT_TRUE(window->WaitForWindow("VELT-SA.*"));
  EXPECT_LT(std::chrono::steady_clock::now() - before, seconds(4));
  Close();
}

}  // namespace
}  // namespace velt
