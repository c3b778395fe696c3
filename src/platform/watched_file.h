// A small file that another program writes, read again only when it may have changed. Half of it
// may be there at the moment of reading: what stands behind its last line end counts only once it
// was found the same twice.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "ports/clock.h"
#include "ports/files.h"
#include "text/field_reader.h"

namespace velt {

class WatchedFile {
 public:
  // Bigger ones are not what is looked for, and are not read.
  static constexpr uint64_t kMostBytes = 65'536;
  // Disks tell times in steps of up to two seconds: for so long after a change it is read each
  // time.
  static constexpr Milliseconds kCoarsestTime{2500};
  // When WantsSecondLook() does.
  static constexpr Milliseconds kSecondLook{10};

  // When there is no file of that name, one whose name differs only in upper and lower case is
  // taken.
  WatchedFile(const Files& files, const Clock& clock, std::filesystem::path path);

  // Another place from now on; as if nothing had been read yet.
  void Move(std::filesystem::path path);

  // Looks at the file. True when there is something else to be read than before.
  bool Look();

  // Another file took its place, which is whole as a rule, but its last line has no end: it need
  // not wait for the next round to be found the same twice. A file that is written where it lies
  // has to.
  bool WantsSecondLook() const { return secondLook_; }

  // We replaced it: whatever is found next is new.
  void Forget();

  // Whether it was there and could be read at the last look.
  bool IsThere() const { return content_.has_value(); }
  // What is read of it; without a file nothing.
  FieldReader Reader() const;

  // As they were found.
  const std::filesystem::path& Path() const { return found_; }
  std::string Bytes() const { return content_.value_or(""); }

 private:
  void FindOtherCase();

  const Files& files_;
  const Clock& clock_;
  std::filesystem::path path_;
  std::filesystem::path found_;
  std::optional<FileStamp> folder_;  // when its names were looked through
  std::optional<SteadyTime> folderSince_;
  std::optional<FileStamp> stamp_;
  SteadyTime stampSince_;
  std::optional<std::string> content_;
  bool settled_ = false;  // the same was read twice
  bool secondLook_ = false;
};

}  // namespace velt
