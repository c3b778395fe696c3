#include "app/unmet_need.h"

#include "adapters/files/disk_files.h"
#include "adapters/soundfile/sound_file_reader.h"
#include "text/error_text.h"
#include "text/paths.h"

namespace velt {
namespace {

std::string DataFolderProblem(const std::filesystem::path& folder) {
  DiskFiles files;
  const auto trial = folder / ".velt-sa-trial";
  int error = files.MakeFolder(folder);
  if (error == 0) error = files.Replace(trial, "", false);
  if (error == 0) error = files.Remove(trial);
  if (error == 0) return "";
  return "The data folder " + PathText(folder) + " cannot be used: " + ErrorText(error);
}

}  // namespace

std::string UnmetNeed(const Options& options) {
  if (options.run == Options::Run::Headless && !options.input.empty()) {
    // A window says so itself; here nobody sees it.
    SoundFileReader reader;
    if (std::string problem = reader.Open(options.input); !problem.empty()) return problem;
  }
  const bool writes = options.run != Options::Run::Reset && !options.dataFolder.empty();
  return writes ? DataFolderProblem(options.dataFolder) : "";
}

}  // namespace velt
