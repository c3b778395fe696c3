#include "recording/folder_view.h"

#include <algorithm>
#include <utility>

#include "text/error_text.h"
#include "text/formats.h"
#include "text/paths.h"

namespace velt {

namespace fs = std::filesystem;

namespace {

constexpr int32_t kProfileFolder = 40;

// Without the hidden ones, in the order of the alphabet.
std::vector<fs::path> Sorted(const std::vector<fs::path>& names) {
  std::vector<std::pair<std::string, fs::path>> keys;
  for (const fs::path& name : names) {
    const std::string text = PathText(name);
    if (!text.starts_with('.')) keys.emplace_back(Lowered(text), name);
  }
  std::ranges::sort(keys);
  std::vector<fs::path> sorted;
  for (auto& key : keys) sorted.push_back(std::move(key.second));
  return sorted;
}

std::vector<std::string> Texts(const std::vector<fs::path>& names) {
  std::vector<std::string> texts;
  for (const fs::path& name : names) texts.push_back(PathText(name));
  return texts;
}

int32_t IndexOf(const std::vector<fs::path>& names, const fs::path& name) {
  const auto found = std::ranges::find(names, name);
  return found == names.end() ? -1 : static_cast<int32_t>(found - names.begin());
}

}  // namespace

FolderView::FolderView(PlayerForm& form, const Ports& ports) : form_(form), ports_(ports) {
  connections_ += form_.Drive1.listIndex.changed.Listen([this] { Drive1_Change(); });
  connections_ += form_.Dir1.doubleClicked.Listen([this] { Dir1_DblClick(); });
}

void FolderView::Load(const fs::path& recordings) {
  const std::string home = ports_.system.SpecialFolder(kProfileFolder);
  std::error_code unknown;
  const fs::path whole = fs::absolute(recordings, unknown).lexically_normal();
  places_ = {whole};
  std::vector<std::string> names{"Recordings"};
  if (!home.empty()) {
    places_.push_back(TextPath(home));
    names.emplace_back("Home");
  }
  for (const StoragePlace& place : ports_.system.StoragePlaces()) {
    places_.push_back(place.folder);
    names.push_back(place.name);
  }
  form_.Drive1.items = names;
  form_.File1.listIndex = -1;
  Show(whole, folder_.empty() ? TextPath(home) : folder_);
}

void FolderView::Refresh(const fs::path& renamed) {
  if (folder_.empty()) return;
  ports_.folders.List(folder_, [this, folder = folder_, renamed](const FolderListing& listing) {
    const int32_t stood = form_.File1.listIndex;
    const fs::path name = renamed.empty() ? Selected().value_or("").filename() : renamed;
    Told(folder, listing);
    const auto last = static_cast<int32_t>(files_.size()) - 1;
    const int32_t found = IndexOf(files_, name);
    form_.File1.listIndex = found < 0 ? std::min(stood, last) : found;
  });
}

std::optional<fs::path> FolderView::Selected() const {
  const int32_t index = form_.File1.listIndex;
  if (index < 0 || static_cast<size_t>(index) >= files_.size()) return std::nullopt;
  return folder_ / files_[static_cast<size_t>(index)];
}

void FolderView::Drive1_Change() {
  const int32_t index = form_.Drive1.listIndex;
  if (index < 0 || index == PlaceOf(folder_)) return;
  Show(places_.at(static_cast<size_t>(index)), {});
}

void FolderView::Dir1_DblClick() {
  const int32_t index = form_.Dir1.listIndex;
  if (index < 0 || static_cast<size_t>(index) >= folders_.size()) return;
  const fs::path& name = folders_[static_cast<size_t>(index)];
  Show(name == ".." ? folder_.parent_path() : folder_ / name, {});
}

// What is shown stays, and is what is acted on, until the disk has answered.
void FolderView::Show(const fs::path& folder, const fs::path& otherwise) {
  form_.lblFolder.caption = "Reading " + PathText(folder);
  ports_.folders.List(folder, [this, folder, otherwise](const FolderListing& listing) {
    Told(folder, listing);
    if (listing.error != 0 && !otherwise.empty()) Show(otherwise, {});
  });
}

void FolderView::Told(const fs::path& folder, const FolderListing& listing) {
  if (listing.error == 0) {
    const bool another = folder != folder_;
    folder_ = folder;
    if (another) form_.File1.listIndex = -1;
    Fill(listing);
    if (another) form_.Dir1.listIndex = -1;
  } else {
    form_.lblProblem.caption =
        PathText(folder) + " cannot be read: " + ErrorText(listing.error) + ".";
  }
  form_.lblFolder.caption = PathText(folder_);
  form_.Drive1.listIndex = PlaceOf(folder_);
}

void FolderView::Fill(const FolderListing& listing) {
  folders_ = Sorted(listing.folders);
  if (folder_.has_relative_path()) folders_.insert(folders_.begin(), "..");
  files_ = Sorted(listing.files);
  form_.Dir1.items = Texts(folders_);
  form_.File1.items = Texts(files_);
}

// The innermost one that the folder lies in; -1: in none.
int32_t FolderView::PlaceOf(const fs::path& folder) const {
  int32_t found = -1;
  ptrdiff_t longest = 0;
  for (size_t i = 0; i < places_.size() && !folder.empty(); ++i) {
    const fs::path& place = places_[i];
    const auto [end, rest] = std::ranges::mismatch(place, folder);
    const ptrdiff_t parts = std::distance(place.begin(), place.end());
    if (end != place.end() || parts <= longest) continue;
    found = static_cast<int32_t>(i);
    longest = parts;
  }
  return found;
}

}  // namespace velt
