// `FrmSoundPlayer`: the state of every control of the WAV player.
#pragma once

#include "form/controls.h"
#include "form/dialog_window.h"
#include "form/spectrogram_form.h"

namespace velt {

struct PlayerForm : Form {
  PlayerForm();

  DialogWindow Window;
  ListBox Drive1;     // places where folders are
  ListBox Dir1;       // "..", then the folders in this one; a double click opens one
  ListBox File1;      // the folder's files; a double click plays one
  Label lblFolder;    // whose folders and files these are
  Label lblProgress;  // what is played, and how far it has come
  Label lblProblem;   // what went wrong
  ProgressControl prgPlay;
  CheckBox chkPtt;
  ControlArray<Button> CmdPlay;   // 0 play, 1 stop
  ControlArray<Button> cmdfiles;  // 0 delete, 1 rename, 2 open the WAV folder

  // Gives the keyboard to the file list.
  Event<> fileListWanted;
};

}  // namespace velt
