#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "adapters/soundfile/wav_file.h"

namespace velt {
namespace {

constexpr int kLastNumber = 999;
constexpr uint64_t kHeaderBytes = 44;

// The library tells errors in words only.
int LastError() {
  return errno != 0 ? errno : EIO;
}

// Makes the new name in the folder last.
void FlushFolder(const std::filesystem::path& folder) {
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  ::fsync(descriptor);
  ::close(descriptor);
}

}  // namespace

WavFile::WavFile(std::filesystem::path wanted, int32_t rateHz, uint64_t mostFrames)
    : wanted_(std::move(wanted)),
      rateHz_(rateHz),
      mostFrames_(mostFrames),
      sound_(nullptr, sf_close) {}

WavFile::~WavFile() {
  Finish();
}

int WavFile::Create() {
  std::filesystem::path path;
  do {
    path = wanted_;
    if (number_ > 1) {
      path.replace_filename(wanted_.stem().string() + "_" + std::to_string(number_) +
                            wanted_.extension().string());
    }
    constexpr int kNew = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
    descriptor_ = ::open(path.c_str(), kNew, S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH);
  } while (descriptor_ < 0 && errno == EEXIST && number_++ < kLastNumber);
  if (descriptor_ < 0) return errno;
  path_ = std::move(path);
  ++number_;
  frames_ = 0;
  SF_INFO info{0, rateHz_, 2, SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0, 0};
  errno = 0;
  sound_.reset(sf_open_fd(descriptor_, SFM_WRITE, &info, SF_FALSE));
  if (!sound_) {
    const int error = LastError();
    ::close(std::exchange(descriptor_, -1));
    ::unlink(path_.c_str());  // it is ours, and empty
    path_.clear();
    return error;
  }
  const int error = UpdateHeader();
  FlushFolder(path_.parent_path());
  return error;
}

int WavFile::Append(std::span<const int16_t> samples) {
  while (!samples.empty()) {
    const uint64_t room = (mostFrames_ - frames_) * 2;
    if (room == 0) {
      if (const int error = Finish()) return error;
      if (const int error = Create()) return error;
      continue;
    }
    const auto piece = samples.first(std::min<uint64_t>(samples.size(), room));
    if (const int error = WriteFrames(piece)) return error;
    samples = samples.subspan(piece.size());
  }
  return 0;
}

int WavFile::WriteFrames(std::span<const int16_t> samples) {
  const auto frames = static_cast<sf_count_t>(samples.size() / 2);
  errno = 0;
  const sf_count_t written = sf_writef_short(sound_.get(), samples.data(), frames);
  frames_ += static_cast<uint64_t>(std::max<sf_count_t>(written, 0));
  if (written == frames) return 0;
  failed_ = true;
  return LastError();
}

int WavFile::UpdateHeader() {
  sf_command(sound_.get(), SFC_UPDATE_HEADER_NOW, nullptr, 0);
  struct stat written = {};
  // The library does not tell when its header did not fit.
  if (::fstat(descriptor_, &written) != 0) return errno;
  return static_cast<uint64_t>(written.st_size) < kHeaderBytes ? ENOSPC : 0;
}

int WavFile::Commit(bool toDisk) {
  if (const int error = UpdateHeader()) return error;
  if (toDisk && ::fdatasync(descriptor_) != 0) return errno;
  struct stat there = {};
  struct stat ours = {};
  if (::stat(path_.c_str(), &there) != 0) return errno;
  if (::fstat(descriptor_, &ours) != 0) return errno;
  return there.st_ino == ours.st_ino && there.st_dev == ours.st_dev ? 0 : ENOENT;
}

int WavFile::Finish() {
  if (!sound_) return 0;
  // A full disk may have taken a part of a frame.
  const auto whole = static_cast<off_t>(kHeaderBytes + frames_ * kFrameBytes);
  int error = failed_ && ::ftruncate(descriptor_, whole) != 0 ? errno : 0;
  sound_.reset();
  if (::fdatasync(descriptor_) != 0 && error == 0) error = errno;
  if (::close(std::exchange(descriptor_, -1)) != 0 && error == 0) error = errno;
  failed_ = false;
  return error;
}

}  // namespace velt
