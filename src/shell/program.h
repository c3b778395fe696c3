// Puts the subsystems together; has no logic of its own.
#pragma once

#include <array>

#include "audio/audio_choice.h"
#include "audio/capture.h"
#include "dialogs/message_line.h"
#include "dialogs/message_window.h"
#include "dialogs/notices.h"
#include "display/color_dialog.h"
#include "display/main_display.h"
#include "engine/engine_process.h"
#include "engine/key_runner.h"
#include "engine/operator_commands.h"
#include "form/about_form.h"
#include "form/bands_form.h"
#include "form/colors_form.h"
#include "form/main_form.h"
#include "form/message_form.h"
#include "form/omnirig_form.h"
#include "form/player_form.h"
#include "form/setup_form.h"
#include "form/spectrogram_form.h"
#include "form/sysinfo_form.h"
#include "platform/installation.h"
#include "platform/on_top.h"
#include "platform/platform_helpers.h"
#include "platform/sound_tools.h"
#include "platform/timer_driver.h"
#include "presets/band_dialog.h"
#include "presets/band_menu.h"
#include "presets/preset_files.h"
#include "presets/preset_panel.h"
#include "presets/preset_table.h"
#include "recording/player.h"
#include "recording/recorder.h"
#include "recording/spectrogram_dialog.h"
#include "rig/rig.h"
#include "shell/about_box.h"
#include "shell/helper_programs.h"
#include "shell/menus.h"
#include "shell/rig_reporter.h"
#include "shell/run_setup.h"
#include "shell/settings.h"
#include "shell/setup_dialog.h"
#include "shell/shortcut_keys.h"
#include "shell/shutdown.h"
#include "shell/startup.h"
#include "shell/system_info_dialog.h"
#include "shell/system_report.h"
#include "shell/window_layout.h"

namespace velt {

class Program {
 public:
  // Everything of the outside that the program uses. All must outlive it.
  struct Ports {
    Scheduler& scheduler;
    Clock& clock;
    AudioInput& audio;
    SoundRecorder& recorder;
    IOmniRigX& server;
    Guardian& guardian;
    SleepLock& sleepLock;
    EngineWindow& engineWindow;
    SerialPort& serial;
    Files& files;
    SettingsStore& settings;
    SystemInfo& system;
    SessionInfo& session;
    Prompts& prompts;
    ColourChooser& colours;
    Launcher& launcher;
    Pictures& pictures;
    SoundFile& soundFile;
    SoundPlayer& player;
    Folders& folders;
    FileChooser& fileChooser;
    SpectrogramWriter& spectrogramWriter;
    InstanceLock& lock;
    Log& log;
  };

  Program(const Ports& ports, RunSetup runSetup);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  const RunSetup setup;
  Main form;
  OmniRigForm catForm;
  BandsForm bandsForm;
  ColorsForm colorsForm;
  SetupForm setupForm;
  AboutForm aboutForm;
  SysInfoForm sysInfoForm;
  MessageForm messageForm;
  SpectrogramForm spectrogramForm;
  PlayerForm playerForm;
  Installation installation;
  CarriedSettings carried;
  PlatformHelpers platform;
  OnTop onTop;
  SoundTools soundTools;
  MessageLine messages;
  Notices notices;
  MessageWindow messageWindow;
  Rig rig;
  KeyRunner engineKeys;
  EngineProcess engine;
  OperatorCommands commands;
  PresetTable presets;
  BandMenu bandMenu;
  PresetPanel panel;
  PresetFiles presetFiles;
  BandDialog bandDialog;
  Capture capture;
  AudioChoice audioChoice;
  MainDisplay display;
  ColorDialog colorDialog;
  SpectrogramDialog spectrogram;
  Recorder recorder;
  Player player;
  WindowLayout layout;
  WindowScale scale;
  Settings settings;
  SetupDialog setupDialog;
  RigReporter reporter;
  Startup startup;
  Shutdown shutdown;
  HelperPrograms helpers;
  ShortcutKeys keys;
  SystemReport systemReport;
  SystemInfoDialog systemInfo;
  AboutBox aboutBox;
  Menus menus;
  MenuOpener menuOpener;

 private:
  std::array<TimerDriver, 9> timers_;
  Connections connections_;
};

}  // namespace velt
