// Boxes in which the user names a file. They stand beside the program's window without blocking it;
// the answer comes to a continuation in a later turn of the loop, or never when the program ends
// first.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velt {

struct FileQuestion {
  std::string title;
  std::filesystem::path folder;  // where to look first
  // Of a file to be written: what is proposed. Empty: one that is there is looked for.
  std::filesystem::path name = {};
  std::string kind;                   // "Sound files"
  std::vector<std::string> patterns;  // "*.wav"; other files can be chosen all the same
  std::string ending = {};            // "png": what a typed name without any gets
};

class FileChooser {
 public:
  virtual ~FileChooser() = default;

  // Empty when cancelled. Whether a file is there already, or at all, the user was not asked. A
  // second question while one is open only brings that to the front: 0 is returned and nothing is
  // called. Else returns the question's number.
  virtual uint32_t Ask(const FileQuestion& question,
                       std::function<void(std::optional<std::filesystem::path>)> answered) = 0;
  // Closes that question, and no other: several dialogs share the chooser. Its continuation does
  // not run any more. Nothing for 0, or one that is answered.
  virtual void Drop(uint32_t question) = 0;
};

}  // namespace velt
