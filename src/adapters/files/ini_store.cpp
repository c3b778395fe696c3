#include "adapters/files/ini_store.h"

#include <cerrno>
#include <system_error>

namespace velt {

namespace fs = std::filesystem;

namespace {

std::string ErrorText(int error) {
  return std::generic_category().message(error);
}

// ENOTDIR: the folder cannot exist, so neither can the file.
bool IsMissing(int error) {
  return error == ENOENT || error == ENOTDIR;
}

fs::path WithEnding(fs::path path, const std::string& ending) {
  path += ending;
  return path;
}

}  // namespace

IniStore::IniStore(fs::path path, DiskFiles& files, Log& log)
    : path_(std::move(path)), files_(files), log_(log) {
  files_.RemoveLeftoversBeside(path_);
  Refresh();
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
  if (unreadable_ != 0) return unreadable_;
  if (saved_.empty()) return 0;
  if (const int error = Refresh(); error != 0) return error;
  for (const Saved& saved : saved_) settings_.Set(saved.section, saved.key, saved.text);
  const int error = WriteFile();
  if (error == 0) {
    saved_.clear();
    told_.clear();
    source_ = Source::File;
  } else {
    Warn("The settings cannot be written to " + path_.string() + ": " + ErrorText(error));
  }
  return error;
}

int IniStore::WriteFile() {
  if (const fs::path folder = path_.parent_path(); !folder.empty()) {
    if (const int error = files_.MakeFolder(folder); error != 0) return error;
  }
  // What is damaged must not take the place of a good backup.
  return files_.Replace(path_, settings_.Bytes(), source_ == Source::File);
}

int IniStore::DeleteAll() {
  const fs::path kept = Beside(".before-reset");
  // The settings as they were are the backup's while the file is damaged.
  if (source_ == Source::Backup) {
    const int error = files_.RenameOver(Beside(".bak"), kept);
    if (error != 0 && !IsMissing(error)) return error;
  }
  // The file goes before its backup: without it no start uses the backup.
  const int error = source_ == Source::File ? files_.RenameOver(path_, kept) : files_.Remove(path_);
  if (error != 0 && !IsMissing(error)) return error;
  settings_ = IniText();
  saved_.clear();
  source_ = Source::File;
  unreadable_ = 0;
  const int backupError = files_.Remove(Beside(".bak"));
  return IsMissing(backupError) ? 0 : backupError;
}

int IniStore::Refresh() {
  source_ = Source::File;
  const FileContent content = files_.Read(path_);
  if (IsMissing(content.error)) return 0;
  if (content.error != 0) {
    Warn("The settings in " + path_.string() +
         " cannot be read and are left alone: " + ErrorText(content.error));
    return unreadable_ = content.error;
  }
  auto parsed = IniText::Parse(content.bytes);
  // A file whose predecessor had a closing line was cut off when it has none itself.
  if (!parsed || (!parsed->IsClosed() && BackupIsClosed())) return UseBackup(content.bytes);
  settings_ = std::move(*parsed);
  return 0;
}

bool IniStore::BackupIsClosed() const {
  const auto backup = IniText::Parse(files_.Read(Beside(".bak")).bytes);
  return backup && backup->IsClosed();
}

// Nothing is moved away before something better stands in its place, so that an end or an error at
// any step leaves a damaged file and its good backup, from which the next start begins again.
int IniStore::UseBackup(const std::string& damaged) {
  const FileContent backup = files_.Read(Beside(".bak"));
  if (backup.error != 0 && !IsMissing(backup.error)) {
    Warn("The settings in " + path_.string() +
         " are damaged, and the previous ones cannot be read: " + ErrorText(backup.error));
    source_ = Source::Backup;
    return unreadable_ = backup.error;
  }
  int error = Keep(path_, damaged);
  auto parsed = IniText::Parse(backup.bytes);
  source_ = parsed ? Source::Backup : Source::Nowhere;
  if (parsed) {
    settings_ = std::move(*parsed);
    const int restoreError = error != 0 ? error : files_.Restore(path_, Beside(".bak"));
    if (restoreError == 0) source_ = Source::File;
    Warn(restoreError == 0 ? "The previous settings are used"
                           : "The previous settings are used but cannot be put in its place: " +
                                 ErrorText(restoreError));
  } else if (backup.error == 0) {
    Warn("The previous settings cannot be used either");
    if (error == 0) error = Keep(Beside(".bak"), backup.bytes);
  }
  return error;
}

int IniStore::Keep(const fs::path& file, const std::string& bytes) {
  constexpr int kMostKept = 1000;
  fs::path kept;
  int error = EEXIST;
  for (int number = 1; number <= kMostKept && error == EEXIST; ++number) {
    kept = WithEnding(file, number == 1 ? ".damaged" : ".damaged." + std::to_string(number));
    error = files_.KeepAs(file, kept);
    // An earlier run that did not come to an end may have kept it already.
    if (error == EEXIST && files_.Read(kept).bytes == bytes) error = 0;
  }
  Warn("The settings in " + file.string() + " are damaged; " +
       (error == 0 ? "they are kept as " + kept.string()
                   : "they cannot be kept under another name: " + ErrorText(error)));
  return error;
}

void IniStore::Warn(const std::string& text) {
  if (told_.insert(text).second) log_.Write(LogLevel::Warning, "velt.settings", text);
}

fs::path IniStore::Beside(const char* ending) const {
  return WithEnding(path_, ending);
}

}  // namespace velt
