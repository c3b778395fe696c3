#include "app/run_window.h"

#include <QApplication>
#include <QImage>
#include <QTimer>
#include <cstdlib>

#include "adapters/files/output_file.h"
#include "app/adapters.h"
#include "app/console.h"
#include "app/crash_handler.h"
#include "app/picture_file.h"
#include "app/system.h"
#include "text/paths.h"
#include "ui/main_window.h"
#include "ui/omnirig_window.h"

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
  OutputFile output;
  int error = output.Open(file);
  if (error == 0) error = WritePicture(window.grab().toImage(), output);
  return error == 0 || FailToWrite(file, error) == 0;
}

}  // namespace

int RunWindow(QApplication& application, const Options& options) {
  application.setQuitOnLastWindowClosed(false);
  const auto adapters = MakeAdapters(options);
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
      // A second window is not wanted; somebody who waits for a run's end or picture is told.
      return options.windowless ? Fail("Another VELT-SA of this user is running.") : 0;
    case Startup::Result::SettingsReset:
      return TellReset(application, *adapters);
    case Startup::Result::Running:
      break;
  }
  InstallCrashHandler(program.releases);

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
  RemoveCrashHandler();
  return exitCode;
}

}  // namespace velt
