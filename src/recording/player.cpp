#include "recording/player.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "spectrum/scale_ticks.h"
#include "text/error_text.h"
#include "text/paths.h"

namespace velt {

namespace fs = std::filesystem;

namespace {

constexpr Milliseconds kWatchEvery{100};
// A server takes the key, and a rig turns its relays over, before the first word may be said.
constexpr Milliseconds kLead{250};
// A disk that answers sooner needs no word about it.
constexpr Milliseconds kSlowDisk{300};
constexpr const char* kNoAnswer = "The disk does not answer: ";
constexpr const char* kTitle = "Wav Player";
constexpr const char* kStillKeyed =
    "The file has ended and the rig still transmits: press RX, or Stop in the player";

std::string SecondsText(Milliseconds time) {
  return TimeText(static_cast<double>(time.count() / 1000), 0);
}

// What stands for a file in its own folder and nowhere else. The last is what a name's bytes that
// are no text were shown as: nobody means that.
bool IsPlainName(const std::string& name) {
  return name != "." && name != ".." && name.find_first_of("/\\") == std::string::npos &&
         name.find("\xEF\xBF\xBD") == std::string::npos && name.find('\0') == std::string::npos;
}

}  // namespace

Player::Player(std::initializer_list<MenuItem*> openers, const Parts& parts, const Ports& ports)
    : parts_(parts),
      ports_(ports),
      view_(parts.form, {.folders = ports.folders, .system = ports.system}) {
  PlayerForm& form = parts_.form;
  form.prgPlay.visible = false;
  for (MenuItem* item : openers) connections_ += item->clicked.Listen([this] { Open(); });
  connections_ += form.Window.closeAsked.Listen([this] { Close(); });
  connections_ += form.File1.doubleClicked.Listen([this] { CmdPlay_Click(0); });
  for (const auto& [index, button] : form.CmdPlay) {
    connections_ += button->clicked.Listen([this, i = index] { CmdPlay_Click(i); });
  }
  for (const auto& [index, button] : form.cmdfiles) {
    connections_ += button->clicked.Listen([this, i = index] { cmdfiles_Click(i); });
  }
  connections_ += parts_.guard.allReleased.Listen([this] {
    if (WantsAir()) StopSending();
  });
  connections_ +=
      parts_.guard.ended.Listen([this](const Keyer&, TransmitGuard::Cause) { NoteRelease(); });
  connections_ += ports_.sound.happened.Listen([this](const PlayerEvent& event) { Hear(event); });
}

void Player::Open() {
  if (parts_.form.Window.visible) return parts_.form.Window.BringForward();
  lowered_ = parts_.onTop.Lower();
  parts_.form.lblProgress.caption = "";
  parts_.form.lblProblem.caption = "";
  // Going on the air is chosen anew each time.
  parts_.form.chkPtt.value = 0;
  view_.Load(parts_.installation.dataFolder / "WAV");
  parts_.form.fileListWanted.Raise();
  parts_.form.Window.visible = true;
}

void Player::Close() {
  PlayWAV({});
  parts_.form.Window.visible = false;
  lowered_.reset();
}

void Player::CmdPlay_Click(int32_t index) {
  if (index == 1) return PlayWAV({});
  if (const auto file = view_.Selected()) return PlayWAV(*file);
  ports_.prompts.Tell({.title = kTitle, .text = "Select a file first"},
                      [this] { parts_.form.fileListWanted.Raise(); });
}

void Player::PlayWAV(const fs::path& soundFile) {
  lead_.Cancel();
  parts_.form.lblProblem.caption = "";
  if (soundFile.empty()) {
    if (stage_ != Stage::Idle) End("stopped");
    ports_.sound.Stop();
    return Release();
  }
  // What the user does not want on the air any more is not sent by a key from before; what is
  // wanted there follows without a break.
  if (parts_.form.chkPtt.value == 0) Release();
  playing_ = soundFile;
  stage_ = Stage::Preparing;
  onAir_ = Keyed();
  ports_.sound.Prepare(soundFile);
  parts_.notices.Over(NoticeKind::Player);
  Watch();
}

void Player::Hear(const PlayerEvent& event) {
  switch (event.kind) {
    case PlayerEvent::Kind::Ready:
      parts_.form.lblProblem.caption = event.text;
      return Begin();
    case PlayerEvent::Kind::Drained:
      End("ended");
      // Not released: what follows is the user's to say.
      if (Keyed()) parts_.notices.Raise(NoticeKind::Player, kStillKeyed);
      return;
    case PlayerEvent::Kind::Failed:
      lead_.Cancel();
      End(stage_ == Stage::Playing ? "broken off" : "not played");
      parts_.form.lblProblem.caption = event.text;
      return Release();
  }
}

// Keyed no earlier than now, as it can be heard, and no later, as its beginning belongs to it.
void Player::Begin() {
  if (NoteRelease()) return;
  if (parts_.form.chkPtt.value == 0) {
    Release();
    return StartSound();
  }
  if (Keyed()) {
    onAir_ = true;
    return StartSound();
  }
  parts_.ptt.PTT_ON(TransmitOwner::Player);
  onAir_ = Keyed();
  if (!onAir_) {
    parts_.form.lblProblem.caption = "The rig was not keyed: the sound is heard here only.";
    return StartSound();
  }
  stage_ = Stage::KeyedBefore;
  lead_ = ports_.scheduler.After(kLead, [this] {
    if (!NoteRelease()) StartSound();
  });
}

void Player::StartSound() {
  stage_ = Stage::Playing;
  ports_.sound.Start();
}

void Player::End(const std::string& how) {
  ShowProgress(how);
  stage_ = Stage::Idle;
  parts_.form.prgPlay.visible = false;
}

void Player::Release() {
  onAir_ = false;
  parts_.ptt.PTT_OFF(TransmitOwner::Player);
  parts_.notices.Over(NoticeKind::Player);
}

// It is on the air, or will be as soon as it can be heard.
bool Player::WantsAir() const {
  return onAir_ || (stage_ == Stage::Preparing && parts_.form.chkPtt.value != 0);
}

// True when the transmission was ended by somebody else: the limit, the rig, ...
bool Player::NoteRelease() {
  if (!onAir_ || Keyed()) return false;
  StopSending();
  return true;
}

// What was meant for the air is of no use once the transmission was ended, would drown what is
// heard, and must not key again.
void Player::StopSending() {
  lead_.Cancel();
  if (stage_ != Stage::Idle) End("stopped, as the transmission was ended");
  ports_.sound.Stop();
  Release();
}

void Player::Watch() {
  NoteRelease();
  if (stage_ == Stage::Idle && !Keyed()) return;
  if (stage_ != Stage::Idle) ShowProgress("");
  watch_ = ports_.scheduler.After(kWatchEvery, [this] { Watch(); });
}

void Player::ShowProgress(const std::string& how) {
  const SoundPlayer::Progress heard = ports_.sound.Heard();
  std::string text = PathText(playing_.filename());
  if (stage_ == Stage::Preparing && how.empty()) {
    text += "   opening";
  } else {
    text += "   " + SecondsText(heard.position);
    if (heard.length) text += " of " + SecondsText(*heard.length);
  }
  if (onAir_ && how.empty()) text += ", on the air";
  parts_.form.lblProgress.caption = how.empty() ? text : text + ", " + how;
  parts_.form.prgPlay.visible = heard.length.has_value();
  if (heard.length && heard.length->count() > 0) {
    parts_.form.prgPlay.percent = static_cast<int32_t>(
        std::min<int64_t>(100, heard.position.count() * 100 / heard.length->count()));
  }
}

void Player::cmdfiles_Click(int32_t index) {
  const auto file = view_.Selected();
  if (!file) {
    return ports_.prompts.Tell({.title = kTitle, .text = "Please select a file first"}, {});
  }
  parts_.form.lblProblem.caption = "";
  if (index == 2) {
    ports_.launcher.OpenDocument(PathText(parts_.installation.dataFolder / "WAV"));
    parts_.form.fileListWanted.Raise();
    return view_.Refresh();
  }
  if (*file == parts_.recorder.File()) return TellRecorded(*file);
  if (index == 1) return AskForName(*file);
  ports_.prompts.Ask({.title = "Delete",
                      .text = "Are you sure to delete " + PathText(file->filename()) + "?",
                      .icon = BoxIcon::Question},
                     [this, file = *file](bool yes) {
                       parts_.form.fileListWanted.Raise();
                       if (yes) return Delete(file);
                       view_.Refresh();
                     });
}

void Player::Delete(const fs::path& file) {
  if (stage_ != Stage::Idle && file == playing_) PlayWAV({});
  Await("deleting " + PathText(file.filename()));
  ports_.folders.Remove(file, parts_.recorder.File(),
                        [this, file](int error) { Deleted(file, error); });
}

void Player::Deleted(const fs::path& file, int error) {
  Answered("Delete error nr", "Could not delete file.", file, error);
  view_.Refresh();
}

void Player::AskForName(const fs::path& file) {
  ports_.prompts.Input({.title = "Rename",
                        .prompt = "Please enter the new filename (include .wav)",
                        .initial = PathText(file.filename())},
                       [this, file](const std::optional<std::string>& name) {
                         parts_.form.fileListWanted.Raise();
                         Rename(file, name.value_or(""));
                       });
}

void Player::Rename(const fs::path& file, const std::string& name) {
  const fs::path to = file.parent_path() / TextPath(name);
  if (name.empty() || to == file) return view_.Refresh();
  if (!IsPlainName(name)) {
    Renamed(file, to, EINVAL);
    parts_.form.lblProblem.caption = "A file name is wanted, without a folder.";
    return;
  }
  Await("renaming " + PathText(file.filename()));
  ports_.folders.Rename(file, to, parts_.recorder.File(),
                        [this, file, to](int error) { Renamed(file, to, error); });
}

void Player::Renamed(const fs::path& file, const fs::path& to, int error) {
  Answered("Rename error nr", "Could not rename file.", file, error);
  if (error == 0 && file == playing_) playing_ = to;
  const bool chosen = error == 0 && view_.Selected() == file;
  view_.Refresh(chosen ? to.filename() : fs::path());
}

void Player::TellRecorded(const fs::path& file) {
  ports_.prompts.Tell(
      {.title = kTitle,
       .text = PathText(file.filename()) + " is being recorded. Stop the recording first.",
       .icon = BoxIcon::Exclamation},
      {});
}

void Player::Await(const std::string& what) {
  slow_ = ports_.scheduler.After(
      kSlowDisk, [this, what] { parts_.form.lblProblem.caption = kNoAnswer + what + "."; });
}

void Player::Answered(const std::string& title, const std::string& text, const fs::path& file,
                      int error) {
  slow_.Cancel();
  if (parts_.form.lblProblem.caption.Get().starts_with(kNoAnswer))
    parts_.form.lblProblem.caption = "";
  if (error == 0) return;
  if (error == EBUSY && !parts_.recorder.File().empty()) return TellRecorded(file);
  ports_.prompts.Tell(
      {.title = title + std::to_string(error), .text = text, .icon = BoxIcon::Exclamation}, {});
  parts_.form.lblProblem.caption = ErrorText(error) + ".";
}

}  // namespace velt
