#include "presets/preset_panel.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>
#include <vector>

#include "text/formats.h"
#include "text/numbers.h"

namespace velt {
namespace {

constexpr double kLeastKilohertz = 10;  // a number has to be above it to be taken as a frequency
constexpr std::array<int32_t, 6> kStepsHz{-10, -1000, -1'000'000, 1'000'000, 1000, 10};

std::vector<std::string> SplitAtCommas(const std::string& text) {
  std::vector<std::string> parts;
  size_t begin = 0;
  for (size_t comma = text.find(','); comma != std::string::npos; comma = text.find(',', begin)) {
    parts.push_back(text.substr(begin, comma - begin));
    begin = comma + 1;
  }
  parts.push_back(text.substr(begin));
  return parts;
}

// As short as it is exact to the hertz: "7074.5".
std::string KilohertzText(double kilohertz) {
  std::string text = FixedText(kilohertz, 3);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text;
}

// For a caption, where a single "&" would mark the access letter instead of being shown.
std::string AsCaption(const std::string& text) {
  std::string caption;
  for (const char c : text) caption.append(c == '&' ? 2 : 1, c);
  return caption;
}

}  // namespace

PresetPanel::PresetPanel(const Parts& parts) : parts_(parts) {
  PanelControls& form = parts_.form;
  connections_ += parts_.displayForm.chkExpand.value.changed.Listen([this] { chkExpand_Click(); });
  connections_ +=
      form.mnuExpandedRigControl.clicked.Listen([this] { mnuExpandedRigControl_Click(); });
  for (auto& [index, button] : form.optBandsFreq) {
    connections_ += button->mouseDown.Listen(
        [this, band = index](int mouseButton) { optBandsFreq_MouseDown(band, mouseButton); });
  }
  for (auto& [index, button] : form.optDefFreqs) {
    connections_ += button->mouseDown.Listen(
        [this, preset = index](int mouseButton) { optDefFreqs_MouseDown(preset, mouseButton); });
  }
  for (auto& [index, button] : form.cmdFreqSteps) {
    connections_ += button->clicked.Listen([this, i = index] { cmdFreqSteps_Click(i); });
  }
  ListBox& box = form.cmbPresetMode;
  connections_ += box.listIndex.changed.Listen([this, &box] {
    const auto chosen = static_cast<size_t>(box.listIndex.Get());
    if (box.listIndex < 0 || chosen >= box.items.Get().size()) return;
    box.text = box.items.Get()[chosen];
    cmbPresetMode_Click();
    // So that the same entry can be chosen again.
    ShowMode(box.text);
  });
  connections_ += form.txtManualFrequency.entered.Listen([this] { txtManualFrequency_KeyPress(); });
  connections_ += form.cmdokman.clicked.Listen([this] { txtManualFrequency_KeyPress(); });
  form.picExpand.visible = false;
  ShowModes();
  UpdatePresets(0, 0, true);
}

void PresetPanel::ShowModes() {
  parts_.form.cmbPresetMode.items = SplitAtCommas(parts_.presets.PresetModeList);
}

void PresetPanel::UpdatePresets(int16_t intBand, int16_t, bool updateFull) {
  PresetTable& presets = parts_.presets;
  if (updateFull) {
    presets.SelectedBand = presets.SelectedPreset = 0;
    for (int32_t band = 0; band < PresetTable::kBands; ++band) ShowTitle(band);
    return ShowPresets(0);
  }
  if (intBand < 0 || intBand >= PresetTable::kBands) return;
  ShowTitle(intBand);
  ShowPresets(intBand);
  for (auto& [band, button] : parts_.form.optBandsFreq) {
    button->value = band == presets.SelectedBand;
  }
  ShowMode(presets.Cell(intBand, PresetTable::kFirstMode + presets.SelectedPreset));
}

void PresetPanel::ShowTitle(int32_t band) {
  const std::string title = AsCaption(parts_.presets.Cell(band, PresetTable::kTitle));
  parts_.form.optBandsFreq[band].caption = title;
  parts_.rigForm.mnuBands[10 * band].caption = title;
}

void PresetPanel::ShowPresets(int32_t band) {
  for (auto& [preset, button] : parts_.form.optDefFreqs) {
    button->caption = AsCaption(parts_.presets.Cell(band, PresetTable::kFirstFrequency + preset));
  }
}

void PresetPanel::ShowMode(const std::string& mode) {
  ListBox& box = parts_.form.cmbPresetMode;
  const std::vector<std::string>& modes = box.items;
  const auto found = std::ranges::find(modes, mode);
  box.listIndex = -1;
  box.text = mode;
  box.inForce = found == modes.end() ? -1 : static_cast<int32_t>(found - modes.begin());
}

void PresetPanel::SelectPreset(int32_t preset) {
  for (auto& [index, button] : parts_.form.optDefFreqs) button->value = index == preset;
}

void PresetPanel::chkExpand_Click() {
  const bool shown = parts_.displayForm.chkExpand.value != 0;
  parts_.displayForm.chkExpand.caption = shown ? "<" : ">";
  parts_.form.picExpand.visible = shown;
  parts_.form.mnuExpandedRigControl.checked = shown;
  parts_.window.panelShown = shown;
  parts_.window.widthTwips = kStandardWidthTwips + (shown ? kPanelWidthTwips : 0);
  parts_.rigForm.lblFrequencyExpand.caption = parts_.rigForm.lblFrequency.caption;
  parts_.displayForm.Scope.SetFocus();
}

void PresetPanel::mnuExpandedRigControl_Click() {
  parts_.displayForm.chkExpand.UserPick(!parts_.form.mnuExpandedRigControl.checked);
}

void PresetPanel::optBandsFreq_MouseDown(int32_t band, int mouseButton) {
  parts_.presets.SelectedBand = static_cast<int16_t>(band);
  mouseButton > 1 ? EditBand(parts_.presets.SelectedBand) : BandPressed(static_cast<int16_t>(band));
}

void PresetPanel::EditBand(int16_t band) {
  parts_.prompts.Input({.title = "Set Preset Band Title",
                        .prompt = "Enter the name for the preset band:",
                        .initial = parts_.presets.Cell(band, PresetTable::kTitle)},
                       [this, band](const std::optional<std::string>& answer) {
                         if (answer && !answer->empty()) {
                           parts_.presets.Cell(band, PresetTable::kTitle) = *answer;
                           ShowTitle(band);
                         }
                         if (parts_.presets.SelectedBand == band) BandPressed(band);
                       });
}

void PresetPanel::BandPressed(int16_t band) {
  UpdatePresets(band, parts_.presets.SelectedPreset, false);
  for (auto& [preset, button] : parts_.form.optDefFreqs) {
    if (button->value) Tune(button->caption);
  }
}

void PresetPanel::optDefFreqs_MouseDown(int32_t preset, int mouseButton) {
  PresetTable& presets = parts_.presets;
  presets.SelectedPreset = static_cast<int16_t>(preset);
  if (mouseButton > 1) return EditPreset(presets.SelectedBand, presets.SelectedPreset);
  SelectPreset(preset);
  UpdatePresets(presets.SelectedBand, presets.SelectedPreset, false);
  if (Tune(parts_.form.optDefFreqs[preset].caption)) cmbPresetMode_Click();
}

void PresetPanel::EditPreset(int16_t band, int16_t preset) {
  std::string& cell = parts_.presets.Cell(band, PresetTable::kFirstFrequency + preset);
  parts_.prompts.Input({.title = "Set Preset Frequency",
                        .prompt = "Enter the frequency (in kHz):",
                        .initial = ProposedFrequency(cell)},
                       [this, band, preset, &cell](const std::optional<std::string>& answer) {
                         const PresetTable& presets = parts_.presets;
                         const bool given = answer && !answer->empty();
                         const auto kilohertz =
                             given ? parts_.control.FrequencyByHand(*answer) : std::nullopt;
                         if (kilohertz) {
                           cell = KilohertzText(*kilohertz);
                           if (presets.SelectedBand == band) SelectPreset(preset);
                         }
                         UpdatePresets(presets.SelectedBand, presets.SelectedPreset, false);
                       });
}

// The preset's own frequency or, while it has none, the rig's.
std::string PresetPanel::ProposedFrequency(const std::string& kept) const {
  if (LeadingNumber(kept) >= kLeastKilohertz) return kept;
  std::string shown = Without(parts_.rigForm.lblFrequency.caption.Get(), '.');
  if (shown.size() > 2) {
    const std::optional<int32_t> kilohertz =
        RoundHalfEven(LeadingNumber(std::string_view(shown).substr(0, shown.size() - 2)));
    if (kilohertz.value_or(0) > 5) return std::to_string(*kilohertz);
  }
  return shown;
}

bool PresetPanel::Tune(const std::string& kilohertz) {
  const double number = LeadingNumber(kilohertz);
  if (!(number > kLeastKilohertz)) return false;
  parts_.control.SetKilohertz(number, parts_.state.vfo);
  return true;
}

void PresetPanel::cmbPresetMode_Click() {
  parts_.commands.cmbPresetMode_Click();
  const ListBox& box = parts_.form.cmbPresetMode;
  PresetTable& presets = parts_.presets;
  if (box.listIndex < 0 || box.text.Get().empty()) return;
  presets.Cell(presets.SelectedBand, PresetTable::kFirstMode + presets.SelectedPreset) = box.text;
}

void PresetPanel::cmdFreqSteps_Click(int32_t index) {
  parts_.control.StepBy(kStepsHz.at(static_cast<size_t>(index)));
}

void PresetPanel::txtManualFrequency_KeyPress() {
  const std::optional<double> kilohertz =
      parts_.control.SetFrequencyByHand(parts_.form.txtManualFrequency.text, parts_.state.vfo);
  if (kilohertz) ManualFrequencyKHz = RoundHalfEven(*kilohertz).value_or(ManualFrequencyKHz);
}

}  // namespace velt
