// The WAV player `FrmSoundPlayer`: plays recordings, on the air where the user wants that, and
// deletes and renames them.
#pragma once

#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>

#include "dialogs/notices.h"
#include "form/player_form.h"
#include "platform/installation.h"
#include "platform/on_top.h"
#include "ports/launcher.h"
#include "ports/prompts.h"
#include "ports/scheduler.h"
#include "ports/sound_player.h"
#include "recording/folder_view.h"
#include "recording/recorder.h"
#include "rig/ptt.h"

namespace velt {

class Player {
 public:
  struct Parts {
    PlayerForm& form;
    Ptt& ptt;
    TransmitGuard& guard;
    Notices& notices;
    OnTop& onTop;
    const Installation& installation;
    const Recorder& recorder;
  };
  struct Ports {
    SoundPlayer& sound;
    Folders& folders;
    const SystemInfo& system;
    Launcher& launcher;
    Prompts& prompts;
    Scheduler& scheduler;
  };
  // `openers` are the menus' items.
  Player(std::initializer_list<MenuItem*> openers, const Parts& parts, const Ports& ports);

  // Shows the player with the recordings' folder; one that is open comes before the other windows.
  void Open();
  // Stops what is played, releases what was keyed for it, and closes the window.
  void Close();

  void CmdPlay_Click(int32_t index);   // 0 play, 1 stop
  void cmdfiles_Click(int32_t index);  // 0 delete, 1 rename, 2 open the WAV folder

 private:
  enum class Stage { Idle, Preparing, KeyedBefore, Playing };

  // An empty name stops.
  void PlayWAV(const std::filesystem::path& soundFile);
  void Hear(const PlayerEvent& event);
  void Begin();
  void StartSound();
  void End(const std::string& how);
  void Release();
  bool WantsAir() const;
  bool NoteRelease();
  void StopSending();
  void Watch();
  void ShowProgress(const std::string& how);
  void Delete(const std::filesystem::path& file);
  void Deleted(const std::filesystem::path& file, int error);
  void AskForName(const std::filesystem::path& file);
  void Rename(const std::filesystem::path& file, const std::string& name);
  void Renamed(const std::filesystem::path& file, const std::filesystem::path& to, int error);
  void TellRecorded(const std::filesystem::path& file);
  void Await(const std::string& what);
  void Answered(const std::string& title, const std::string& text,
                const std::filesystem::path& file, int error);
  bool Keyed() const { return parts_.guard.WantedBy(TransmitOwner::Player); }

  Parts parts_;
  Ports ports_;
  FolderView view_;
  Stage stage_ = Stage::Idle;
  bool onAir_ = false;             // what is played was keyed for
  std::filesystem::path playing_;  // or was played last
  Scheduler::Handle lead_;         // between the key and the sound
  Scheduler::Handle watch_;        // while something is played or keyed
  Scheduler::Handle slow_;         // while the disk has not answered yet
  OnTop::Lowered lowered_;         // while it is open
  Connections connections_;
};

}  // namespace velt
