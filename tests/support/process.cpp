#include "support/process.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <system_error>
#include <thread>

namespace velt {
bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

std::string ReadText(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& folder) {
  const std::filesystem::directory_iterator entries(folder);
  std::vector<std::filesystem::path> files(begin(entries), end(entries));
  std::ranges::sort(files);
  return files;
}

Process::Process(const std::vector<std::string>& command, const Options& options) {
  // Everything that allocates comes before the fork: another thread may hold the allocator's lock.
  // With env(1) the last of equal names counts.
  std::vector<std::string> texts{"env"};
  texts.insert(texts.end(), options.environment.rbegin(), options.environment.rend());
  texts.insert(texts.end(), command.begin(), command.end());
  std::vector<char*> arguments;
  for (std::string& text : texts) arguments.push_back(text.data());
  arguments.push_back(nullptr);
  const pid_t parent = getpid();
  id_ = fork();
  if (id_ < 0) throw std::system_error(errno, std::generic_category(), "fork");
  // On both sides, as either may be the first to need it.
  setpgid(static_cast<pid_t>(id_), 0);
  if (id_ > 0) return;

  // A test that is killed takes its programs with it.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(127);
  const auto openAs = [](int descriptor, const char* path) {
    const int opened = open(path, O_WRONLY | O_CREAT | O_APPEND, 0600);
    if (opened < 0 || (opened != descriptor && dup2(opened, descriptor) < 0)) _exit(127);
    if (opened != descriptor) close(opened);
  };
  openAs(STDOUT_FILENO, options.output.c_str());
  dup2(STDOUT_FILENO, STDERR_FILENO);
  for (const auto& [descriptor, path] : options.files) openAs(descriptor, path.c_str());
  execvp(arguments[0], arguments.data());
  _exit(127);
}

Process::~Process() {
  Signal(SIGTERM);
  Signal(SIGCONT);  // a stopped program would not see the request
  if (!WaitForEnd(std::chrono::seconds(2))) Kill();
}

bool Process::Running() {
  int status = 0;
  if (!exitCode_ && waitpid(static_cast<pid_t>(id_), &status, WNOHANG) == id_) {
    exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }
  return !exitCode_;
}

void Process::Signal(int signal) {
  if (Running()) kill(static_cast<pid_t>(id_), signal);
}

void Process::Kill() {
  Signal(SIGKILL);
  WaitForEnd(std::chrono::seconds(5));
}

void Process::KillGroup() {
  if (Running()) kill(-static_cast<pid_t>(id_), SIGKILL);
}

std::string Output(std::vector<std::string> command, const std::vector<std::string>& environment) {
  const TempFolder folder;
  // The environment may have a PATH that is meant for the program alone.
  if (command.front().front() != '/') command.front().insert(0, "/usr/bin/");
  Process process(command, {.environment = environment, .output = folder / "output"});
  return process.WaitForEnd(std::chrono::seconds(10)) ? ReadText(folder / "output") : "";
}

int64_t GuardianOf(int64_t program) {
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream stat(entry.path() / "stat");
    int64_t id = 0, itsParent = 0;
    std::string name, state;
    stat >> id >> name >> state >> itsParent;
    if (stat && itsParent == program && name == "(velt-guardian)" && state != "Z") return id;
  }
  return 0;
}

bool IsAlive(int64_t process) {
  std::ifstream stat("/proc/" + std::to_string(process) + "/stat");
  std::string id, name, state;
  return stat >> id >> name >> state && state != "Z";
}

}  // namespace velt
