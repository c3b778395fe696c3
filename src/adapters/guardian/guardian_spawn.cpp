#include "adapters/guardian/guardian_spawn.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <string>

namespace velt {
namespace {

pid_t Spawn(int guardiansEnd) {
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawnattr_init(&attributes);

  constexpr int kNumber = GuardianSocket::kGuardiansNumber;
  ::posix_spawn_file_actions_adddup2(&actions, guardiansEnd, kNumber);
  ::posix_spawn_file_actions_addclose(&actions, STDIN_FILENO);
  ::posix_spawn_file_actions_addclose(&actions, STDOUT_FILENO);
  ::posix_spawn_file_actions_addclosefrom_np(&actions, kNumber + 1);

  // Whatever signals the caller ignores or blocks is not the guardian's affair. Those that end a
  // whole session come in blocked, until it ignores them.
  sigset_t blocked;
  sigset_t usual;
  sigemptyset(&blocked);
  for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) sigaddset(&blocked, number);
  sigfillset(&usual);
  ::posix_spawnattr_setsigmask(&attributes, &blocked);
  ::posix_spawnattr_setsigdefault(&attributes, &usual);
  ::posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

  std::string name = "velt-guardian";
  std::string option = "--guardian";
  const std::array<char*, 3> arguments{name.data(), option.data(), nullptr};
  pid_t process = -1;
  if (::posix_spawn(&process, "/proc/self/exe", &actions, &attributes, arguments.data(), environ) !=
      0) {
    process = -1;
  }
  ::posix_spawnattr_destroy(&attributes);
  ::posix_spawn_file_actions_destroy(&actions);
  return process;
}

// Free of the numbers that the guardian's descriptors get.
Descriptor MovedUp(int number) {
  Descriptor old(number);
  return Descriptor(::fcntl(number, F_DUPFD_CLOEXEC, GuardianSocket::kGuardiansNumber + 1));
}

}  // namespace

GuardianSpawn SpawnGuardian() {
  std::array<int, 2> ends{-1, -1};
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) return {};
  Descriptor near = MovedUp(ends[0]);
  const Descriptor far = MovedUp(ends[1]);
  if (!near.IsOpen() || !far.IsOpen()) return {};
  const pid_t process = Spawn(far.Number());
  if (process < 0) return {};
  return {GuardianSocket(std::move(near)), process};
}

}  // namespace velt
