// The settings store as one text file for each user. A damaged file is set aside under another
// name and the previous one (".bak") takes its place; a missing file means defaults.
#pragma once

#include <filesystem>
#include <vector>

#include "adapters/files/ini_text.h"
#include "ports/files.h"
#include "ports/log.h"
#include "ports/settings_store.h"

namespace velt {

class IniStore : public SettingsStore {
 public:
  // Reads the file. One that cannot be read, or is damaged and cannot be set aside, gives defaults,
  // and Commit refuses as long as this store lives.
  IniStore(std::filesystem::path path, Files& files, Log& log);

  std::optional<std::string> Get(const std::string& section, const std::string& key) const override;

  // Any text; a section or key name that cannot stand in the file is refused with a line in the
  // log.
  void Save(const std::string& section, const std::string& key, const std::string& text) override;

  // Makes the folder when it is missing and puts what was saved into the file as it is by now, so
  // that what others wrote there meanwhile stays. Nothing saved, nothing written.
  int Commit() override;
  int DeleteAll() override;

 private:
  struct Saved {
    std::string section;
    std::string key;
    std::string text;
  };

  // Reads the file into settings_; when there is none, settings_ stays. Returns an error number
  // when the file must not be written over.
  int Refresh();
  int SetAsideAndRestore();
  // Renames to a name that nothing has yet, which `kept` tells.
  int SetAside(const std::filesystem::path& damaged, std::filesystem::path& kept);
  void RestoreBackup();
  int WriteFile();
  void Warn(const std::string& text);
  std::filesystem::path BackupPath() const;

  std::filesystem::path path_;
  Files& files_;
  Log& log_;
  IniText settings_;
  std::vector<Saved> saved_;
  int refusal_ = 0;  // why the file must not be written
  bool toldUnwritable_ = false;
};

}  // namespace velt
