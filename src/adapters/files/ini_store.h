// The settings store as one text file for each user. Of a damaged file a copy is kept under another
// name and the previous settings (".bak") take its place; a missing file means defaults. Ended at
// any moment, on a full disk too, the next start has the settings that this one had or saved.
#pragma once

#include <filesystem>
#include <set>
#include <vector>

#include "adapters/files/disk_files.h"
#include "adapters/files/ini_text.h"
#include "ports/log.h"
#include "ports/settings_store.h"

namespace velt {

class IniStore : public SettingsStore {
 public:
  // Reads the file, and removes what killed runs left beside it. A file, or the backup of a damaged
  // one, that cannot be read gives defaults, and Commit refuses as long as this store lives.
  IniStore(std::filesystem::path path, DiskFiles& files, Log& log);

  std::optional<std::string> Get(const std::string& section, const std::string& key) const override;

  // Any text; a section or key name that cannot stand in the file is refused with a line in the
  // log.
  void Save(const std::string& section, const std::string& key, const std::string& text) override;

  // Makes the folder when it is missing and puts what was saved into the file as it is by now, so
  // that what others wrote there meanwhile stays. Nothing saved, nothing written. Refuses while a
  // damaged file cannot be kept.
  int Commit() override;

  // The settings as they were stay beside the file with ".before-reset" appended, in place of those
  // of an earlier reset.
  int DeleteAll() override;

 private:
  struct Saved {
    std::string section;
    std::string key;
    std::string text;
  };
  // Where the settings of this run come from.
  enum class Source { File, Backup, Nowhere };

  // Reads the file into settings_; when there is none, settings_ stays. Returns an error number
  // when the file must not be written over.
  int Refresh();
  bool BackupIsClosed() const;
  int UseBackup(const std::string& damaged);
  // Keeps the file, which has these bytes, under a name with ".damaged" appended, once.
  int Keep(const std::filesystem::path& file, const std::string& bytes);
  int WriteFile();
  // Each text once, until the settings could be written.
  void Warn(const std::string& text);
  std::filesystem::path Beside(const char* ending) const;

  std::filesystem::path path_;
  DiskFiles& files_;
  Log& log_;
  IniText settings_;
  std::vector<Saved> saved_;
  Source source_ = Source::File;
  int unreadable_ = 0;  // why the file must not be written at all
  std::set<std::string> told_;
};

}  // namespace velt
