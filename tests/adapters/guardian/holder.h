// A small program that keys the dummy rig's server and holds it.
#pragma once

#include <QCoreApplication>
#include <QTcpSocket>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

#include "adapters/guardian/guardian_process.h"
#include "adapters/qt/qt_scheduler.h"
#include "support/rig_recipe.h"

namespace velt {

// PORT LOG-FILE: in a group of processes of its own, holds what is at the port and keys it, and
// says so. Without an answer from there it still holds.
inline int RunHolder(int argc, char** argv) {
  ::setpgid(0, 0);
  GuardianSpawn spawn = SpawnGuardian();
  const QCoreApplication application(argc, argv);
  QtScheduler scheduler;
  GuardianProcess guardian(scheduler, std::move(spawn));
  guardian.SetLogFile(argv[3]);
  const auto port = static_cast<uint16_t>(std::atoi(argv[2]));
  QTcpSocket socket;
  bool holds = false;
  QTimer beat;
  QObject::connect(&beat, &QTimer::timeout, [&] {
    guardian.Beat();
    if (holds) return;
    holds = guardian.Hold(RigRecipe(port)) != 0;
    if (!holds) return;
    socket.connectToHost("127.0.0.1", port);
    if (socket.waitForConnected(500)) socket.write("+T 1\n");
    socket.waitForReadyRead(500);
    std::printf("holds\n");
    std::fflush(stdout);
  });
  beat.start(20);
  return QCoreApplication::exec();
}

}  // namespace velt
