#include <QGuiApplication>
#include <cstdlib>

#include "adapters/demo/generated_signal.h"
#include "adapters/demo/paced_input.h"
#include "adapters/files/disk_files.h"
#include "adapters/files/ini_store.h"
#include "adapters/files/memory_store.h"
#include "adapters/pulse/pulse_device_lister.h"
#include "adapters/pulse/pulse_input.h"
#include "adapters/qt/qt_launcher.h"
#include "adapters/qt/qt_log.h"
#include "adapters/qt/qt_prompts.h"
#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/rigctld_server.h"
#include "adapters/rigctld/server_address.h"
#include "adapters/simulated_rig/simulated_rig.h"
#include "adapters/soundfile/repeated_file.h"
#include "adapters/system/home_folder.h"
#include "adapters/system/linux_system_info.h"
#include "adapters/system/local_clock.h"
#include "adapters/system/posix_instance_lock.h"
#include "app/adapters.h"
#include "app/logged_prompts.h"
#include "app/signal_watcher.h"
#include "text/paths.h"

namespace velt {
namespace {

constexpr uint64_t kDemoSeed = 1;

class LinuxAdapters : public Adapters {
 public:
  explicit LinuxAdapters(const Options& options) {
    if (options.demo) {
      audio_ = std::make_unique<PacedInput<GeneratedSignal>>(
          GeneratedSignal(kDemoSeed), AudioDevice{"demo", "Generated band"}, scheduler_);
    } else if (!options.input.empty()) {
      audio_ = std::make_unique<PacedInput<RepeatedFile>>(
          RepeatedFile(options.input),
          AudioDevice{PathText(options.input), PathText(options.input)}, scheduler_);
    } else {
      audio_ = std::make_unique<PulseInput>(scheduler_);
    }
    if (options.demo) {
      server_ = std::make_unique<SimulatedRigServer>(scheduler_);
    } else {
      server_ = std::make_unique<RigctldServer>(scheduler_);
    }
    if (options.KeepsInMemory()) {
      settings_ = std::make_unique<MemoryStore>();
      // The generated band would drive the S-meter to its end.
      if (options.demo) settings_->Save("VELT-SA", "MeterSensitivity", "0.12");
    } else {
      settings_ = std::make_unique<IniStore>(SettingsFile(options), files_, log_);
    }
    if (options.windowless) {
      prompts_ = std::make_unique<LoggedPrompts>(scheduler_, log_);
    } else {
      auto prompts = std::make_unique<QtPrompts>();
      windowPrompts_ = prompts.get();
      prompts_ = std::move(prompts);
    }
  }

  ProgramPorts Ports() override {
    return {scheduler_, clock_,    *audio_,   *server_, files_, *settings_,
            system_,    *prompts_, launcher_, lock_,    log_};
  }

  void SetOwner(QWidget* owner) override {
    if (windowPrompts_ != nullptr) windowPrompts_->SetOwner(owner);
  }

  void WatchForEnd(std::function<void()> asked) override {
    signals_ = std::make_unique<SignalWatcher>(asked);
    QObject::connect(qGuiApp, &QGuiApplication::commitDataRequest, signals_.get(), asked);
  }

 private:
  QtLog log_;
  QtScheduler scheduler_;
  LocalClock clock_;
  DiskFiles files_;
  LinuxSystemInfo system_;
  QtLauncher launcher_;
  PosixInstanceLock lock_;
  std::unique_ptr<AudioInput> audio_;
  std::unique_ptr<IOmniRigX> server_;
  std::unique_ptr<SettingsStore> settings_;
  std::unique_ptr<Prompts> prompts_;
  QtPrompts* windowPrompts_ = nullptr;
  std::unique_ptr<SignalWatcher> signals_;
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

std::unique_ptr<Adapters> MakeAdapters(const Options& options) {
  return std::make_unique<LinuxAdapters>(options);
}

std::unique_ptr<SoundDeviceLister> MakeSoundDeviceLister() {
  return std::make_unique<PulseLister>();
}

bool IsRigAddress(const std::string& text) {
  return ParseServerAddress(text).has_value();
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
