#include "presets/preset_store.h"

#include <algorithm>
#include <cerrno>
#include <vector>

#include "presets/bands.h"
#include "presets/preset_text.h"
#include "text/error_text.h"
#include "text/formats.h"
#include "text/numbers.h"
#include "text/paths.h"

namespace velt {

namespace fs = std::filesystem;

namespace {

constexpr const char* kFile = "ExpandPresets.ini";
constexpr const char* kOldFile = "FreqSets.ini";

int ErrorOf(PresetTextFault fault) {
  switch (fault) {
    case PresetTextFault::None:
      return 0;
    case PresetTextFault::WrongHeader:
      return PresetStore::kWrongHeader;
    case PresetTextFault::NoModes:
      return PresetStore::kNoModes;
    case PresetTextFault::TooShort:
      return ENODATA;
    case PresetTextFault::LineTooLong:
      break;
  }
  return EFBIG;
}

}  // namespace

PresetStore::PresetStore(PresetTable& presets, const Installation& installation, Keeping keeping,
                         const Ports& ports)
    : presets_(presets),
      installation_(installation),
      keeping_(keeping),
      ports_(ports),
      opened_(PresetText(presets)) {}

fs::path PresetStore::File() const {
  return Find(kFile);
}

bool PresetStore::HasFile() const {
  if (keeping_ == Keeping::InMemory) return false;
  const fs::path file = File();
  if (ports_.files.IsFile(file)) return true;
  // A folder, a pipe or a link that leads nowhere has the name too.
  const std::vector<fs::path> names = ports_.files.Names(file.parent_path());
  return std::ranges::find(names, file.filename()) != names.end();
}

bool PresetStore::HasOldFile() const {
  return keeping_ != Keeping::InMemory && ports_.files.IsFile(Find(kOldFile));
}

fs::path PresetStore::Find(const char* name) const {
  const fs::path& folder = installation_.dataFolder;
  fs::path path = folder / name;
  if (ports_.files.IsFile(path)) return path;
  for (const fs::path& other : ports_.files.Names(folder)) {
    const bool same = Lowered(PathText(other)) == Lowered(name);
    if (same && ports_.files.IsFile(folder / other)) return folder / other;
  }
  return path;
}

int PresetStore::ReadSmall(const fs::path& path, std::string& text) const {
  constexpr uint64_t kMostBytes = 1'000'000;
  const auto stamp = ports_.files.Stamp(path);
  if (stamp && stamp->bytes > kMostBytes) return EFBIG;
  FileContent content = ports_.files.Read(path);
  text = std::move(content.bytes);
  return content.error;
}

int PresetStore::ReadInto(PresetTable& table) const {
  std::string text;
  const int error = ReadSmall(File(), text);
  return error != 0 ? error : ErrorOf(ReadPresetText(text, table));
}

int PresetStore::Read() {
  const int error = ReadInto(presets_);
  if (error != 0 && error != kWrongHeader) presets_.PresetDefaults();
  opened_ = PresetText(presets_);
  return error;
}

bool PresetStore::Convert() {
  presets_.PresetDefaults();
  opened_ = PresetText(presets_);
  const fs::path old = Find(kOldFile);
  std::string text;
  Bands bands;
  int error = ReadSmall(old, text);
  if (error == 0 && !bands.LoadBands(text)) error = ENODATA;
  if (error != 0) {
    Warn(PathText(old) + " cannot be converted: " + ErrorText(error));
    int asideError = 0;
    if (keeping_ == Keeping::OnDisk) SetAside(old, asideError);
    return false;
  }
  constexpr int32_t kCarriedOver = 9;
  constexpr size_t kTitleLength = 5;
  constexpr int32_t kHzPerKilohertz = 1000;
  for (int32_t row = 0; row < kCarriedOver; ++row) {
    const Bands::Row& band = bands.rows[static_cast<size_t>(row)];
    presets_.Cell(row, PresetTable::kTitle) = FirstCharacters(band.title, kTitleLength);
    presets_.Cell(row, PresetTable::kFirstFrequency) =
        std::to_string(DivideTruncating(band.frequencyHz, kHzPerKilohertz).value_or(0));
  }
  opened_.clear();
  converted_ = old;
  return true;
}

int PresetStore::Save(When when) {
  if (keeping_ != Keeping::OnDisk) return 0;
  const std::string text = PresetText(presets_);
  if (when == When::Always || text != opened_ || !HasFile()) {
    if (const int error = Write(text)) {
      Warn(PathText(File()) + " cannot be written: " + ErrorText(error));
      return error;
    }
    opened_ = text;
  }
  if (converted_.empty()) return 0;
  if (const int error = ports_.files.Remove(converted_); error == 0 || error == ENOENT) {
    converted_.clear();
  } else {
    Warn(PathText(converted_) +
         " cannot be deleted and will be converted again: " + ErrorText(error));
  }
  return 0;
}

int PresetStore::Write(const std::string& text) {
  const fs::path file = File();
  int error = 0;
  if (!ports_.files.IsFolder(installation_.dataFolder)) {
    error = ports_.files.MakeFolder(installation_.dataFolder);
  }
  fs::path aside;
  if (error == 0 && HasFile()) {
    PresetTable before;
    const int readError = ReadInto(before);
    // Written again, it would only push an older table out of the ".bak".
    if (readError == 0 && PresetText(before) == text) return 0;
    // A link that leads nowhere yet is written through.
    if (readError != 0 && readError != ENOENT) aside = SetAside(file, error);
  }
  if (error == 0) error = ports_.files.Replace(file, text, true);
  if (error != 0 && !aside.empty()) ports_.files.Rename(aside, file);
  return error;
}

fs::path PresetStore::SetAside(const fs::path& file, int& error) {
  constexpr int kMostKept = 1000;
  error = EEXIST;
  fs::path kept;
  for (int number = 1; number <= kMostKept && error == EEXIST; ++number) {
    kept = file;
    kept += number == 1 ? ".damaged" : ".damaged." + std::to_string(number);
    error = ports_.files.Rename(file, kept);
  }
  Warn(PathText(file) + (error == 0 ? " is kept as " + PathText(kept)
                                    : " cannot be set aside: " + ErrorText(error)));
  return error == 0 ? kept : fs::path();
}

void PresetStore::Warn(const std::string& text) {
  ports_.log.Write(LogLevel::Warning, "velt.presets", text);
}

}  // namespace velt
