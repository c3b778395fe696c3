#include "shell/program.h"

namespace velt {

Program::Program(ProgramPorts ports, Installation where, OmniRigLink::Questions questions)
    : installation(std::move(where)),
      platform(form.Window, {ports.system, ports.files, ports.launcher, ports.clock}),
      messages(form),
      notices(form),
      rig(form, catForm, {ports.server, ports.prompts, ports.scheduler}, questions,
          [this](const std::string& text) { messages.Show(text); }),
      bandMenu(form, presets, rig.control, rig.state),
      display(form, form),
      capture({form, form, form},
              {ports.audio, ports.prompts, messages, notices, ports.scheduler, ports.log}),
      tick({form, form, ports.audio, capture, display, rig.state, rig.engine}),
      appearance(form, display, colours),
      layout(form, display),
      settings(ports.settings, {form, platform, installation, display, colours, capture, layout,
                                rig.state, ports.server, rig.guard, carried}),
      startup({form, installation, platform, ports.files, ports.lock, ports.scheduler, ports.log,
               settings, carried, display, colours, capture, layout}),
      shutdown({form, capture, settings, layout, rig.guard, ports.prompts, ports.scheduler}),
      menus(form),
      menuOpener(form, menus, ports.prompts),
      linkReporter_(rig.current, messages, ports.log),
      timers_{TimerDriver(form.Timer1, ports.scheduler),
              TimerDriver(form.Timer2, ports.scheduler),
              TimerDriver(form.Timer3, ports.scheduler),
              TimerDriver(form.tmrStatus, ports.scheduler),
              TimerDriver(form.tmrFreqcount, ports.scheduler),
              TimerDriver(form.tmrRec, ports.scheduler),
              TimerDriver(form.tmrCheckZOKA, ports.scheduler),
              TimerDriver(form.QuitTimer, ports.scheduler)} {
  Connect();
  ConnectRig();
}

void Program::Connect() {
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

void Program::ConnectRig() {
  rig.guard.showNotice = [this](const std::string& text) {
    notices.Raise(NoticeKind::Transmitter, text);
  };
  rig.guard.endNotice = [this](const std::string&) { notices.Over(NoticeKind::Transmitter); };
  rig.display.statusShown = [this] {
    startup.ShowRigInCaption();
    linkReporter_.Note();
  };
  rig.menus.focusScope = [this] {
    if (menuOpener.focusScope) menuOpener.focusScope();
  };
  rig.dialog.settingsChanged = [this] { settings.KeepRigAddresses(); };
  rig.dialog.opening = [this] { platform.KeepOnTop(0); };
  rig.dialog.closed = [this] { platform.KeepOnTop(form.mnusettings[0].checked ? 1 : 0); };

  startup.steps.StartOmniRig = [this](std::function<void()> online, std::function<void()> offLine) {
    rig.link.started = std::move(online);
    rig.link.failed = std::move(offLine);
    rig.link.StartOmniRig();
  };
  startup.steps.rigType = [this] { return rig.current.Exists() ? rig.current->RigType() : ""; };
  startup.steps.ShowRigParams = [this] { rig.display.ShowRigParams(); };
  shutdown.steps.closeDialogs = [this] { rig.dialog.Close(); };
  shutdown.steps.restoreRigFrequency = [this] { return rig.control.RestoreNow(); };
  shutdown.steps.StopOmniRig = [this] { rig.link.StopOmniRig(); };
}

}  // namespace velt
