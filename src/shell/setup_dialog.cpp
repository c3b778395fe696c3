#include "shell/setup_dialog.h"

#include <algorithm>

#include "text/error_text.h"
#include "text/formats.h"
#include "text/numbers.h"

namespace velt {
namespace {

// The list of sound inputs follows what is plugged in.
constexpr Milliseconds kLookEvery{500};

constexpr int32_t kNormalPeriodMs = 25;
constexpr int32_t kSlowPeriodMs = 50;
constexpr int kTypeMismatch = 13;

// What a field's number may be.
struct Limits {
  double least;
  bool leastIncluded;
  double most;
  bool whole;
  bool Hold(double number) const {
    return number <= most && (leastIncluded ? number >= least : number > least);
  }
};
constexpr std::array<Limits, 5> kLimits{{{0, false, 100, true},
                                         {0, false, 20, false},
                                         {0, false, 50, false},
                                         {0, true, 99, true},
                                         {0, false, 10, true}}};

int32_t Whole(double number) {
  return RoundHalfEven(number).value_or(0);
}

// 0, or which of the fields is the last bad one: -1 to -5. A number that is good only until it is
// rounded is none.
int ErrorCode(const std::array<double, 5>& numbers) {
  int code = 0;
  for (size_t i = 0; i < numbers.size(); ++i) {
    const double number = numbers[i];
    const double kept = kLimits[i].whole ? Whole(number) : static_cast<float>(number);
    if (!kLimits[i].Hold(number) || !kLimits[i].Hold(kept)) code = -static_cast<int>(i) - 1;
  }
  return code;
}

std::optional<double> Number(std::string text) {
  std::ranges::replace(text, ',', '.');
  return ParseNumber(text);
}

int32_t PositionOf(const ListBox& list, const std::string& text) {
  const std::vector<std::string>& items = list.items;
  const auto found = std::ranges::find(items, text);
  return found == items.end() ? -1 : static_cast<int32_t>(found - items.begin());
}

}  // namespace

SetupDialog::SetupDialog(MenuItem& opener, const Parts& parts, const Ports& ports)
    : parts_(parts), ports_(ports) {
  SetupForm& form = parts_.form;
  connections_ += opener.clicked.Listen([this] { Open(); });
  connections_ += form.Window.closeAsked.Listen([this] { Close(); });
  connections_ += form.Command1.clicked.Listen([this] { parts_.colorDialog.Open(); });
  connections_ += form.Command2.clicked.Listen([this] { Close(); });
  connections_ += form.Command3.clicked.Listen([this] { Command3_Click(); });
  connections_ += form.Command4.clicked.Listen([this] { Command4_Click(); });
  connections_ += form.Command5.clicked.Listen(
      [this] { parts_.soundTools.OpenVolumeControl(SoundTools::Side::Recording); });
  connections_ += form.cmdFreqs.clicked.Listen([this] { parts_.bandDialog.Open(); });
  connections_ += form.cmdSetpOmniRig.clicked.Listen([this] { parts_.rigDialog.Open(); });
}

void SetupDialog::Open() {
  if (parts_.form.Window.visible) return parts_.form.Window.BringForward();
  lowered_ = parts_.onTop.Lower();
  Form_Load();
  parts_.audio.Look();
  parts_.form.Window.visible = true;
  Tick();
}

void SetupDialog::Close() {
  if (!parts_.form.Window.visible) return;
  parts_.form.Window.visible = false;
  tick_.Cancel();
  lowered_.reset();
}

std::array<TextBox*, SetupDialog::kNumbers> SetupDialog::NumberFields() {
  SetupForm& form = parts_.form;
  return {&form.Text1, &form.Text2, &form.Text3, &form.Text4, &form.Text5};
}

// A value that a list does not have is shown as none, and stays.
void SetupDialog::Form_Load() {
  SetupForm& form = parts_.form;
  const DisplayOptions& options = parts_.display.options;
  form.Text1.text = std::to_string(options.spectrumSensitivity);
  form.Text2.text = SingleText(options.analysis.oscillosSensitivity);
  form.Text3.text = SingleText(options.analysis.meterSensitivity);
  form.Text4.text = std::to_string(options.clearity);
  form.Text5.text = std::to_string(options.analysis.waterSpeed);
  form.Combo1.listIndex = shownResolution_ = options.analysis.precision - 1;
  form.Combo2.listIndex = PositionOf(form.Combo2, std::to_string(parts_.carried.recSampleRateHz));
  const bool isScheme = options.waterGrey >= 0 &&
                        options.waterGrey < static_cast<int32_t>(form.Combo3.items.Get().size());
  form.Combo3.listIndex = isScheme ? options.waterGrey : -1;
  const int32_t periodMs = parts_.captureForm.Timer1.interval;
  form.Combo4.listIndex = periodMs == kNormalPeriodMs ? 0 : periodMs == kSlowPeriodMs ? 1 : -1;
  ShowDevices(parts_.capture.DeviceName());
}

void SetupDialog::ShowDevices(const std::string& chosen) {
  ListBox& list = parts_.form.cmbDevices;
  devices_ = parts_.audio.Offered(chosen);
  std::vector<std::string> items;
  for (const AudioDevice& device : devices_) items.push_back(device.description);
  list.items = items;
  const auto found = std::ranges::find(devices_, chosen, &AudioDevice::name);
  list.listIndex = static_cast<int32_t>(found - devices_.begin());
}

std::string SetupDialog::ChosenDevice() const {
  return devices_.at(static_cast<size_t>(parts_.form.cmbDevices.listIndex.Get())).name;
}

void SetupDialog::Tick() {
  tick_ = ports_.scheduler.After(kLookEvery, [this] {
    ShowDevices(ChosenDevice());
    Tick();
  });
}

void SetupDialog::Command3_Click() {
  const std::optional<Numbers> numbers = Read();
  if (!numbers) return;
  if (const int code = ErrorCode(*numbers); code != 0) {
    NumberFields().at(static_cast<size_t>(-code - 1))->SetFocus();
    return ports_.prompts.Tell(
        {.title = "Error entered value",
         .text = "Please enter the correct value(s), or check the decimal sign...",
         .icon = BoxIcon::Exclamation},
        {});
  }
  Apply(*numbers);
  Close();
}

// Without a value when a field has none; then the user was told.
std::optional<SetupDialog::Numbers> SetupDialog::Read() {
  Numbers numbers{};
  for (size_t i = 0; const TextBox* field : NumberFields()) {
    const std::optional<double> number = Number(field->text);
    if (!number) {
      field->SetFocus();
      ports_.prompts.Tell({.title = "Err values " + std::to_string(kTypeMismatch),
                           .text = "Please check entered values, check decimal separator...\r\n"
                                   "Invalid use of characters or values.",
                           .icon = BoxIcon::Exclamation},
                          {});
      return std::nullopt;
    }
    numbers.at(i++) = *number;
  }
  return numbers;
}

void SetupDialog::Apply(const Numbers& numbers) {
  DisplayOptions& options = parts_.display.options;
  options.spectrumSensitivity = Whole(numbers[0]);
  options.Slider_Change();
  options.analysis.oscillosSensitivity = static_cast<float>(numbers[1]);
  options.analysis.meterSensitivity = static_cast<float>(numbers[2]);
  // The menu may have chosen another one beside the dialog.
  const int32_t resolution = parts_.form.Combo1.listIndex;
  if (resolution != shownResolution_) options.SetPrecision(resolution + 1);
  options.clearity = static_cast<int16_t>(Whole(numbers[3]));
  options.analysis.waterSpeed = static_cast<int16_t>(Whole(numbers[4]));
  ApplyLists();
  parts_.layout.Form_Resize();
  parts_.serial.ReadRS232();
}

void SetupDialog::ApplyLists() {
  const SetupForm& form = parts_.form;
  if (const int32_t rate = form.Combo2.listIndex; rate >= 0) {
    const std::string& text = form.Combo2.items.Get().at(static_cast<size_t>(rate));
    parts_.carried.recSampleRateHz = ParseWhole(text).value_or(parts_.carried.recSampleRateHz);
  }
  DisplayOptions& options = parts_.display.options;
  if (const int32_t scheme = form.Combo3.listIndex; scheme >= 0) {
    options.waterGrey = static_cast<int16_t>(scheme);
  }
  options.InitWaterColor();
  if (const int32_t timing = form.Combo4.listIndex; timing >= 0) {
    parts_.capture.scanFreqMs = timing == 0 ? kNormalPeriodMs : kSlowPeriodMs;
    parts_.captureForm.Timer1.interval = parts_.capture.scanFreqMs;
  }
  parts_.audio.Choose(ChosenDevice());
}

void SetupDialog::Command4_Click() {
  ports_.prompts.Ask({.title = "Reset",
                      .text = "Are you sure to reset all values to their default settings?",
                      .icon = BoxIcon::Question},
                     [this](bool yes) {
                       if (yes) Reset();
                     });
}

void SetupDialog::Reset() {
  if (const int error = parts_.settings.Reset()) {
    return ports_.prompts.Tell(
        {.title = "Reset",
         .text = "The settings could not be deleted: " + ErrorText(error) + ".",
         .icon = BoxIcon::Exclamation},
        {});
  }
  reset_ = true;
  // In this run only: the file of presets is the user's work and stays.
  parts_.presets.PresetDefaults();
  parts_.panel.ShowModes();
  parts_.panel.UpdatePresets(0, 0, true);
  ports_.prompts.Tell({.title = "Reset",
                       .text = "All setting now restored. VELT-SA will now close.",
                       .icon = BoxIcon::Information},
                      [this] { endWanted.Raise(); });
}

}  // namespace velt
