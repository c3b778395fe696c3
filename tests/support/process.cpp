#include "support/process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <thread>

namespace velt {
namespace {

int NumberOf(ProcessSignal signal) {
  switch (signal) {
    case ProcessSignal::Terminate:
      return SIGTERM;
    case ProcessSignal::Interrupt:
      return SIGINT;
    case ProcessSignal::HangUp:
      return SIGHUP;
    case ProcessSignal::Quit:
      return SIGQUIT;
    case ProcessSignal::User:
      return SIGUSR1;
    case ProcessSignal::Alarm:
      return SIGALRM;
    case ProcessSignal::Crash:
      return SIGSEGV;
    case ProcessSignal::Kill:
      return SIGKILL;
    case ProcessSignal::Stop:
      return SIGSTOP;
    case ProcessSignal::Continue:
      return SIGCONT;
  }
  throw std::invalid_argument("signal");
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

std::vector<std::string> EnvironmentWith(const std::vector<std::string>& additions) {
  // The first of two equal names counts.
  std::vector<std::string> environment = additions;
  for (char** entry = environ; *entry; ++entry) environment.emplace_back(*entry);
  std::map<std::string, std::string> byName;
  for (std::string& entry : environment) {
    byName.try_emplace(entry.substr(0, entry.find('=')), std::move(entry));
  }
  environment.clear();
  for (auto& [name, entry] : byName) environment.push_back(std::move(entry));
  return environment;
}

}  // namespace

bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

std::string ReadText(const std::filesystem::path& file) {
  std::ostringstream text;
  text << std::ifstream(file, std::ios::binary).rdbuf();
  return text.str();
}

Process::Process(const std::vector<std::string>& command, const Options& options)
    : ownGroup_(options.ownGroup) {
  // Everything that allocates comes before the fork: another thread may hold the allocator's lock.
  std::vector<std::string> commandTexts = command;
  const std::vector<char*> arguments = Pointers(commandTexts);
  std::vector<std::string> environmentTexts = EnvironmentWith(options.environment);
  const std::vector<char*> environment = Pointers(environmentTexts);
  const pid_t parent = getpid();
  id_ = fork();
  if (id_ < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (id_ > 0) {
    // On both sides, as either may be the first to need it.
    if (ownGroup_) setpgid(static_cast<pid_t>(id_), 0);
    return;
  }

  // A test that is killed takes its programs with it.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(127);
  if (options.ownGroup) setpgid(0, 0);
  const auto openAs = [](int descriptor, const char* path) {
    const int opened = open(path, O_WRONLY | O_CREAT | O_APPEND, 0600);
    if (opened < 0 || (opened != descriptor && dup2(opened, descriptor) < 0)) _exit(127);
    if (opened != descriptor) close(opened);
  };
  openAs(STDOUT_FILENO, options.output.c_str());
  dup2(STDOUT_FILENO, STDERR_FILENO);
  for (const auto& [descriptor, path] : options.files) openAs(descriptor, path.c_str());
  execvpe(arguments[0], arguments.data(), environment.data());
  _exit(127);
}

Process::~Process() {
  Signal(ProcessSignal::Terminate);
  Signal(ProcessSignal::Continue);  // a stopped program would not see the request
  if (!WaitForEnd(std::chrono::seconds(2))) Kill();
}

bool Process::Running() {
  int status = 0;
  if (!exitCode_ && waitpid(static_cast<pid_t>(id_), &status, WNOHANG) == id_) {
    exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }
  return !exitCode_;
}

void Process::Signal(ProcessSignal signal) {
  if (Running()) kill(static_cast<pid_t>(id_), NumberOf(signal));
}

void Process::Kill() {
  Signal(ProcessSignal::Kill);
  WaitForEnd(std::chrono::seconds(5));
}

void Process::KillGroup() {
  if (!ownGroup_) throw std::logic_error("it is in the test's own group");
  if (Running()) kill(-static_cast<pid_t>(id_), SIGKILL);
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
