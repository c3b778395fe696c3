// Boxes in which the user names a file. They stand beside the program's window without blocking it;
// the answer comes to a continuation in a later turn of the loop, or never when the program ends
// first.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
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
  // A question of whoever holds it. Destroying it closes that question, if it is open still; its
  // continuation does not run any more.
  class Question {
   public:
    virtual ~Question() = default;
  };

  virtual ~FileChooser() = default;

  // The answer is empty when cancelled. Whether a file is there already, or at all, the user was
  // not asked. A second question while one is open, whoever's, only brings that to the front: null
  // is returned and nothing is called.
  [[nodiscard]] virtual std::unique_ptr<Question> Ask(
      const FileQuestion& question,
      std::function<void(std::optional<std::filesystem::path>)> answered) = 0;
};

}  // namespace velt
