// What an analysis of a file writes: lines of numbers, a summary, a progress bar.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "spectrum/analysis.h"

namespace velt {

// The lines of numbers, one for each block, without a header: the block's number from 1, the
// dominant frequency, the text of the peak label, the S-meter level in twips, the height of each
// column step in pixels with three decimals. A height that cannot be formed is left empty.
class CsvLine {
 public:
  // With the line's end; valid until the next call.
  std::string_view Format(int64_t block, const Reading& reading, const std::string& peakText,
                          std::span<const double> heights);

 private:
  std::vector<char> room_;
};

// What an analysis found, block by block.
class AnalysisSummary {
 public:
  void Count(const Reading& reading);
  int64_t Blocks() const { return blocks_; }

  // Some lines for people, after as many seconds of work. The frequencies that were the strongest
  // ones most often come first.
  std::string Text(double seconds) const;

 private:
  int64_t blocks_ = 0;
  // How often each was the strongest; none at all is silence.
  std::map<std::optional<int32_t>, int64_t> strongest_;
};

// A bar on standard error, when that is a terminal.
class ProgressBar {
 public:
  ProgressBar();
  ~ProgressBar() { Clear(); }
  void Show(double share);
  void Clear();

 private:
  bool shown_ = false;
  bool terminal_ = false;
  int percent_ = -1;
};

}  // namespace velt
