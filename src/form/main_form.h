// `Main`: the state of every control of the main window, in groups by the part of the program that
// writes them, and the eight timers.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "form/controls.h"

namespace velt {

inline constexpr int32_t kTwipsPerPixel = 15;
// The window's width without the expanded panel, and what the panel adds, in twips.
inline constexpr int32_t kStandardWidthTwips = 8385;
inline constexpr int32_t kPanelWidthTwips = 4755;

// In twips.
struct WindowSize {
  int32_t width = 0;
  int32_t height = 0;
  bool operator==(const WindowSize&) const = default;
};

// Codes of the keys that act on the whole window.
enum KeyCode : int32_t {
  kKeyPageUp = 33,
  kKeyPageDown = 34,
  kKeyEnd = 35,
  kKeyHome = 36,
  kKeyLeft = 37,
  kKeyUp = 38,
  kKeyRight = 39,
  kKeyDown = 40,
  kKeyF2 = 113,
  kKeyF5 = 116,
  kKeyF9 = 120,
  kKeyF11 = 122,
  kKeyF12 = 123,
};

// The window itself. Position and size are those of its content, in twips.
struct WindowFrame : Control {
  explicit WindowFrame(Form& form);
  Property<std::string> caption;
  Property<int32_t> leftTwips;
  Property<int32_t> topTwips;
  Property<int32_t> widthTwips;   // a change raises Resize
  Property<int32_t> heightTwips;  // a change raises Resize
  Property<WindowSize> least;     // what the user may size it to while it is sizeable
  Property<WindowSize> most;
  Property<bool> panelShown;  // the expanded panel stands beside the display
  Property<bool> placed;      // false: the desktop chooses the position
  Property<bool> minimised;
  Property<bool> sizeable;  // sizeable border; else fixed single
  Property<bool> topMost;
  // 0xFFRRGGBB, or 0 for the desktop's own button face.
  Property<uint32_t> faceColour;
  Event<int32_t> keyDown;  // the platform's virtual key codes, as in KeyCode
};

struct RigControls {
  explicit RigControls(Form& form);
  RigLabel lblFrequency;
  RigLabel lblFrequencyExpand;  // the expanded panel's copy of lblFrequency
  RigLabel lblMode;
  RigLabel lblTRXMode;
  Label Label3;                        // which way modes go: "Velt Mode" or "Rig Mode"
  ControlArray<OptionButton> optTXRX;  // 0 transmit, 1 receive
  Label lblLink;                       // how the link to the rig stands
  Lamp lampLink;                       // the same at a glance
  Image Image3;                        // opens the CAT dialog
  MenuItem mnunorig;
  MenuItem mnuOmniRigStatus;
  MenuItem mnuArduinoFreq;
  MenuItem mnuRig;
  MenuItem mnuSetFreqManual;
  ControlArray<MenuItem> mnuBands;
  MenuItem mnuPTT;
  MenuItem mnuPTT_ON;
  MenuItem mnuPTT_OFF;
  MenuItem mnuModMode;
  ControlArray<MenuItem> mnuModModes;
  Timer tmrFreqcount;
  Timer tmrStatus;
};

struct EngineControls {
  explicit EngineControls(Form& form);
  MenuItem mnurunzoka;
  MenuItem mnuclosezoka;
  MenuItem mnuauto;
  ControlArray<MenuItem> mnuautos;
  Timer Timer3;
  Timer tmrCheckZOKA;
};

// Of the expanded panel, and what opens the presets.
struct PanelControls {
  explicit PanelControls(Form& form);
  Image picExpand;                          // the panel's ground
  ControlArray<OptionButton> optBandsFreq;  // the bands' titles
  ControlArray<OptionButton> optDefFreqs;   // the selected band's presets in kHz
  ControlArray<Button> cmdFreqSteps;
  TextBox txtManualFrequency;  // kHz
  Button cmdokman;             // takes what is typed there
  MenuItem mnuExpandedRigControl;
  MenuItem mnuSetupBands;
  ListBox cmbPresetMode;  // the selected preset's mode
};

struct CaptureControls {
  explicit CaptureControls(Form& form);
  Button StartButton;
  Button StopButton;
  ListBox DevicesBox;
  Image imgStartStop;
  Label lblListen;  // over the empty display: how to begin
  Label lblSource;  // where the sound comes from, while capturing
  // 0 is shown; 1 has how it looks while recording, 2 how while not.
  ControlArray<Image> imgRecOnOff;
  Timer Timer1;
  Timer tmrRec;
};

struct DisplayControls {
  explicit DisplayControls(Form& form);
  ScopeControl Scope;
  SliderControl Slider;   // level
  SliderControl Slider2;  // waterfall gain
  MeterPicture Smeter;
  RigLabel lblFreqDetect;  // stale: there is no sound that could have a peak
  CheckBox chkSpecMode;    // waterfall instead of spectrum
  CheckBox chkExpand;      // expanded rig control panel
  Image picScales;         // the strip under the display
  ControlArray<Label> lblScales;
  MenuItem mnuzokamode;
  ControlArray<MenuItem> mnuzokamodes;
  ControlArray<MenuItem> mnusettings;
  Label lblFreq;    // sound frequency under the cursor: "1234Hz"
  Label lblDelta;   // the same in tens of hertz: "123"
  Label lblCursor;  // radio frequency under the cursor in kHz: "14075.23"
  MenuItem mnudomfreq;
  MenuItem mnuprec;
  ControlArray<MenuItem> mnuprecision;
  MenuItem mnueditcolorshemes;
  MenuItem mnuopenbmp;
  MenuItem mnusavebmp;
  MenuItem mnucopy;
};

struct RecordingControls {
  explicit RecordingControls(Form& form);
  MenuItem mnuRecordOption;  // the record image's menu
  ControlArray<MenuItem> mnuRecordOptions;
  MenuItem mnuopenrec;
  MenuItem mnuspectrogram;
};

struct MessageControls {
  explicit MessageControls(Form& form);
  Label lblMessage;
  NoticeLabel lblNotice;  // what matters until it is over or dismissed
  Timer Timer2;
};

struct ShellControls {
  explicit ShellControls(Form& form);
  WindowFrame Window;
  Button cmdOptions;
  Image Image2;  // opens the File menu
  MenuItem mnuoptions;
  MenuItem mnufile;
  MenuItem mnuscale;  // of the window, in per cent of its design size
  ControlArray<MenuItem> mnuscales;
  MenuItem mnusetupcalib;
  MenuItem mnuprofile;
  MenuItem mnurunSAjar;
  MenuItem mnumanual;
  MenuItem mnumanual1;
  MenuItem mnuabout;
  MenuItem mnuexit;
  MenuItem mnucloseme;
  Timer QuitTimer;
};

struct Main : Form,
              RigControls,
              EngineControls,
              PanelControls,
              CaptureControls,
              DisplayControls,
              RecordingControls,
              MessageControls,
              ShellControls {
  Main();
};

}  // namespace velt
