#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include "app/system.h"

namespace velt {
namespace {

// A signal handler reaches nothing but what stands here.
volatile sig_atomic_t interrupted = 0;

}  // namespace

void PrepareProcess() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // The other way round, so that writing to it is still told as an error.
    const int direction = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
    if (::fcntl(stream, F_GETFD) < 0) ::open("/dev/null", direction);
  }
  ::signal(SIGXFSZ, SIG_IGN);
}

void NoteInterrupts() {
  struct sigaction action {};
  action.sa_handler = [](int) { interrupted = 1; };
  // Nothing is restarted: a pipe that nobody reads would hold the program.
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before {};
    // What whoever started the program wants ignored stays so.
    if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
      ::sigaction(signal, &action, nullptr);
    }
  }
}

bool Interrupted() {
  return interrupted != 0;
}

std::vector<std::string> ArgumentTexts(int argc, char** argv) {
  // The first of them need not be there.
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

std::filesystem::path ProgramFolder() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

bool ErrorsGoToATerminal() {
  return ::isatty(STDERR_FILENO) == 1;
}

}  // namespace velt
