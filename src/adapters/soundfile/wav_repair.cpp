#include "adapters/soundfile/wav_repair.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

namespace velt {
namespace {

constexpr int64_t kChunkHeaderBytes = 8;
// Writers that do not know the length yet claim about 2 or 4 GB.
constexpr int64_t kPlaceholderBytes = 0x7FFF0000;

uint32_t LittleEndian32(const char* bytes) {
  uint32_t value = 0;
  for (int i = 3; i >= 0; --i) value = (value << 8U) | static_cast<unsigned char>(bytes[i]);
  return value;
}

std::string LittleEndian(uint64_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>((value >> (8 * i)) & 0xFFU);
  return text;
}

// A chunk's name is of letters; what is not is no place to go on from.
bool IsNamed(const char* chunk) {
  return std::all_of(chunk, chunk + 4, [](char c) { return c >= ' ' && c <= '~'; });
}

// Whether from there on the file consists of whole chunks up to its end, as it does behind sound.
// Sound itself does not look like that.
bool OnlyChunksFollow(std::ifstream& file, int64_t position, int64_t fileSize) {
  std::array<char, kChunkHeaderBytes> chunk{};
  while (fileSize - position >= kChunkHeaderBytes) {
    if (!file.seekg(position).read(chunk.data(), chunk.size())) return false;
    if (!IsNamed(chunk.data())) return false;
    const int64_t size = LittleEndian32(&chunk[4]);
    position += kChunkHeaderBytes + size + size % 2;
  }
  return position <= fileSize + 1;
}

// What is wrong with sound that is said to be that long and begins there; empty when nothing is.
std::string LengthFault(std::ifstream& file, int64_t start, int64_t size, int64_t fileSize) {
  const int64_t present = fileSize - start;
  // Some writers forget the byte that fills an odd length up.
  const bool ends = size <= present && (OnlyChunksFollow(file, start + size, fileSize) ||
                                        OnlyChunksFollow(file, start + size + size % 2, fileSize));
  if (ends) return "";
  if (size == 0 || size >= kPlaceholderBytes) {
    return "the recording was never finished, it is read as far as it goes";
  }
  if (size > present) {
    return "the file is cut off, " + std::to_string(size - present) + " bytes of sound are missing";
  }
  return "the file is longer than its header says, it is read to its end";
}

// The header's begin for that much sound. Lengths beyond 32 bits stand in a chunk of their own, by
// which the sound library knows another kind of file.
std::string BeginFor(int64_t riffSize, int64_t dataSize) {
  if (riffSize <= UINT32_MAX) {
    return "RIFF" + LittleEndian(static_cast<uint64_t>(riffSize), 4) + "WAVE";
  }
  constexpr uint64_t kLongLengthsBytes = 28;
  const auto riff = static_cast<uint64_t>(riffSize) + kChunkHeaderBytes + kLongLengthsBytes;
  return "RF64" + LittleEndian(UINT32_MAX, 4) + "WAVEds64" + LittleEndian(kLongLengthsBytes, 4) +
         LittleEndian(riff, 8) + LittleEndian(static_cast<uint64_t>(dataSize), 8) +
         std::string(12, '\0');
}

}  // namespace

std::optional<WavRepair> FindWavRepair(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  const int64_t fileSize = file.tellg();
  std::array<char, WavRepair::kBeginReplaced> riff{};
  if (!file.seekg(0).read(riff.data(), riff.size())) return std::nullopt;
  if (std::memcmp(riff.data(), "RIFF", 4) != 0 || std::memcmp(&riff[8], "WAVE", 4) != 0) {
    return std::nullopt;
  }
  int64_t position = WavRepair::kBeginReplaced;
  std::array<char, kChunkHeaderBytes> chunk{};
  while (file.seekg(position).read(chunk.data(), chunk.size())) {
    const int64_t size = LittleEndian32(&chunk[4]);
    const int64_t start = position + kChunkHeaderBytes;
    if (!IsNamed(chunk.data())) return std::nullopt;
    if (std::memcmp(chunk.data(), "data", 4) != 0) {
      position = start + size + size % 2;
      continue;
    }
    std::string fault = LengthFault(file, start, size, fileSize);
    if (fault.empty()) return std::nullopt;
    const int64_t present = fileSize - start;
    return WavRepair{.begin = BeginFor(fileSize - kChunkHeaderBytes, present),
                     .dataSizeOffset = position + 4,
                     .dataSize = static_cast<uint32_t>(std::min<int64_t>(present, UINT32_MAX)),
                     .warning = std::move(fault)};
  }
  return std::nullopt;
}

PatchedFile::PatchedFile(const std::filesystem::path& path, WavRepair repair)
    : file_(path, std::ios::binary | std::ios::ate), repair_(std::move(repair)) {
  size_ = ShiftedFrom(file_.tellg());
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
  // The begin is as long as the bytes that it replaces, or longer: what is read of the file below
  // it is overlaid.
  count = std::min(count, size_ - position_);
  const int64_t shift = ShiftedFrom(0);
  const int64_t skipped = std::clamp<int64_t>(shift - position_, 0, count);
  file_.clear();
  file_.seekg(position_ + skipped - shift).read(target + skipped, count - skipped);
  const int64_t got = skipped + file_.gcount();
  Overlay(repair_.begin, 0, target, got);
  Overlay(LittleEndian(repair_.dataSize, 4), ShiftedFrom(repair_.dataSizeOffset), target, got);
  position_ += got;
  return got;
}

void PatchedFile::Overlay(std::string_view bytes, int64_t offset, char* target, int64_t got) const {
  for (size_t i = 0; i < bytes.size(); ++i) {
    const int64_t at = offset + static_cast<int64_t>(i) - position_;
    if (at >= 0 && at < got) target[at] = bytes[i];
  }
}

}  // namespace velt
