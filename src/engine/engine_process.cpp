#include "engine/engine_process.h"

#include <utility>

#include "text/paths.h"

namespace velt {

EngineProcess::EngineProcess(const Parts& parts, const Ports& ports)
    : parts_(parts), ports_(ports) {
  EngineControls& form = parts_.form;
  connections_ += form.mnurunzoka.clicked.Listen([this] { mnurunzoka_Click(); });
  connections_ += form.mnuclosezoka.clicked.Listen([this] { mnuclosezoka_Click(); });
  for (auto& [index, item] : form.mnuautos) {
    connections_ += item->clicked.Listen([&entry = *item] { entry.checked = !entry.checked; });
  }
  connections_ += form.Timer3.ticked.Listen([this] { Timer3_Timer(); });
  connections_ += form.tmrCheckZOKA.ticked.Listen([this] { tmrCheckZOKA_Timer(); });
  connections_ += ports_.window.changed.Listen([this] { tmrCheckZOKA_Timer(); });
}

uint32_t EngineProcess::DetectVELTWindow() const {
  return parts_.installation.DetectVELTWindow(ports_.window);
}

uint32_t EngineProcess::DetectProgWindow(const std::string& title) const {
  return ports_.window.Find(title);
}

void EngineProcess::Begin() {
  const Installation& installation = parts_.installation;
  if (!installation.enginePresent) {
    if (!installation.engineFolderNamed) return;
    return Warn("No velt.jar in " + PathText(installation.engineFolder) + ".");
  }
  if (const std::string why = ports_.window.Unavailable(); !why.empty()) Warn(why);
  tmrCheckZOKA_Timer();
}

void EngineProcess::Warn(const std::string& problem) {
  ports_.log.Write(LogLevel::Warning, "velt.engine", problem);
  parts_.notices.Raise(NoticeKind::Engine, problem);
}

void EngineProcess::mnurunzoka_Click() {
  if (!parts_.installation.enginePresent) return;
  if (DetectVELTWindow() != 0) {
    parts_.keys.Run({ActivateStep{}});
    EndStart();
  } else if (!parts_.messageWindow.Shown()) {
    Start();
  }
}

void EngineProcess::Start() {
  // Where its window cannot be seen there is nothing to wait for.
  if (ports_.window.Unavailable().empty()) {
    started_ = ports_.scheduler.Now();
    parts_.form.Timer3.enabled = true;
    parts_.messageWindow.Show();
    parts_.notices.Over(NoticeKind::Engine);
  }
  ports_.launcher.StartDocument(parts_.installation.engineFolder / "velt.jar", {"java", "-jar"},
                                [this, alive = std::weak_ptr(alive_)](Launcher::Start start) {
                                  if (!alive.expired()) Answered(start);
                                });
}

void EngineProcess::Answered(Launcher::Start start) {
  if (start == Launcher::Start::Started) return;
  EndStart();
  const std::string why =
      start == Launcher::Start::NoProgram
          ? "The engine needs Java, which is not installed (no \"java\" was found).\r\n"
            "Install it (on Debian the package default-jre) and run VELT again."
          : "The program that opens velt.jar could not be started.";
  ports_.log.Write(LogLevel::Warning, "velt.engine", why);
  if (!quitting) ports_.prompts.Tell({"Running VELT", why, BoxIcon::Exclamation}, {});
}

void EngineProcess::mnuclosezoka_Click() {
  if (const uint32_t window = DetectVELTWindow()) {
    ports_.window.Close(window);
  } else if (!quitting) {
    ports_.prompts.Tell({"Closing VELT", "Could not find the VELT-Engine.\r\nRun VELT first.",
                         BoxIcon::Exclamation},
                        {});
  }
}

void EngineProcess::Timer3_Timer() {
  if (DetectVELTWindow() != 0) {
    EndStart();
    Appeared();
    if (parts_.form.mnuautos[3].checked) parts_.keys.Run(StartScript());
    return;
  }
  parts_.rig.Label3.caption = "Rig Mode";
  if (started_ && ports_.scheduler.Now() - *started_ < kStartLimit) return;
  EndStart();
  const std::string title = parts_.installation.EngineTitle();
  Warn("The engine did not appear: no window \"" + title +
       "\". Its title can be named with --engine-title.");
}

void EngineProcess::tmrCheckZOKA_Timer() {
  if (quitting) return;
  const bool present = DetectVELTWindow() != 0;
  if (std::exchange(present_, present) == present) return;
  present ? Appeared() : Vanished();
}

void EngineProcess::EndStart() {
  started_.reset();
  parts_.form.Timer3.enabled = false;
  parts_.messageWindow.Unload();
}

void EngineProcess::Appeared() {
  parts_.notices.Over(NoticeKind::Engine);
  parts_.messageWindow.Unload();
  parts_.rig.Label3.caption = "Velt Mode";
}

void EngineProcess::Vanished() {
  parts_.rig.Label3.caption = "Rig Mode";
  parts_.engine.modeText = "N/A";
  parts_.rig.lblMode.caption = "N/A";
}

}  // namespace velt
