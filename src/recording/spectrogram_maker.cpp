#include "recording/spectrogram_maker.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "spectrum/scale_ticks.h"
#include "text/formats.h"
#include "text/paths.h"

namespace velt {
namespace {

constexpr double kBlockSeconds = static_cast<double>(kBlockSamples) / kSampleRateHz;
// Thirty years. A file that claims more was written by somebody who did not know its length.
constexpr double kLongestSeconds = 1e9;

std::string LengthText(double seconds) {
  return TimeText(seconds, seconds < 10 ? 3 : seconds < 60 ? 1 : 0);
}

}  // namespace

std::string StrongestText(const RecordingSpectrogram& spectrogram) {
  const Spectrogram::Strongest& strongest = spectrogram.strongest;
  if (strongest.levelDb < spectrogramFloorDb) {
    return "nothing reaches " + FixedText(spectrogramFloorDb, 0) + " dB";
  }
  return "strongest " + FixedText(strongest.levelDb, 1) + " dB at " +
         FixedText(strongest.frequencyHz, 0) + " Hz, " +
         TimeText(spectrogram.fromSeconds + strongest.seconds, 1);
}

std::string SpectrogramMaker::Start(const SpectrogramWish& wish) {
  wish_ = wish;
  spectrogram_.reset();
  failure_.clear();
  next_ = blocks_ = 0;
  std::string reason = file_.Open(wish.file);
  if (!reason.empty()) return reason;
  const double seconds = file_.Info().DurationSeconds();
  if (seconds > 0 && seconds < kLongestSeconds) {
    blocks_ = static_cast<int64_t>(seconds / kBlockSeconds);
    Begin();
  }
  return failure_;
}

void SpectrogramMaker::Begin() {
  const SoundFileInfo info = file_.Info();
  const double counted = static_cast<double>(blocks_) * kBlockSeconds;
  const double told = info.DurationSeconds();
  const double seconds = told > 0 && told < kLongestSeconds ? told : counted;
  blocks_ = std::max<int64_t>(blocks_, 1);
  first_ = static_cast<int64_t>(std::floor(wish_.fromSeconds / kBlockSeconds));
  end_ = blocks_;
  if (wish_.toSeconds && *wish_.toSeconds < seconds) {
    end_ = std::min(end_, static_cast<int64_t>(std::ceil(*wish_.toSeconds / kBlockSeconds)));
  }
  if (first_ >= blocks_) {
    failure_ = PathText(wish_.file) + ": there is no sound from " + TimeText(wish_.fromSeconds, 0) +
               " on, it ends at " + LengthText(seconds);
    return;
  }
  end_ = std::max(end_, std::min(first_ + 2, blocks_));
  result_ = {.file = wish_.file,
             .length = LengthText(seconds) + ", " + std::to_string(info.channels) +
                       (info.channels == 1 ? " channel" : " channels") + " at " +
                       std::to_string(info.rateHz) + " Hz",
             .plot = {},
             .fromSeconds = static_cast<double>(first_) * kBlockSeconds,
             .toSeconds = static_cast<double>(end_) * kBlockSeconds,
             .topHz = std::min(info.rateHz, kSampleRateHz) / 2.0,
             .strongest = {}};
  spectrogram_.emplace(wish_.width, wish_.height, end_ - first_, result_.topHz);
}

bool SpectrogramMaker::Work() {
  if (!failure_.empty()) return false;
  const bool more = (!spectrogram_ || next_ < end_) && file_.ReadBlock(block_);
  if (!spectrogram_) {
    if (more) {
      ++blocks_;
    } else if (file_.Rewind()) {
      Begin();
    } else {
      failure_ = PathText(wish_.file) + ": the file cannot be read any more";
    }
    return failure_.empty();
  }
  if (more) {
    if (next_ >= first_) spectrogram_->Add(block_);
    ++next_;
    return true;
  }
  spectrogram_->Finish();
  result_.plot = spectrogram_->Plot();
  result_.strongest = spectrogram_->Peak();
  return false;
}

double SpectrogramMaker::Share() const {
  if (!spectrogram_) return 0.0;
  return static_cast<double>(next_) / static_cast<double>(end_);
}

RecordingSpectrogram SpectrogramMaker::Take() {
  spectrogram_.reset();
  return std::move(result_);
}

}  // namespace velt
