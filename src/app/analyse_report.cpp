#include "app/analyse_report.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <vector>

#include "app/system.h"
#include "ports/audio_input.h"
#include "text/formats.h"

namespace velt {

namespace {

// Whole numbers from 0 to 999 as texts, copied four bytes at a time.
struct ThousandTexts {
  using Four = std::array<char, 4>;
  std::array<Four, 1000> decimals{};  // ".007"
  std::array<Four, 1000> plain{};     // "7", the last byte is the text's length

  ThousandTexts() {
    for (size_t number = 0; number < 1000; ++number) {
      const std::string text = std::to_string(number);
      decimals[number] = {'.', '0', '0', '0'};
      std::ranges::copy_backward(text, decimals[number].end());
      std::ranges::copy(text, plain[number].begin());
      plain[number][3] = static_cast<char>(text.size());
    }
  }
};

// More than FixedText needs for any number.
constexpr size_t kMostCharacters = 320;

// With three decimals, as FixedText gives it; nothing for NaN. Returns where the text ends.
char* PutThreeDecimals(char* at, double value, const ThousandTexts& texts) {
  // The exact conversion costs more than the analysis. Thousandths in a whole number are as exact,
  // except beside a tie, where the product's own rounding could decide.
  const double thousandths = value * 1000.0;
  if (thousandths >= 0.0 && thousandths < 1e9) {
    auto number = static_cast<uint32_t>(static_cast<int32_t>(thousandths));
    const double rest = thousandths - number;
    if (std::abs(rest - 0.5) >= 1e-6) {
      number += rest > 0.5 ? 1U : 0U;
      const uint32_t whole = number / 1000;
      if (whole < 1000) {
        std::ranges::copy(texts.plain[whole], at);
        at += texts.plain[whole][3];
      } else {
        at = std::to_chars(at, at + kMostCharacters, whole).ptr;
      }
      return std::ranges::copy(texts.decimals[number % 1000], at).out;
    }
  }
  return std::isnan(value) ? at : std::ranges::copy(FixedText(value, 3), at).out;
}

}  // namespace

std::string_view CsvLine::Format(int64_t block, const Reading& reading, const std::string& peakText,
                                 std::span<const double> heights) {
  static const ThousandTexts texts;
  const std::string start = std::to_string(block) + ',' +
                            std::to_string(reading.dominantFrequencyHz) + ',' + peakText + ',' +
                            std::to_string(reading.smeterLevelTwips);
  // Room for whatever comes: asking before each number costs as much as writing it.
  const size_t most = start.size() + heights.size() * (1 + kMostCharacters) + 1;
  if (room_.size() < most) room_.resize(most);
  char* at = std::ranges::copy(start, room_.data()).out;
  for (const double height : heights) {
    *at++ = ',';
    at = PutThreeDecimals(at, height, texts);
  }
  *at++ = '\n';
  return {room_.data(), at};
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
