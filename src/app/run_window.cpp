#include "app/run_window.h"

#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "app/adapters.h"
#include "app/system.h"
#include "text/paths.h"
#include "ui/main_window.h"
#include "ui/omnirig_window.h"
#include "ui/qt_text.h"

namespace velt {
namespace {

Installation Where(const Options& options) {
  Installation where;
  where.version = {VELT_VERSION_MAJOR, VELT_VERSION_MINOR, VELT_VERSION_REVISION};
  where.programFolder = ProgramFolder();
  const char* variable = std::getenv("VELT_ENGINE_FOLDER");
  if (!options.engineFolder.empty()) {
    where.engineFolder = options.engineFolder;
  } else if (variable != nullptr && *variable != '\0') {
    where.engineFolder = TextPath(variable);
  } else {
    where.engineFolder = where.programFolder;
  }
  return where;
}

// Shows the reset's message; the program ends when it was dismissed.
int TellReset(QApplication& application, Adapters& adapters) {
  adapters.Ports().prompts.Tell(
      {"VELT-SA", "Please restart VELT-SA\r\nAll setting now restored to their defaults.",
       BoxIcon::Information},
      [&application] { application.quit(); });
  return application.exec();
}

// False when the picture could not be written.
bool TakePicture(MainWindow& window, const std::filesystem::path& file) {
  if (file.empty()) return true;
  window.SyncNow();
  if (window.grab().save(ToQt(PathText(file)), "PNG")) return true;
  std::fprintf(stderr, "velt-sa: the picture could not be written to %s\n", PathText(file).c_str());
  return false;
}

}  // namespace

int RunWindow(QApplication& application, const Options& options, GuardianSpawn guardian) {
  application.setQuitOnLastWindowClosed(false);
  const auto adapters = MakeAdapters(options, std::move(guardian));
  const bool asks = options.run != Options::Run::Headless && !options.demo;
  Program program(adapters->Ports(), Where(options),
                  asks ? OmniRigLink::Questions::Asked : OmniRigLink::Questions::Never);
  program.capture.deviceName = options.audioDevice;
  program.settings.addressesOfThisRun = options.rigAddresses;

  RunOptions run;
  run.resetSettings = options.run == Options::Run::Reset;
  run.exemptFromSingleInstance = options.demo;
  run.startAnalyser = options.demo || !options.input.empty();
  run.dataFolder = options.dataFolder;
  switch (program.startup.Run(run)) {
    case Startup::Result::AnotherInstance:
      return 0;
    case Startup::Result::SettingsReset:
      return TellReset(application, *adapters);
    case Startup::Result::Running:
      break;
  }

  MainWindow window(program.form, [&program]() -> const Raster& { return program.tick.Shown(); });
  adapters->SetOwner(&window);
  const OmniRigWindow omniRigWindow(program.catForm, &window);
  window.onClose = [&program](bool& cancel) { program.shutdown.Form_Unload(cancel); };
  program.menuOpener.focusScope = [&window] { window.FocusScope(); };

  int exitCode = 0;
  program.shutdown.endProgram = [&application] { application.quit(); };
  // Every way of asking the program to end closes the window.
  const auto close = [&program] {
    bool cancel = false;
    program.shutdown.Form_Unload(cancel);
  };
  adapters->WatchForEnd(close);

  window.show();
  window.FocusScope();
  if (options.run == Options::Run::Headless) {
    QTimer::singleShot(options.seconds * 1000, Qt::PreciseTimer, &window, [&] {
      if (!TakePicture(window, options.screenshot)) exitCode = 1;
      close();
    });
  }
  application.exec();
  return exitCode;
}

}  // namespace velt
