// The player's lists: places, the folders in one of them, and its files.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "form/player_form.h"
#include "ports/folders.h"
#include "ports/system_info.h"

namespace velt {

class FolderView {
 public:
  struct Ports {
    Folders& folders;
    const SystemInfo& system;
  };
  FolderView(PlayerForm& form, const Ports& ports);

  // Shows the recordings, or, where they cannot be read, what was shown before. `recordings` is
  // their folder.
  void Load(const std::filesystem::path& recordings);

  // Reads the shown folder again. The chosen file stays chosen, under its new name where it was
  // `renamed`; where it is gone, what stands in its place is.
  void Refresh(const std::filesystem::path& renamed = {});

  // The whole path of the chosen file; empty when there is none.
  std::optional<std::filesystem::path> Selected() const;

 private:
  using Paths = std::vector<std::filesystem::path>;

  void Drive1_Change();
  void Dir1_DblClick();
  void Show(const std::filesystem::path& folder, const std::filesystem::path& otherwise);
  void Told(const std::filesystem::path& folder, const FolderListing& listing);
  void Fill(const FolderListing& listing);
  int32_t PlaceOf(const std::filesystem::path& folder) const;

  PlayerForm& form_;
  Ports ports_;
  std::filesystem::path folder_;  // that is shown; empty: none yet
  Paths places_, folders_, files_;
  Connections connections_;
};

}  // namespace velt
