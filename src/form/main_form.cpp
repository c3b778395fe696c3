#include "form/main_form.h"

namespace velt {

WindowFrame::WindowFrame(Form& form)
    : Control(form),
      caption(*this, "VELT-SA"),
      leftTwips(*this, 0),
      topTwips(*this, 0),
      widthTwips(*this, 0),
      heightTwips(*this, 0),
      least(*this, {}),
      most(*this, {}),
      panelShown(*this, false),
      placed(*this, false),
      minimised(*this, false),
      sizeable(*this, false),
      topMost(*this, false),
      faceColour(*this, 0) {}

RigControls::RigControls(Form& form)
    : lblFrequency(form, "RigOffLine"),
      lblFrequencyExpand(form, "RigOffLine"),
      lblMode(form, "N/A"),
      lblTRXMode(form, "RX"),
      Label3(form, "Rig Mode"),
      optTXRX(form, {{0, "TX"}, {1, "RX"}}),
      lblLink(form),
      lampLink(form),
      Image3(form, "CAT"),
      mnunorig(form, "Setup Rig..."),
      mnuOmniRigStatus(form, "&OmniRig Configuration && Status..."),
      mnuArduinoFreq(form, "Arduino Frequency Counter Mode"),
      mnuRig(form, "Set TRX Frequency"),
      mnuSetFreqManual(form, "&Enter Frequency..."),
      mnuBands(form, {{0, "160m"},
                      {10, "80m"},
                      {20, "40m"},
                      {30, "30m"},
                      {40, "20m"},
                      {50, "17m"},
                      {60, "15m"},
                      {70, "12m"},
                      {80, "10m"},
                      {90, "6m"}}),
      mnuPTT(form, "PTT"),
      mnuPTT_ON(form, "&TX"),
      mnuPTT_OFF(form, "&RX"),
      mnuModMode(form, "mnuModMode"),
      mnuModModes(form, {{1, "LSB"}, {2, "USB"}, {3, "CW"}}),
      tmrFreqcount(form, 150),
      tmrStatus(form, 350, true) {
  mnuArduinoFreq.enabled = false;
  optTXRX[1].value = true;
}

EngineControls::EngineControls(Form& form)
    : mnurunzoka(form, "&Run VELT Engine"),
      mnuclosezoka(form, "&Close VELT Engine"),
      mnuauto(form, "&Automation"),
      mnuautos(form, {{0, "Run VELT Engine"},
                      {1, "Close VELT Engine"},
                      {2, "Start Spectrum Analyzer at startup"},
                      {3, "Start VELT Engine at startup"}}),
      Timer3(form, 700),
      tmrCheckZOKA(form, 600) {}

PanelControls::PanelControls(Form& form)
    : picExpand(form),
      optBandsFreq(form, {{0, ""},
                          {1, ""},
                          {2, ""},
                          {3, ""},
                          {4, ""},
                          {5, ""},
                          {6, ""},
                          {7, ""},
                          {8, ""},
                          {9, ""}}),
      optDefFreqs(form, {{0, ""}, {1, ""}, {2, ""}, {3, ""}, {4, ""}, {5, ""}}),
      cmdFreqSteps(form, {{0, "-10"}, {1, "-1k"}, {2, "-1M"}, {3, "+1M"}, {4, "+1k"}, {5, "+10"}}),
      txtManualFrequency(form),
      cmdokman(form, "Set"),
      mnuExpandedRigControl(form, "Expanded Rig Control View"),
      mnuSetupBands(form, "Setup Frequencies Presets..."),
      cmbPresetMode(form) {}

CaptureControls::CaptureControls(Form& form)
    : StartButton(form, "Start"),
      StopButton(form, "Stop"),
      DevicesBox(form),
      imgStartStop(form, "Play"),
      lblListen(form),
      lblSource(form),
      imgRecOnOff(form, {{0, ""}, {1, "Rec"}, {2, ""}}),
      Timer1(form, 25),
      tmrRec(form, 500) {
  StopButton.enabled = false;
  imgRecOnOff[0].enabled = false;
  imgRecOnOff[1].toolTip = " Recording...(click to stop)";
  imgRecOnOff[2].toolTip = "Record to wav (ON/Off)";
}

DisplayControls::DisplayControls(Form& form)
    : Scope(form),
      Slider(form, 1, 100, 15),
      Slider2(form, 1, 100, 50),
      Smeter(form),
      lblFreqDetect(form),
      chkSpecMode(form, "Waterfall"),
      chkExpand(form, ">"),
      picScales(form),
      lblScales(form, {{0, ""},
                       {1, ""},
                       {2, ""},
                       {3, ""},
                       {4, ""},
                       {5, ""},
                       {6, ""},
                       {7, ""},
                       {8, ""},
                       {9, ""},
                       {10, ""},
                       {11, ""}}),
      mnuzokamode(form, "Spectrum Mode"),
      mnuzokamodes(form, {{0, "Normal"}, {1, "Full Spectrum"}, {69, "Zoom Spectrum"}}),
      mnusettings(form, {{0, "Stay on &top"},
                         {1, "Spectrum Bars"},
                         {2, "&Oscilloscope"},
                         {3, "Remember Screen Size"},
                         {4, "Absolute Grid Labels"}}),
      lblFreq(form),
      lblDelta(form),
      lblCursor(form),
      mnudomfreq(form, "Dominant &Frequency Detection"),
      mnuprec(form, "&Resolution"),
      mnuprecision(form, {{1, "Normal"}, {2, "Median"}, {3, "Averaging"}, {4, "Minimum"}}),
      mnueditcolorshemes(form, "Edit User Colors..."),
      mnuopenbmp(form, "Browse BMP's..."),
      mnusavebmp(form, "&Save BMP..."),
      mnucopy(form, "Copy Spectrum to Clipboard") {}

RecordingControls::RecordingControls(Form& form)
    : mnuRecordOption(form, "Recording"),
      mnuRecordOptions(form, {{0, "Start Recording"},
                              {1, "Play Recorded Files..."},
                              {2, "Open External MS-Recorder..."},
                              {4, "Soundcard Recording Source Selection..."}}),
      mnuopenrec(form, "&Open & Play Recordings..."),
      mnuspectrogram(form, "Spectrogram of a recording...") {}

MessageControls::MessageControls(Form& form)
    : lblMessage(form), lblNotice(form), Timer2(form, 250) {
  lblMessage.visible = false;
  lblNotice.visible = false;
}

ShellControls::ShellControls(Form& form)
    : Window(form),
      cmdOptions(form, "Options"),
      Image2(form, "File"),
      mnuoptions(form, "Options"),
      mnufile(form, "File"),
      mnuscale(form, "Window Scale"),
      mnuscales(form,
                {{100, "100 %"}, {125, "125 %"}, {150, "150 %"}, {175, "175 %"}, {200, "200 %"}}),
      mnusetupcalib(form, "Calibration and Customization..."),
      mnuprofile(form, "Profile Manager..."),
      mnurunSAjar(form, "Run &Java Spectrum Analyzer"),
      mnumanual(form, "&Manual VELT-SA"),
      mnumanual1(form, "Manual VELT-J Engine"),
      mnuabout(form, "&About"),
      mnuexit(form, "E&xit menu"),
      mnucloseme(form, "Close VELT-SA "),
      QuitTimer(form, 1) {}

Main::Main()
    : RigControls(static_cast<Form&>(*this)),
      EngineControls(static_cast<Form&>(*this)),
      PanelControls(static_cast<Form&>(*this)),
      CaptureControls(static_cast<Form&>(*this)),
      DisplayControls(static_cast<Form&>(*this)),
      RecordingControls(static_cast<Form&>(*this)),
      MessageControls(static_cast<Form&>(*this)),
      ShellControls(static_cast<Form&>(*this)) {}

}  // namespace velt
