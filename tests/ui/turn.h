// Turns of the real loop, for tests of windows.
#pragma once

#include <QEventLoop>
#include <QMetaObject>

namespace velt {

// What was posted and what the form changed reach their places, what comes of that too.
inline void Turn() {
  for (int turn = 0; turn < 2; ++turn) {
    QEventLoop loop;
    QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    loop.exec();
  }
}

}  // namespace velt
