// Opens documents and addresses with the desktop's programs.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace velt {

class Launcher {
 public:
  virtual ~Launcher() = default;
  // Opens a file path, a web address or a mail link with its default program. Failures are ignored.
  virtual void OpenDocument(const std::string& target) = 0;

  // Starts a program; its folder becomes its current directory, and it outlives this one. Returns
  // the system's error number, 0 for success.
  virtual int StartProgram(const std::filesystem::path& program) = 0;

  // Starts a program that is looked for in the PATH, with arguments; it outlives this one. Returns
  // the system's error number, ENOENT when there is no such program, 0 for success.
  virtual int StartCommand(const std::vector<std::string>& command) = 0;

  enum class Start {
    Started,
    NoProgram,  // there is none for this kind of document, and the command was not found either
    Failed,     // there is one, and it could not be started
  };
  // Opens a document with the desktop's program for its kind or, where it has none, with `command`,
  // which the document's path is added to; an empty one leaves it to the desktop all the same. The
  // new program outlives this one; the document's folder is its current directory. `told` is called
  // once, later; not at all when this object ends before.
  virtual void StartDocument(const std::filesystem::path& document,
                             const std::vector<std::string>& command,
                             std::function<void(Start)> told) = 0;
};

}  // namespace velt
