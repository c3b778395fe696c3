// What an analysis of a file writes: lines of numbers, a summary, a progress bar.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "spectrum/analysis.h"

namespace velt {

// One line for each block, without a header: its number from 1, the dominant frequency, the text
// of the peak label, the S-meter level in twips, the height of each column step in pixels with
// three decimals. A height that cannot be formed is left empty.
class CsvWriter {
 public:
  // Returns the system's error number, 0 for success.
  int Open(const std::filesystem::path& path);
  void Write(int64_t tick, const Reading& reading, const std::string& peakText,
             std::span<const double> heights);
  // Returns the system's error number when anything was not written.
  int Close();

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Closer> file_;
  std::string line_;
  int error_ = 0;
};

// Appends a number with three decimals, as FixedText gives it.
void AppendThreeDecimals(std::string& line, double value);

// How often each dominant frequency came.
class StrongestFrequencies {
 public:
  void Count(int32_t frequencyHz) { ++counts_[frequencyHz]; }
  // The most frequent ones first, at most `most` of them: frequency and count.
  std::vector<std::pair<int32_t, int64_t>> Top(size_t most) const;

 private:
  std::map<int32_t, int64_t> counts_;
};

// A bar on standard error, when that is a terminal.
class ProgressBar {
 public:
  ProgressBar();
  ~ProgressBar();
  void Show(double share);

 private:
  bool shown_ = false;
  bool terminal_ = false;
  int percent_ = -1;
};

}  // namespace velt
