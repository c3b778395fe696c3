#include "app/file_clashes.h"

#include <vector>

#include "app/adapters.h"
#include "text/paths.h"

namespace velt {

namespace fs = std::filesystem;

namespace {

// Where the path leads, whether something is there yet or not.
fs::path Resolved(fs::path path) {
  std::error_code error;
  constexpr int kMostLinks = 40;
  for (int i = 0; i < kMostLinks && fs::is_symlink(path, error); ++i) {
    // A link's target is seen from the folder that the link is in; an absolute one from anywhere.
    path = path.parent_path() / fs::read_symlink(path, error);
  }
  return fs::weakly_canonical(fs::absolute(path, error), error);
}

bool IsSameFile(const fs::path& a, const fs::path& b) {
  std::error_code error;
  const bool same = fs::equivalent(a, b, error);
  return error ? Resolved(a) == Resolved(b) : same;
}

struct Named {
  const char* option;
  fs::path path;
};

}  // namespace

std::string FileClash(const Options& options) {
  const bool exports = !options.exportPresets.empty();
  const fs::path data = exports ? DataFolder(options) : fs::path();
  const Named read[] = {{"--analyse", options.analyse.file},
                        {"--input", options.input},
                        {"--import-presets", options.importPresets},
                        {"the presets", exports ? data / "ExpandPresets.ini" : data},
                        {"the older presets", exports ? data / "FreqSets.ini" : data}};
  const Named written[] = {
      {"--csv", options.analyse.csv},       {"--export-presets", options.exportPresets},
      {"--image", options.analyse.image},   {"--spectrogram", options.analyse.spectrogram},
      {"--screenshot", options.screenshot}, {"--log", options.logFile}};
  std::vector<Named> before(std::begin(read), std::end(read));
  for (const Named& file : written) {
    for (const Named& other : before) {
      if (file.path.empty() || other.path.empty() || !IsSameFile(file.path, other.path)) continue;
      return std::string(file.option) + " would write over the file of " + other.option + ", " +
             PathText(other.path) + ".";
    }
    before.push_back(file);
  }
  return "";
}

}  // namespace velt
