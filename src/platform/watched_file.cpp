#include "platform/watched_file.h"

#include <utility>

#include "text/formats.h"
#include "text/paths.h"

namespace velt {

WatchedFile::WatchedFile(const Files& files, const Clock& clock, std::filesystem::path path)
    : files_(files), clock_(clock), path_(std::move(path)), found_(path_) {}

void WatchedFile::Move(std::filesystem::path path) {
  if (path == path_) return;
  path_ = std::move(path);
  found_ = path_;
  folder_.reset();
  stamp_.reset();
  content_.reset();
  settled_ = false;
  secondLook_ = false;
}

void WatchedFile::Forget() {
  stamp_ = files_.Stamp(found_);
  stampSince_ = clock_.Elapsed();
  content_.reset();
  settled_ = false;
}

bool WatchedFile::Look() {
  const SteadyTime now = clock_.Elapsed();
  secondLook_ = false;
  std::optional<FileStamp> stamp = files_.Stamp(found_);
  if (!stamp) {
    FindOtherCase();
    stamp = files_.Stamp(found_);
  }
  if (stamp != stamp_) {
    stampSince_ = now;
  } else if (settled_ && now - stampSince_ > kCoarsestTime) {
    return false;
  }
  const bool rewritten = stamp != stamp_;
  const bool another = stamp && stamp_ && stamp->file != stamp_->file;
  stamp_ = stamp;

  std::optional<std::string> content;
  if (stamp && stamp->bytes <= kMostBytes) {
    FileContent read = files_.Read(found_);
    if (read.error == 0 && read.bytes.size() <= kMostBytes) content = std::move(read.bytes);
  }
  const bool same = content == content_;
  const bool settles = same && !settled_;
  settled_ = same;
  content_ = std::move(content);
  const bool tail =
      content_ && !content_->empty() && content_->back() != '\n' && content_->back() != '\r';
  secondLook_ = another && tail && !settled_;
  // Settling shows what stands behind the last line end.
  return !same || (rewritten && content_) || (settles && tail);
}

FieldReader WatchedFile::Reader() const {
  const std::string_view text = content_ ? std::string_view(*content_) : std::string_view();
  return FieldReader(text, settled_ ? FieldReader::Tail::Whole : FieldReader::Tail::MayGoOn);
}

void WatchedFile::FindOtherCase() {
  found_ = path_;
  const std::filesystem::path folder = path_.parent_path();
  const std::optional<FileStamp> stamp = files_.Stamp(folder);
  const SteadyTime now = clock_.Elapsed();
  // A folder without it is looked through again only when something in it changed.
  if (!stamp) return;
  if (stamp != folder_) {
    folder_ = stamp;
    folderSince_ = now;
  } else if (folderSince_ && now - *folderSince_ > kCoarsestTime) {
    return;
  }
  const std::string wanted = Lowered(PathText(path_.filename()));
  for (const std::filesystem::path& name : files_.Names(folder)) {
    if (Lowered(PathText(name)) != wanted) continue;
    found_ = folder / name;
    return;
  }
}

}  // namespace velt
