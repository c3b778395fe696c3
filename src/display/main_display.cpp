#include "display/main_display.h"

namespace velt {

MainDisplay::MainDisplay(const Parts& parts, const Snapshots::Ports& ports)
    : options(parts.form, parts.rigForm),
      tick({.captureForm = parts.captureForm,
            .displayForm = parts.form,
            .capture = parts.capture,
            .options = options,
            .rig = parts.rig,
            .engine = parts.engine,
            .statusFile = parts.statusFile}),
      graticule(parts.form),
      appearance({.scope = parts.form.Scope,
                  .window = parts.window,
                  .options = options,
                  .engine = parts.engine}),
      cursor({.form = parts.form,
              .rig = parts.rigForm,
              .messageTimer = parts.messageTimer,
              .options = options,
              .engine = parts.engine}),
      clicks({.form = parts.form,
              .captureForm = parts.captureForm,
              .rigForm = parts.rigForm,
              .rig = parts.rig,
              .options = options,
              .control = parts.control,
              .commands = parts.commands,
              .messages = parts.messages}),
      snapshots({.form = parts.form,
                 .tick = tick,
                 .options = options,
                 .installation = parts.installation,
                 .platform = parts.platform,
                 .messages = parts.messages},
                ports),
      parts_(parts) {
  DisplayControls& form = parts_.form;
  for (auto& [index, item] : form.mnusettings) {
    connections_ += item->clicked.Listen([this, i = index] { mnusettings_Click(i); });
  }
  for (auto& [index, item] : form.mnuzokamodes) {
    connections_ += item->clicked.Listen([this, i = index] { mnuzokamodes_Click(i); });
  }
  connections_ += form.chkSpecMode.value.changed.Listen([this] { chkSpecMode_Click(); });
  connections_ += parts_.capture.started.Listen([this] {
    if (parts_.form.mnusettings[2].checked) options.analysis.oscillosMode = true;
  });
}

void MainDisplay::Refresh() {
  graticule.Place(options.analysis.zokaMode, parts_.form.mnusettings[4].checked,
                  options.analysis.waterfall);
  appearance.Opmaak(ShownColours());
}

void MainDisplay::TryColours(const std::optional<DisplayColours>& tried) {
  tried_ = tried;
  Refresh();
  tick.DrawAgain();
}

void MainDisplay::ApplyBorderRule() {
  parts_.window.sizeable = parts_.form.mnusettings[3].checked.Get();
  parts_.window.Touch();
}

void MainDisplay::mnusettings_Click(int32_t index) {
  auto& checked = parts_.form.mnusettings[index].checked;
  checked = !checked;
  options.SetStyle(parts_.form.mnusettings[1].checked, parts_.form.mnusettings[2].checked);
  if (index == 3) ApplyBorderRule();
  Refresh();
}

void MainDisplay::mnuzokamodes_Click(int32_t index) {
  options.SetZokaMode(index);
  tick.ClearDisplay();
  Refresh();
}

void MainDisplay::chkSpecMode_Click() {
  options.analysis.waterfall = parts_.form.chkSpecMode.value != 0;
  tick.ClearDisplay();
  Refresh();
}

}  // namespace velt
