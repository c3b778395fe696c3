#include "shell/settings.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "text/formats.h"
#include "text/numbers.h"
#include "text/paths.h"

namespace velt {
namespace {

const std::string kSection = "VELT-SA";
const std::string kCatSection = "CAT";
const std::array<std::string, 2> kAddressKeys{"Rig1", "Rig2"};

// The keys in the order in which they are written.
constexpr std::array<std::string_view, 41> kWritingOrder{"Path",
                                                         "Version",
                                                         "EXE",
                                                         "Hpos",
                                                         "Vpos",
                                                         "OnTop",
                                                         "UseLines",
                                                         "Slider",
                                                         "AutoRunZOKA",
                                                         "AutoCloseZOKA",
                                                         "AutoStartSA",
                                                         "ScopeColor",
                                                         "GridColor",
                                                         "MenuColor",
                                                         "SpectrumColor",
                                                         "ZOKAMode",
                                                         "OscillosMode",
                                                         "OscillosColor",
                                                         "DominantFrequency",
                                                         "Precision",
                                                         "MeterSensitivity",
                                                         "OscillosSensitivity",
                                                         "SpectrumSensitivity",
                                                         "WaterfallSensitivity",
                                                         "Waterfall",
                                                         "WaterGrey",
                                                         "WaterSpeed",
                                                         "RecSampleRate",
                                                         "OscilloscopeTimeBase",
                                                         "Clearity",
                                                         "cmdZOKAstart",
                                                         "ScreenSize",
                                                         "ScreenWidth",
                                                         "ScreenHeight",
                                                         "BandWidthColor",
                                                         "RigChoice",
                                                         "AbsoluteGridLabels",
                                                         "ScanFreq",
                                                         "ArduinoFreq",
                                                         "Expander",
                                                         "VFO"};

// Each is applied right after it is read, so the order counts: "OnTop" before "UseLines".
constexpr std::array<std::string_view, 39> kReadingOrder{"Version",
                                                         "Hpos",
                                                         "Vpos",
                                                         "OnTop",
                                                         "UseLines",
                                                         "Slider",
                                                         "AutoRunZOKA",
                                                         "AutoCloseZOKA",
                                                         "cmdZOKAstart",
                                                         "ScopeColor",
                                                         "GridColor",
                                                         "MenuColor",
                                                         "SpectrumColor",
                                                         "OscillosColor",
                                                         "BandWidthColor",
                                                         "OscillosMode",
                                                         "AbsoluteGridLabels",
                                                         "ZOKAMode",
                                                         "DominantFrequency",
                                                         "Precision",
                                                         "MeterSensitivity",
                                                         "OscillosSensitivity",
                                                         "SpectrumSensitivity",
                                                         "WaterfallSensitivity",
                                                         "Waterfall",
                                                         "WaterGrey",
                                                         "WaterSpeed",
                                                         "RecSampleRate",
                                                         "OscilloscopeTimeBase",
                                                         "Clearity",
                                                         "ScreenWidth",
                                                         "ScreenHeight",
                                                         "ScreenSize",
                                                         "ScanFreq",
                                                         "AutoStartSA",
                                                         "RigChoice",
                                                         "ArduinoFreq",
                                                         "Expander",
                                                         "VFO"};

// The number at the start of a text as a whole number; text without a number is 0. A number that
// does not fit leaves the target as it was.
std::optional<int32_t> Whole(const std::string& text) {
  return RoundHalfEven(LeadingNumberAnyLocale(text));
}

std::optional<int16_t> Whole16(const std::string& text) {
  return RoundHalfEven16(LeadingNumberAnyLocale(text));
}

float Single(const std::string& text) {
  return static_cast<float>(LeadingNumberAnyLocale(text));
}

bool Boolean(const std::string& text) {
  const std::string lowered = Lowered(Trimmed(text));
  if (lowered == "true") return true;
  if (lowered == "false") return false;
  return LeadingNumberAnyLocale(text) != 0.0;
}

std::function<std::string()> Always(std::string text) {
  return [text = std::move(text)] { return text; };
}

// Rows for the common kinds of targets: `load` and `save` of one value.
std::function<void(const std::string&)> Into(int32_t& target) {
  return [&target](const std::string& text) {
    if (const auto value = Whole(text)) target = *value;
  };
}

std::function<void(const std::string&)> Into(int16_t& target) {
  return [&target](const std::string& text) {
    if (const auto value = Whole16(text)) target = *value;
  };
}

std::function<void(const std::string&)> Into(float& target) {
  return [&target](const std::string& text) { target = Single(text); };
}

std::function<void(const std::string&)> Into(Property<bool>& target) {
  return [&target](const std::string& text) { target = Boolean(text); };
}

template <class T>
std::function<std::string()> From(const T& source) {
  return [&source] { return std::to_string(source); };
}

std::function<std::string()> From(const float& source) {
  return [&source] { return SingleText(source); };
}

std::function<std::string()> From(const Property<bool>& source) {
  return [&source] { return BooleanText(source); };
}

std::function<std::string()> SingleFrom(const Property<int32_t>& source) {
  return [&source] { return SingleText(static_cast<float>(source.Get())); };
}

}  // namespace

Settings::Settings(const Parts& parts, const Ports& ports,
                   std::array<std::string, 2> addressesOfThisRun)
    : to_(parts),
      ports_(ports),
      addressesOfThisRun_(std::move(addressesOfThisRun)),
      rows_(Table()) {
  // What was loaded is saved again unless it was changed: a run without a rig may never apply it.
  connections_ += to_.form.chkExpand.value.changed.Listen(
      [this] { to_.carried.expander = to_.form.chkExpand.value; });
  // "UseLines" may tick the item too, which is no wish of the user's.
  connections_ += to_.form.mnusettings[0].clicked.Listen(
      [this] { to_.carried.onTop = to_.form.mnusettings[0].checked; });
}

void Settings::LoadRegistryStuff() {
  for (const std::string_view key : kReadingOrder) {
    const Row& row = Find(key);
    const auto stored = ports_.store.Get(kSection, std::string(key));
    row.load(stored ? *stored : row.fallback());
  }
  LoadCat();
  to_.scale.Load(ports_.store.Get(WindowScale::kSection, WindowScale::kKey).value_or(""));
  using Audio = AudioChoice;
  to_.audio.Load({ports_.store.Get(Audio::kSection, Audio::kNameKey).value_or(""),
                  ports_.store.Get(Audio::kSection, Audio::kDescriptionKey).value_or("")});
}

int Settings::SaveRegistryStuff() {
  for (const std::string_view key : kWritingOrder) {
    ports_.store.Save(kSection, std::string(key), Find(key).save());
  }
  SaveCat();
  ports_.store.Save(WindowScale::kSection, WindowScale::kKey, to_.scale.Stored());
  const AudioDevice& device = to_.audio.Stored();
  ports_.store.Save(AudioChoice::kSection, AudioChoice::kNameKey, device.name);
  ports_.store.Save(AudioChoice::kSection, AudioChoice::kDescriptionKey, device.description);
  return ports_.store.Commit();
}

void Settings::LoadCat() {
  for (int32_t rig = 1; rig <= 2; ++rig) {
    const auto slot = static_cast<size_t>(rig - 1);
    to_.carried.rigAddresses[slot] = ports_.store.Get(kCatSection, kAddressKeys[slot]).value_or("");
    const std::string& stored = to_.carried.rigAddresses[slot];
    const std::string& address =
        addressesOfThisRun_[slot].empty() ? stored : addressesOfThisRun_[slot];
    if (!address.empty()) ports_.server.SetAddress(rig, address);
  }
  if (const auto minutes = ports_.store.Get(kCatSection, "TransmissionLimitMinutes")) {
    if (const auto value = ParseWhole(*minutes)) to_.guard.SetLimitMinutes(*value);
  }
}

void Settings::SaveCat() {
  for (size_t slot = 0; slot < kAddressKeys.size(); ++slot) {
    const std::string& address = to_.carried.rigAddresses[slot];
    if (!address.empty()) ports_.store.Save(kCatSection, kAddressKeys[slot], address);
  }
  ports_.store.Save(kCatSection, "TransmissionLimitMinutes",
                    std::to_string(to_.guard.LimitMinutes()));
}

void Settings::KeepRigAddresses() {
  for (int32_t rig = 1; rig <= 2; ++rig) {
    const auto slot = static_cast<size_t>(rig - 1);
    const std::string address = ports_.server.Address(rig);
    // What was given for this run only stays so until the user changes it.
    if (address == addressesOfThisRun_[slot]) continue;
    to_.carried.rigAddresses[slot] = address;
    addressesOfThisRun_[slot].clear();
  }
}

const Settings::Row& Settings::Find(std::string_view key) const {
  const auto row =
      std::find_if(rows_.begin(), rows_.end(), [key](const Row& r) { return r.key == key; });
  if (row == rows_.end()) throw std::logic_error("no such setting: " + std::string(key));
  return *row;
}

std::vector<Settings::Row> Settings::Table() {
  std::vector<Row> rows = WindowRows();
  for (auto& row : DisplayRows()) rows.push_back(std::move(row));
  for (auto& row : ProgramRows()) rows.push_back(std::move(row));
  return rows;
}

std::vector<Settings::Row> Settings::WindowRows() {
  WindowFrame& window = to_.form.Window;
  auto& menu = to_.form.mnusettings;
  SavedWindowSize& saved = to_.layout.saved;
  return {
      {"Hpos", Always("-1"),
       [&window](const std::string& text) {
         if (const auto value = Whole(text)) window.leftTwips = *value;
       },
       SingleFrom(window.leftTwips)},
      {"Vpos", Always("-1"),
       [&window](const std::string& text) {
         if (const auto value = Whole(text)) window.topTwips = *value;
         // Moved only when not both are negative; otherwise the desktop finds the place.
         window.placed = window.leftTwips >= 0 || window.topTwips >= 0;
       },
       SingleFrom(window.topTwips)},
      {"OnTop", Always("1"),
       [this, &menu](const std::string& text) {
         to_.carried.onTop = Whole(text).value_or(0) != 0;
         to_.onTop.Load(to_.carried.onTop);
         if (to_.carried.onTop) menu[0].checked = true;
       },
       [this] { return std::string(to_.carried.onTop ? "1" : "0"); }},
      {"UseLines", Always("1"),
       [this, &menu](const std::string& text) {
         const int32_t value = Whole(text).value_or(0);
         // The item whose index equals the value, so 0 checks "Stay on top".
         if (menu.Has(value)) menu[value].checked = true;
         to_.display.options.analysis.useLines = value != 0;
       },
       [this] { return std::string(to_.display.options.analysis.useLines ? "1" : "0"); }},
      {"ScreenSize", Always("False"),
       [this, &menu](const std::string& text) {
         menu[3].checked = Boolean(text);
         to_.display.ApplyBorderRule();
       },
       From(menu[3].checked)},
      {"ScreenWidth", Always("8385"),
       [&saved](const std::string& text) {
         const int32_t value = Whole(text).value_or(0);
         saved.widthTwips = value < WindowLimits::kMinWidth ? WindowLimits::kMaxWidth : value;
       },
       SingleFrom(window.widthTwips)},
      {"ScreenHeight", Always("2430"),
       [&saved](const std::string& text) {
         const int32_t value = Whole(text).value_or(0);
         saved.heightTwips =
             value < WindowLimits::kMinHeight ? WindowLimits::kSavedHeightDefault : value;
       },
       SingleFrom(window.heightTwips)},
      {"AbsoluteGridLabels", Always("True"), Into(menu[4].checked), From(menu[4].checked)},
  };
}

std::vector<Settings::Row> Settings::DisplayRows() {
  DisplayOptions& display = to_.display.options;
  AnalysisSettings& analysis = display.analysis;
  DisplayColours& colours = to_.display.colours;
  auto& menu = to_.form.mnusettings;
  return {
      {"Slider", Always("15"),
       [this](const std::string& text) {
         const int32_t value = Whole(text).value_or(0);
         if (value > 0) to_.form.Slider.Set(value);
       },
       [this] { return std::to_string(to_.form.Slider.value.Get()); }},
      {"ScopeColor", Always("6559488"), Into(colours.scope), From(colours.scope)},
      {"GridColor", Always("0"), Into(colours.grid), From(colours.grid)},
      {"MenuColor", Always(std::to_string(kSystemButtonFace)), Into(colours.menu),
       From(colours.menu)},
      {"SpectrumColor", Always("16744749"), Into(colours.spectrum), From(colours.spectrum)},
      {"OscillosColor", Always("255"), Into(colours.oscilloscope), From(colours.oscilloscope)},
      {"BandWidthColor", Always("16711680"), Into(colours.bandWidth), From(colours.bandWidth)},
      {"ZOKAMode", [this] { return std::string(to_.installation.enginePresent ? "1" : "0"); },
       [&display](const std::string& text) { display.SetZokaMode(Whole(text).value_or(0)); },
       From(analysis.zokaMode)},
      {"OscillosMode", Always("False"),
       [&display, &menu](const std::string& text) {
         menu[2].checked = Boolean(text);
         display.analysis.oscillosMode = menu[2].checked;
       },
       From(menu[2].checked)},
      {"DominantFrequency", Always("True"),
       [this, &display](const std::string& text) {
         to_.form.mnudomfreq.checked = Boolean(text);
         display.analysis.dominantPeak = to_.form.mnudomfreq.checked;
       },
       From(to_.form.mnudomfreq.checked)},
      {"Precision", Always("1"),
       [&display](const std::string& text) { display.SetPrecision(Whole(text).value_or(1)); },
       From(analysis.precision)},
      {"MeterSensitivity", Always("4"), Into(analysis.meterSensitivity),
       From(analysis.meterSensitivity)},
      {"OscillosSensitivity", Always("1"),
       [&analysis](const std::string& text) {
         const float value = Single(text);
         analysis.oscillosSensitivity = value > 0.0F ? value : 1.0F;
       },
       From(analysis.oscillosSensitivity)},
      {"SpectrumSensitivity", Always("10"), Into(display.spectrumSensitivity),
       From(display.spectrumSensitivity)},
      {"WaterfallSensitivity", Always("50"),
       [&display](const std::string& text) {
         const int32_t value = Whole(text).value_or(0);
         display.SetWaterfallSensitivity(value < 1 ? 50 : value);
       },
       From(analysis.waterfallSensitivity)},
      {"Waterfall", Always("0"),
       [&display](const std::string& text) { display.SetWaterfall(Whole(text).value_or(0) != 0); },
       [this] { return std::to_string(to_.form.chkSpecMode.value.Get()); }},
      {"WaterGrey", Always("1"), Into(display.waterGrey), From(display.waterGrey)},
      {"WaterSpeed", Always("3"), Into(analysis.waterSpeed), From(analysis.waterSpeed)},
      {"Clearity", Always("10"), Into(display.clearity), From(display.clearity)},
  };
}

std::vector<Settings::Row> Settings::ProgramRows() {
  auto& autos = to_.form.mnuautos;
  CarriedSettings& carried = to_.carried;
  const auto whenPresent = [this] { return BooleanText(to_.installation.enginePresent); };
  return {
      {"Path", {}, {}, [this] { return PathText(to_.installation.programFolder); }},
      {"Version", Always(""), [&carried](const std::string& text) { carried.version = text; },
       [this] { return to_.installation.version.Text(); }},
      {"EXE", {}, {}, Always("VELT-SA.exe")},
      {"AutoRunZOKA", whenPresent, Into(autos[0].checked), From(autos[0].checked)},
      {"AutoCloseZOKA", whenPresent, Into(autos[1].checked), From(autos[1].checked)},
      {"AutoStartSA", Always("False"), Into(autos[2].checked), From(autos[2].checked)},
      {"cmdZOKAstart", Always("0"), Into(autos[3].checked), From(autos[3].checked)},
      {"RecSampleRate", Always("44100"), Into(carried.recSampleRateHz),
       From(carried.recSampleRateHz)},
      {"OscilloscopeTimeBase", Always("2"), Into(carried.oscilloscopeTimeBase),
       From(carried.oscilloscopeTimeBase)},
      {"ScanFreq", Always("25"),
       [this](const std::string& text) {
         const int32_t value = Whole(text).value_or(0);
         to_.capture.scanFreqMs = value < 1 ? 25 : value;
         // The period is saved from the timer, which must not forget it in a run without capture.
         to_.form.Timer1.interval = to_.capture.scanFreqMs;
       },
       [this] { return std::to_string(to_.form.Timer1.interval.Get()); }},
      {"RigChoice", Always("1"), Into(to_.rig.rigChoice), From(to_.rig.rigChoice)},
      {"ArduinoFreq", Always("0"), Into(to_.form.mnuArduinoFreq.checked),
       From(to_.form.mnuArduinoFreq.checked)},
      {"Expander", Always("1"), Into(carried.expander), From(carried.expander)},
      {"VFO", Always("0"), Into(to_.rig.vfo), From(to_.rig.vfo)},
  };
}

}  // namespace velt
