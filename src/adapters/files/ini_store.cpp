#include "adapters/files/ini_store.h"

#include <cerrno>
#include <system_error>

namespace velt {

namespace fs = std::filesystem;

namespace {

std::string ErrorText(int error) {
  return std::system_category().message(error);
}

// ENOTDIR: the folder cannot exist, so neither can the file.
bool IsMissing(int error) {
  return error == ENOENT || error == ENOTDIR;
}

}  // namespace

IniStore::IniStore(fs::path path, Files& files, Log& log)
    : path_(std::move(path)), files_(files), log_(log) {
  refusal_ = Refresh();
}

std::optional<std::string> IniStore::Get(const std::string& section, const std::string& key) const {
  return settings_.Get(section, key);
}

void IniStore::Save(const std::string& section, const std::string& key, const std::string& text) {
  if (!IniText::IsUsableSection(section) || !IniText::IsUsableKey(key)) {
    Warn("A setting cannot be stored under the name \"" + section + "\", \"" + key + "\"");
    return;
  }
  settings_.Set(section, key, text);
  saved_.push_back({section, key, text});
}

int IniStore::Commit() {
  if (refusal_ != 0) return refusal_;
  if (saved_.empty()) return 0;
  refusal_ = Refresh();
  if (refusal_ != 0) return refusal_;
  for (const Saved& saved : saved_) settings_.Set(saved.section, saved.key, saved.text);
  const int error = WriteFile();
  if (error == 0) {
    saved_.clear();
    toldUnwritable_ = false;
  } else if (!toldUnwritable_) {
    toldUnwritable_ = true;
    Warn("The settings cannot be written to " + path_.string() + ": " + ErrorText(error));
  }
  return error;
}

int IniStore::WriteFile() {
  if (const fs::path folder = path_.parent_path(); !folder.empty()) {
    if (const int error = files_.MakeFolder(folder); error != 0) return error;
  }
  return files_.Replace(path_, settings_.Bytes(), true);
}

int IniStore::DeleteAll() {
  // The file goes first: without it no start uses the backup.
  if (const int error = files_.Remove(path_); error != 0 && !IsMissing(error)) return error;
  settings_ = IniText();
  saved_.clear();
  refusal_ = 0;
  const int error = files_.Remove(BackupPath());
  return IsMissing(error) ? 0 : error;
}

int IniStore::Refresh() {
  const FileContent content = files_.Read(path_);
  if (IsMissing(content.error)) return 0;
  if (content.error != 0) {
    Warn("The settings in " + path_.string() +
         " cannot be read and are left alone: " + ErrorText(content.error));
    return content.error;
  }
  if (const auto parsed = IniText::Parse(content.bytes)) {
    settings_ = *parsed;
    return 0;
  }
  return SetAsideAndRestore();
}

int IniStore::SetAsideAndRestore() {
  fs::path kept;
  if (const int error = SetAside(path_, kept); error != 0) {
    Warn("The settings in " + path_.string() +
         " are damaged and cannot be set aside: " + ErrorText(error));
    return error;
  }
  Warn("The settings in " + path_.string() + " are damaged; they are kept as " + kept.string());
  RestoreBackup();
  return 0;
}

int IniStore::SetAside(const fs::path& damaged, fs::path& kept) {
  constexpr int kMostKept = 1000;
  int error = EEXIST;
  for (int number = 1; number <= kMostKept && error == EEXIST; ++number) {
    kept = damaged;
    kept += number == 1 ? ".damaged" : ".damaged." + std::to_string(number);
    error = files_.Rename(damaged, kept);
  }
  return error;
}

void IniStore::RestoreBackup() {
  const FileContent backup = files_.Read(BackupPath());
  if (IsMissing(backup.error)) return;
  const auto parsed = IniText::Parse(backup.bytes);
  if (!parsed) {
    Warn("The previous settings in " + BackupPath().string() + " cannot be used either");
    // The second write from now would take its place.
    fs::path kept;
    if (backup.error == 0) SetAside(BackupPath(), kept);
    return;
  }
  settings_ = *parsed;
  // At once, as a file that is missing at the next start would mean defaults.
  const int error = files_.Replace(path_, backup.bytes, false);
  Warn(error == 0 ? "The previous settings are used"
                  : "The previous settings are used but cannot be written: " + ErrorText(error));
}

void IniStore::Warn(const std::string& text) {
  log_.Write(LogLevel::Warning, "velt.settings", text);
}

fs::path IniStore::BackupPath() const {
  fs::path backup = path_;
  backup += ".bak";
  return backup;
}

}  // namespace velt
