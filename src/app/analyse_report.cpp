#include "app/analyse_report.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <vector>

#include "app/system.h"
#include "ports/audio_input.h"
#include "text/formats.h"

namespace velt {

void AppendThreeDecimals(std::string& line, double value) {
  // The exact conversion costs more than the analysis. Thousandths in a whole number are as exact,
  // except beside a tie, where the product's own rounding could decide.
  const double thousandths = value * 1000.0;
  const double whole = std::floor(thousandths);
  const double rest = thousandths - whole;
  if (!(value >= 0.0 && value < 1e9) || std::abs(rest - 0.5) < 1e-3) {
    line += FixedText(value, 3);
    return;
  }
  auto number = static_cast<uint64_t>(whole) + (rest > 0.5 ? 1U : 0U);
  std::array<char, 24> digits{};
  char* at = digits.data() + digits.size();
  for (int place = 0; place < 4 || number != 0; ++place) {
    if (place == 3) *--at = '.';
    *--at = static_cast<char>('0' + number % 10);
    number /= 10;
  }
  line.append(at, digits.data() + digits.size());
}

const std::string& CsvLine::Format(int64_t block, const Reading& reading,
                                   const std::string& peakText, std::span<const double> heights) {
  line_.clear();
  line_ += std::to_string(block);
  line_ += ',';
  line_ += std::to_string(reading.dominantFrequencyHz);
  line_ += ',';
  line_ += peakText;
  line_ += ',';
  line_ += std::to_string(reading.smeterLevelTwips);
  for (const double height : heights) {
    line_ += ',';
    if (!std::isnan(height)) AppendThreeDecimals(line_, height);
  }
  line_ += '\n';
  return line_;
}

void AnalysisSummary::Count(const Reading& reading) {
  ++blocks_;
  ++strongest_[reading.silent ? std::nullopt : std::optional(reading.dominantFrequencyHz)];
}

std::string AnalysisSummary::Text(double seconds) const {
  constexpr size_t kMostFrequencies = 5;
  using Strongest = std::pair<std::optional<int32_t>, int64_t>;
  std::vector<Strongest> all(strongest_.begin(), strongest_.end());
  std::ranges::stable_sort(all, std::ranges::greater(), &Strongest::second);
  all.resize(std::min(all.size(), kMostFrequencies));

  const auto blocks = static_cast<double>(blocks_);
  const double analysed = blocks * Analyser::blockSamples / kSampleRateHz;
  std::string text = "Blocks: " + std::to_string(blocks_) + "\n";
  text += "Speed: " + FixedText(analysed / std::max(seconds, 1e-9), 0) + " times real time\n";
  text += "Strongest frequencies:";
  for (const auto& [frequencyHz, count] : all) {
    text += frequencyHz ? " " + std::to_string(*frequencyHz) + " Hz (" : " silence (";
    text += FixedText(100.0 * static_cast<double>(count) / blocks, 0) + " %)";
  }
  return text + "\n";
}

ProgressBar::ProgressBar() : terminal_(ErrorsGoToATerminal()) {}

void ProgressBar::Clear() {
  if (shown_) std::fputs("\r\x1b[K", stderr);
  shown_ = false;
}

void ProgressBar::Show(double share) {
  const int percent = static_cast<int>(std::clamp(share, 0.0, 1.0) * 100.0);
  if (!terminal_ || percent == percent_) return;
  percent_ = percent;
  shown_ = true;
  constexpr int kWidth = 40;
  const std::string bar(static_cast<size_t>(percent * kWidth / 100), '#');
  std::fprintf(stderr, "\r[%-*s] %3d %%", kWidth, bar.c_str(), percent);
}

}  // namespace velt
