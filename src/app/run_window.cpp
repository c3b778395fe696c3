#include "app/run_window.h"

#include <QApplication>
#include <QImage>
#include <QTimer>
#include <cstdlib>
#include <utility>

#include "adapters/files/output_file.h"
#include "app/adapters.h"
#include "app/console.h"
#include "app/picture_file.h"
#include "app/system.h"
#include "text/paths.h"
#include "ui/about_window.h"
#include "ui/bands_window.h"
#include "ui/colors_window.h"
#include "ui/main_window.h"
#include "ui/message_view.h"
#include "ui/omnirig_window.h"
#include "ui/paste_filter.h"
#include "ui/player_window.h"
#include "ui/setup_window.h"
#include "ui/spectrogram_window.h"
#include "ui/sysinfo_window.h"

namespace velt {
namespace {

// The engine is started in its folder, from where another one's path would lead elsewhere.
std::filesystem::path FromEverywhere(const std::filesystem::path& folder) {
  std::error_code error;
  const std::filesystem::path whole = std::filesystem::absolute(folder, error);
  return error ? folder : whole.lexically_normal();
}

Installation Where(const Options& options) {
  Installation where;
  where.version = {VELT_VERSION_MAJOR, VELT_VERSION_MINOR, VELT_VERSION_REVISION};
  where.programFolder = ProgramFolder();
  std::error_code unknown;
  where.currentFolder = std::filesystem::current_path(unknown);
  where.documentationFolder = where.programFolder / VELT_DOCUMENTATION_FROM_PROGRAM;
  const char* variable = std::getenv("VELT_ENGINE_FOLDER");
  if (!options.engineFolder.empty()) {
    where.engineFolder = options.engineFolder;
  } else if (variable != nullptr && *variable != '\0') {
    where.engineFolder = TextPath(variable);
  } else {
    where.engineFolder = where.programFolder;
  }
  where.engineFolderNamed = where.engineFolder != where.programFolder;
  where.engineFolder = FromEverywhere(where.engineFolder);
  where.engineTitle = options.engineTitle;
  if (!options.KeepsInMemory()) where.settingsFile = SettingsFile(options);
  return where;
}

RunSetup SetupOf(const Options& options) {
  const bool asks = options.run != Options::Run::Headless && !options.demo;
  return {.installation = Where(options),
          .audioDevice = options.audioDevice,
          .rigAddresses = options.rigAddresses,
          .questions = asks ? OmniRigLink::Questions::Asked : OmniRigLink::Questions::Never,
          .resetSettings = options.run == Options::Run::Reset,
          .exemptFromSingleInstance = options.demo,
          .startAnalyser = options.demo || !options.input.empty(),
          .controlsEngine = !options.windowless,
          .presets = options.KeepsInMemory() ? PresetStore::Keeping::InMemory
                                             : PresetStore::Keeping::OnDisk,
          .dataFolder = options.dataFolder};
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

int RunWindow(QApplication& application, const Options& options, GuardianSpawn guardian) {
  application.setQuitOnLastWindowClosed(false);
  const auto adapters = MakeAdapters(options, std::move(guardian));
  Program program(adapters->Ports(), SetupOf(options));
  switch (program.startup.Run()) {
    case Startup::Result::AnotherInstance:
      // A second window is not wanted; somebody who waits for a run's end or picture is told.
      return options.windowless ? Fail("Another VELT-SA of this user is running.") : 0;
    case Startup::Result::SettingsReset:
      return TellReset(application, *adapters);
    case Startup::Result::Running:
      break;
  }

  MainWindow window(program.form,
                    [&program]() -> const Raster& { return program.display.tick.Shown(); });
  adapters->SetOwner(&window);
  const PasteFilter pasteFilter(adapters->Pasting());
  const OmniRigWindow omniRigWindow(program.catForm, &window);
  const AboutWindow aboutWindow(program.aboutForm, &window);
  const SysInfoWindow sysInfoWindow(program.sysInfoForm, &window);
  const BandsWindow bandsWindow(program.bandsForm, &window);
  const SetupWindow setupWindow(program.setupForm, &window);
  const ColorsWindow colorsWindow(program.colorsForm, &window);
  const MessageView messageView(program.messageForm, &window);
  const PlayerWindow playerWindow(program.playerForm, &window);
  const SpectrogramWindow spectrogramWindow(
      program.spectrogramForm, [&program] { return program.spectrogram.Shown(); }, &window);
  Connections connections;
  connections += window.closing.Listen(
      [&program](bool& cancel) { program.shutdown.Form_Unload(cancel, Shutdown::ClosedBy::User); });
  connections += program.form.Scope.focusWanted.Listen([&window] { window.FocusScope(); });

  int exitCode = 0;
  connections += program.shutdown.ended.Listen([&application] { application.quit(); });
  // Every way of asking the program to end closes the window.
  const auto close = [&program] {
    bool cancel = false;
    program.shutdown.Form_Unload(cancel, Shutdown::ClosedBy::System);
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
