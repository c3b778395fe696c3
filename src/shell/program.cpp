#include "shell/program.h"

namespace velt {

Program::Program(ProgramPorts ports, Installation where)
    : installation(std::move(where)),
      platform(form.Window, {ports.system, ports.files, ports.launcher, ports.clock}),
      messages(form),
      notices(form),
      display(form, form),
      capture({form, form, form},
              {ports.audio, ports.prompts, messages, notices, ports.scheduler, ports.log}),
      tick({form, form, ports.audio, capture, display, rigState, engineState}),
      appearance(form, display, colours),
      layout(form, display),
      settings(ports.settings, {form, platform, installation, display, colours, capture, layout,
                                rigState, carried}),
      startup({form, installation, platform, ports.files, ports.lock, ports.scheduler, ports.log,
               settings, carried, display, colours, capture, layout}),
      shutdown(
          {form, capture, settings, layout, releases, ports.prompts, ports.scheduler, ports.log}),
      menus(form),
      menuOpener(form, menus, ports.prompts),
      timers_{TimerDriver(form.Timer1, ports.scheduler),
              TimerDriver(form.Timer2, ports.scheduler),
              TimerDriver(form.Timer3, ports.scheduler),
              TimerDriver(form.tmrStatus, ports.scheduler),
              TimerDriver(form.tmrFreqcount, ports.scheduler),
              TimerDriver(form.tmrRec, ports.scheduler),
              TimerDriver(form.tmrCheckZOKA, ports.scheduler),
              TimerDriver(form.QuitTimer, ports.scheduler)} {
  Connect();
}

void Program::Connect() {
  form.lblFrequency.caption.raised = [this] {
    form.lblFrequencyExpand.caption = form.lblFrequency.caption;
  };
  display.relayout = [this] {
    tick.ClearDisplay();
    layout.Form_Resize();
  };
  layout.setStyle = [this](bool bars, bool oscilloscope) { display.SetStyle(bars, oscilloscope); };
  layout.resizeDisplay = [this](int32_t width, int32_t height) {
    tick.SetDisplaySize(width, height);
  };
  layout.opmaak = [this] { appearance.Opmaak(); };
  menuOpener.showPrecision = [this] { display.ShowPrecision(); };
  capture.captureStarted = [this] {
    if (form.mnusettings[2].checked) display.analysis.oscillosMode = true;
  };
}

}  // namespace velt
