// Keeps the table of presets in the data folder: in "ExpandPresets.ini", and once from the older
// "FreqSets.ini". Says nothing to the user; whoever calls it does.
#pragma once

#include <filesystem>
#include <string>

#include "platform/installation.h"
#include "ports/files.h"
#include "ports/log.h"
#include "presets/preset_table.h"

namespace velt {

class PresetStore {
 public:
  enum class Keeping {
    OnDisk,
    ReadOnly,  // files are read and left as they are
    InMemory,  // nothing is looked for either
  };
  struct Ports {
    Files& files;
    Log& log;
  };
  PresetStore(PresetTable& presets, const Installation& installation, Keeping keeping,
              const Ports& ports);

  // The file as it is called or, where there is none yet, will be: a name in another case is the
  // name too.
  std::filesystem::path File() const;
  // HasFile: something has the name, though it may be none that can be read.
  bool HasFile() const;
  bool HasOldFile() const;

  // Reads the file into the table. 0 for success. kWrongHeader: it is something else, and the table
  // stays as it was; kNoModes or the system's error number: it cannot be used, and the table
  // becomes the program's own.
  int Read();
  static constexpr int kWrongHeader = -2;
  static constexpr int kNoModes = -1;

  // Carries the older file over: into the program's own presets those of its titles and frequencies
  // that have a place there. It goes with the next Save that succeeds. False when it cannot be
  // read; then it is set aside and the table is the program's own.
  bool Convert();

  // Writes the table, if it is another one than was opened or there is no file; the file before is
  // kept as ".bak" if it has another table, or set aside when it cannot be read. Returns the
  // system's error number; then the file is as it was.
  enum class When { Changed, Always };
  int Save(When when = When::Changed);

  // The text of a file that should be one of presets. Returns 0 or the system's error number.
  int ReadSmall(const std::filesystem::path& path, std::string& text) const;

 private:
  std::filesystem::path Find(const char* name) const;
  int ReadInto(PresetTable& table) const;
  int Write(const std::string& text);
  // Gives the file a name with ".damaged" appended that no other has. Returns it, or nothing and
  // the error number.
  std::filesystem::path SetAside(const std::filesystem::path& file, int& error);
  void Warn(const std::string& text);

  PresetTable& presets_;
  const Installation& installation_;
  const Keeping keeping_;
  Ports ports_;
  std::string opened_;               // the table's text as it was opened or saved
  std::filesystem::path converted_;  // the older file while its presets are in the table only
};

}  // namespace velt
