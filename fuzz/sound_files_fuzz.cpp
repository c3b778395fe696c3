// Sound files: whatever they contain, they are read as far as they go, each time the same; and a
// repaired header needs no repair.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

#include "adapters/soundfile/sound_file_reader.h"
#include "adapters/soundfile/wav_repair.h"
#include "require.h"

namespace {

using velt::kBlockSamples;

// Some formats claim any length and give silence for what is missing.
constexpr size_t kMostBlocks = 500;

// A file in memory with a name.
class MemoryFile {
 public:
  explicit MemoryFile(const std::vector<char>& bytes)
      : descriptor_(::memfd_create("sound", MFD_CLOEXEC)) {
    const auto size = static_cast<ssize_t>(bytes.size());
    Require(::write(descriptor_, bytes.data(), bytes.size()) == size, "the file can be made");
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { ::close(descriptor_); }
  std::string Path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  int descriptor_;
};

std::vector<int16_t> ReadSome(velt::SoundFileReader& reader) {
  std::vector<int16_t> samples;
  std::array<int16_t, kBlockSamples> block{};
  for (size_t i = 0; i < kMostBlocks && reader.ReadBlock(block); ++i) {
    samples.insert(samples.end(), block.begin(), block.end());
  }
  return samples;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  std::vector<char> bytes(data, data + size);
  const MemoryFile file(bytes);

  velt::SoundFileReader reader;
  if (reader.Open(file.Path()).empty()) {
    const auto info = reader.Info();
    Require(info.channels > 0 && info.rateHz > 0, "a file that can be read says what it is");
    const auto samples = ReadSome(reader);
    Require(!samples.empty(), "a file that can be read has a block");
    velt::SoundFileReader second;
    Require(second.Open(file.Path()).empty() && ReadSome(second) == samples,
            "a file reads the same another time");
    // The sound library goes back to another place in files that lie about where their sound is.
    if (reader.Rewind()) ReadSome(reader);
  }

  if (const auto repair = velt::FindWavRepair(file.Path())) {
    const int64_t offset = repair->dataSizeOffset;
    Require(offset >= velt::WavRepair::kBeginReplaced && offset + 4 <= static_cast<int64_t>(size),
            "a repair lies within the file");
    for (int i = 0; i < 4; ++i) {
      bytes[static_cast<size_t>(offset + i)] = static_cast<char>(repair->dataSize >> (8 * i));
    }
    bytes.erase(bytes.begin(), bytes.begin() + velt::WavRepair::kBeginReplaced);
    bytes.insert(bytes.begin(), repair->begin.begin(), repair->begin.end());
    Require(!velt::FindWavRepair(MemoryFile(bytes).Path()), "what was repaired needs no repair");
  }
  return 0;
}
