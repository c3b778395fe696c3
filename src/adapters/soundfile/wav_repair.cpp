#include "adapters/soundfile/wav_repair.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace velt {
namespace {

constexpr int64_t kRiffHeaderBytes = 12;
constexpr int64_t kChunkHeaderBytes = 8;
constexpr int64_t kRiffSizeOffset = 4;
// Writers that do not know the length yet claim about 2 or 4 GB.
constexpr int64_t kPlaceholderBytes = 0x7FFF0000;

uint32_t LittleEndian32(const char* bytes) {
  uint32_t value = 0;
  for (int i = 3; i >= 0; --i) value = (value << 8U) | static_cast<unsigned char>(bytes[i]);
  return value;
}

BytePatch SizePatch(int64_t offset, int64_t size) {
  BytePatch patch{.offset = offset};
  const auto limited = static_cast<uint32_t>(std::min<int64_t>(size, UINT32_MAX));
  for (size_t i = 0; i < patch.bytes.size(); ++i) {
    patch.bytes[i] = static_cast<char>((limited >> (8 * i)) & 0xFFU);
  }
  return patch;
}

// Whether the file goes on with whole chunks from there to its end, as it does after sound of no
// length. Sound itself does not look like that: a chunk's name is of letters.
bool OnlyChunksFollow(std::ifstream& file, int64_t position, int64_t fileSize) {
  std::array<char, kChunkHeaderBytes> chunk{};
  while (position < fileSize) {
    if (!file.seekg(position).read(chunk.data(), chunk.size())) return false;
    const bool named =
        std::all_of(chunk.begin(), chunk.begin() + 4, [](char c) { return c >= ' ' && c <= '~'; });
    if (!named) return false;
    const int64_t size = LittleEndian32(&chunk[4]);
    position += kChunkHeaderBytes + size + size % 2;
  }
  return position <= fileSize + 1;
}

}  // namespace

std::optional<WavRepair> FindWavRepair(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  const int64_t fileSize = file.tellg();
  std::array<char, kRiffHeaderBytes> riff{};
  if (!file.seekg(0).read(riff.data(), riff.size())) return std::nullopt;
  if (std::memcmp(riff.data(), "RIFF", 4) != 0 || std::memcmp(&riff[8], "WAVE", 4) != 0) {
    return std::nullopt;
  }
  int64_t position = kRiffHeaderBytes;
  std::array<char, kChunkHeaderBytes> chunk{};
  while (file.seekg(position).read(chunk.data(), chunk.size())) {
    const int64_t size = LittleEndian32(&chunk[4]);
    const int64_t start = position + kChunkHeaderBytes;
    if (std::memcmp(chunk.data(), "data", 4) != 0) {
      position = start + size + size % 2;
      continue;
    }
    const int64_t present = fileSize - start;
    const bool neverFinished = size == 0 && !OnlyChunksFollow(file, start, fileSize);
    if (size <= present && !neverFinished) return std::nullopt;
    return WavRepair{
        .patches = {SizePatch(kRiffSizeOffset, fileSize - kChunkHeaderBytes),
                    SizePatch(position + 4, present)},
        .warning = neverFinished || size >= kPlaceholderBytes
                       ? "the recording was never finished, it is read as far as it goes"
                       : "the file is cut off, " + std::to_string(size - present) +
                             " bytes of sound are missing"};
  }
  return std::nullopt;
}

PatchedFile::PatchedFile(const std::filesystem::path& path, std::vector<BytePatch> patches)
    : file_(path, std::ios::binary | std::ios::ate), patches_(std::move(patches)) {
  size_ = file_.tellg();
}

SNDFILE* PatchedFile::OpenSound(SF_INFO& info) {
  SF_VIRTUAL_IO io{};
  io.get_filelen = [](void* user) -> sf_count_t { return From(user).size_; };
  io.seek = [](sf_count_t offset, int whence, void* user) {
    return From(user).Seek(offset, whence);
  };
  io.read = [](void* target, sf_count_t count, void* user) {
    return From(user).Read(static_cast<char*>(target), count);
  };
  io.write = [](const void*, sf_count_t, void*) -> sf_count_t { return 0; };
  io.tell = [](void* user) -> sf_count_t { return From(user).position_; };
  return sf_open_virtual(&io, SFM_READ, &info, this);
}

sf_count_t PatchedFile::Seek(sf_count_t offset, int whence) {
  const int64_t base = whence == SEEK_CUR ? position_ : whence == SEEK_END ? size_ : 0;
  position_ = std::clamp<int64_t>(base + offset, 0, size_);
  return position_;
}

sf_count_t PatchedFile::Read(char* target, sf_count_t count) {
  file_.clear();
  file_.seekg(position_).read(target, count);
  const int64_t got = file_.gcount();
  for (const BytePatch& patch : patches_) {
    for (size_t i = 0; i < patch.bytes.size(); ++i) {
      const int64_t at = patch.offset + static_cast<int64_t>(i) - position_;
      if (at >= 0 && at < got) target[at] = patch.bytes[i];
    }
  }
  position_ += got;
  return got;
}

}  // namespace velt
