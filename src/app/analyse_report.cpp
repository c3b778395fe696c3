#include "app/analyse_report.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>

#include "app/system.h"
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

int CsvWriter::Open(const std::filesystem::path& path) {
  file_.reset(std::fopen(path.c_str(), "we"));
  return file_ ? 0 : errno;
}

void CsvWriter::Write(int64_t tick, const Reading& reading, const std::string& peakText,
                      std::span<const double> heights) {
  line_.clear();
  line_ += std::to_string(tick);
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
  if (std::fwrite(line_.data(), 1, line_.size(), file_.get()) != line_.size() && error_ == 0) {
    error_ = errno;
  }
}

int CsvWriter::Close() {
  if (std::FILE* file = file_.release()) {
    if (std::fclose(file) != 0 && error_ == 0) error_ = errno;
  }
  return error_;
}

std::vector<std::pair<int32_t, int64_t>> StrongestFrequencies::Top(size_t most) const {
  std::vector<std::pair<int32_t, int64_t>> all(counts_.begin(), counts_.end());
  std::stable_sort(all.begin(), all.end(),
                   [](const auto& a, const auto& b) { return a.second > b.second; });
  all.resize(std::min(all.size(), most));
  return all;
}

ProgressBar::ProgressBar() : terminal_(ErrorsGoToATerminal()) {}

ProgressBar::~ProgressBar() {
  if (shown_) std::fputs("\r\x1b[K", stderr);
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
