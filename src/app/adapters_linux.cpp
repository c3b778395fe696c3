#include <QGuiApplication>
#include <QPointer>
#include <QWidget>
#include <cstdlib>
#include <utility>

#include "adapters/demo/generated_signal.h"
#include "adapters/demo/no_recorder.h"
#include "adapters/demo/paced_input.h"
#include "adapters/files/disk_files.h"
#include "adapters/files/folder_worker.h"
#include "adapters/files/ini_store.h"
#include "adapters/files/memory_store.h"
#include "adapters/guardian/guardian_process.h"
#include "adapters/guardian/no_guardian.h"
#include "adapters/logind/logind_sleep_lock.h"
#include "adapters/pulse/pulse_device_lister.h"
#include "adapters/pulse/pulse_input.h"
#include "adapters/pulse/pulse_player.h"
#include "adapters/pulse/pulse_recorder.h"
#include "adapters/qt/qt_colour_chooser.h"
#include "adapters/qt/qt_file_chooser.h"
#include "adapters/qt/qt_launcher.h"
#include "adapters/qt/qt_log.h"
#include "adapters/qt/qt_pasted_text.h"
#include "adapters/qt/qt_pictures.h"
#include "adapters/qt/qt_prompts.h"
#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/rigctld_server.h"
#include "adapters/rigctld/server_address.h"
#include "adapters/serial/no_serial_port.h"
#include "adapters/serial/qt_serial_port.h"
#include "adapters/simulated_rig/simulated_rig.h"
#include "adapters/soundfile/played_file.h"
#include "adapters/soundfile/repeated_file.h"
#include "adapters/soundfile/sound_file_reader.h"
#include "adapters/soundfile/wav_writer.h"
#include "adapters/system/home_folder.h"
#include "adapters/system/linux_system_info.h"
#include "adapters/system/local_clock.h"
#include "adapters/system/no_sleep_lock.h"
#include "adapters/system/posix_instance_lock.h"
#include "adapters/x11/no_engine_window.h"
#include "adapters/x11/server_life.h"
#include "adapters/x11/window_loss.h"
#include "adapters/x11/x11_engine_window.h"
#include "adapters/x11/x11_pasted_text.h"
#include "app/adapters.h"
#include "app/desktop_session.h"
#include "app/logged_prompts.h"
#include "app/signal_watcher.h"
#include "app/spectrogram_file.h"
#include "text/paths.h"

namespace velt {
namespace {

constexpr uint64_t kDemoSeed = 1;

class LinuxAdapters : public Adapters {
 public:
  LinuxAdapters(const Options& options, GuardianSpawn guardian) {
    if (options.demo) {
      audio_ = std::make_unique<PacedInput<GeneratedSignal>>(
          GeneratedSignal(kDemoSeed), AudioDevice{"demo", "Generated band"}, scheduler_);
    } else if (!options.input.empty()) {
      audio_ = std::make_unique<PacedInput<RepeatedFile>>(
          RepeatedFile(options.input),
          AudioDevice{PathText(options.input), PathText(options.input.filename())}, scheduler_);
    } else {
      audio_ = std::make_unique<PulseInput>(scheduler_);
      soundWriter_ = std::make_unique<WavWriter>(scheduler_);
      recorder_ = std::make_unique<PulseRecorder>(scheduler_, *soundWriter_);
    }
    if (!recorder_) recorder_ = std::make_unique<NoRecorder>(scheduler_);
    if (options.demo) {
      server_ = std::make_unique<SimulatedRigServer>(scheduler_);
      guardian_ = std::make_unique<NoGuardian>();
      sleepLock_ = std::make_unique<NoSleepLock>();
    } else {
      server_ = std::make_unique<RigctldServer>(scheduler_);
      auto process = std::make_unique<GuardianProcess>(scheduler_, std::move(guardian), [this] {
        return !serverLife_ || serverLife_->Answers();
      });
      if (!options.logFile.empty()) process->SetLogFile(PathText(options.logFile));
      guardian_ = std::move(process);
      sleepLock_ = std::make_unique<LogindSleepLock>(scheduler_, log_);
    }
    if (options.KeepsInMemory()) {
      settings_ = std::make_unique<MemoryStore>();
    } else {
      settings_ = std::make_unique<IniStore>(SettingsFile(options), files_, log_);
    }
    // The server that Qt is connected to answers; another one need not.
    if (QGuiApplication::platformName() == "xcb") {
      auto windows = std::make_unique<X11EngineWindow>(scheduler_, options.display);
      session_ = std::make_unique<DesktopSession>(scheduler_, &windows->Server());
      serverLife_ = std::make_unique<ServerLife>(windows->Server());
      engineWindow_ = std::move(windows);
      pasting_ = std::make_unique<X11PastedText>(scheduler_, options.display);
    } else {
      engineWindow_ = std::make_unique<NoEngineWindow>(scheduler_);
      session_ = std::make_unique<DesktopSession>(scheduler_, nullptr);
      pasting_ = std::make_unique<QtPastedText>(scheduler_);
    }
    if (options.demo) {
      serial_ = std::make_unique<NoSerialPort>();
    } else {
      serial_ =
          std::make_unique<QtSerialPort>(scheduler_, DeviceNames(*settings_, options.serialPort));
    }
    if (options.windowless) {
      prompts_ = std::make_unique<LoggedPrompts>(scheduler_, log_);
    } else {
      auto prompts = std::make_unique<QtPrompts>();
      windowPrompts_ = prompts.get();
      prompts_ = std::move(prompts);
    }
  }

  Program::Ports Ports() override {
    return {.scheduler = scheduler_,
            .clock = clock_,
            .audio = *audio_,
            .recorder = *recorder_,
            .server = *server_,
            .guardian = *guardian_,
            .sleepLock = *sleepLock_,
            .engineWindow = *engineWindow_,
            .serial = *serial_,
            .files = files_,
            .settings = *settings_,
            .system = system_,
            .session = *session_,
            .prompts = *prompts_,
            .colours = colours_,
            .launcher = launcher_,
            .pictures = pictures_,
            .soundFile = soundFile_,
            .player = player_,
            .folders = folders_,
            .fileChooser = fileChooser_,
            .spectrogramWriter = spectrogramFile_,
            .lock = lock_,
            .log = log_};
  }

  PastedText& Pasting() override { return *pasting_; }

  void SetOwner(QWidget* owner) override {
    owner_ = owner;
    colours_.SetOwner(owner);
    if (windowPrompts_ != nullptr) windowPrompts_->SetOwner(owner);
    fileChooser_.SetOwner(owner);
  }

  void WatchForEnd(std::function<void()> asked) override {
    signals_ = std::make_unique<SignalWatcher>(asked);
    QObject::connect(qGuiApp, &QGuiApplication::commitDataRequest, signals_.get(), asked);
    if (QGuiApplication::platformName() != "xcb") return;
    windowLoss_ = std::make_unique<WindowLoss>(
        scheduler_, [this] { return owner_ ? static_cast<uint32_t>(owner_->internalWinId()) : 0; });
    connections_ += windowLoss_->lost.Listen(asked);
  }

 private:
  QtLog log_;
  QtScheduler scheduler_;
  LocalClock clock_;
  DiskFiles files_;
  LinuxSystemInfo system_;
  QtColourChooser colours_;
  QtLauncher launcher_;
  QtPictures pictures_;
  SoundFileReader soundFile_;
  PulsePlayer player_{scheduler_, [] { return std::make_unique<PlayedFile>(); }};
  FolderWorker folders_{scheduler_};
  QtFileChooser fileChooser_;
  SpectrogramFile spectrogramFile_;
  PosixInstanceLock lock_;
  std::unique_ptr<AudioInput> audio_;
  std::unique_ptr<SoundWriter> soundWriter_;
  std::unique_ptr<SoundRecorder> recorder_;
  std::unique_ptr<IOmniRigX> server_;
  std::unique_ptr<Guardian> guardian_;
  std::unique_ptr<SleepLock> sleepLock_;
  std::unique_ptr<EngineWindow> engineWindow_;
  // Both use the connection of the engine's window.
  std::unique_ptr<DesktopSession> session_;
  std::unique_ptr<ServerLife> serverLife_;
  std::unique_ptr<PastedText> pasting_;
  std::unique_ptr<SettingsStore> settings_;
  std::unique_ptr<SerialPort> serial_;
  std::unique_ptr<Prompts> prompts_;
  QtPrompts* windowPrompts_ = nullptr;
  std::unique_ptr<SignalWatcher> signals_;
  QPointer<QWidget> owner_;
  std::unique_ptr<WindowLoss> windowLoss_;
  Connections connections_;
};

class PulseLister : public SoundDeviceLister {
 public:
  void List(std::function<void(const SoundDevices&)> told) override {
    lister_.List([told = std::move(told)](const DeviceListing& listing) {
      told({listing.devices, listing.defaultName, listing.error});
    });
  }

 private:
  QtScheduler scheduler_;
  PulseDeviceLister lister_{scheduler_};
};

}  // namespace

std::unique_ptr<Adapters> MakeAdapters(const Options& options, GuardianSpawn guardian) {
  return std::make_unique<LinuxAdapters>(options, std::move(guardian));
}

std::unique_ptr<SoundDeviceLister> MakeSoundDeviceLister() {
  return std::make_unique<PulseLister>();
}

bool IsRigAddress(const std::string& text) {
  return ParseServerAddress(text).has_value();
}

std::filesystem::path DataFolder(const Options& options) {
  return options.dataFolder.empty() ? HomeFolder() / "VELT" : options.dataFolder;
}

std::unique_ptr<InstanceLock> MakeInstanceLock() {
  return std::make_unique<PosixInstanceLock>();
}

std::filesystem::path SettingsFile(const Options& options) {
  if (!options.dataFolder.empty()) {
    return options.dataFolder / "VELT-SA.ini";
  }
  const char* configured = std::getenv("XDG_CONFIG_HOME");
  const std::filesystem::path folder = configured != nullptr && *configured == '/'
                                           ? std::filesystem::path(configured)
                                           : HomeFolder() / ".config";
  return folder / "KALVARO" / "VELT-SA.ini";
}

}  // namespace velt
