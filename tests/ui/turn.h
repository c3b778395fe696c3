// What tests of windows need of the real loop and screen.
#pragma once

#include <QEventLoop>
#include <QImage>
#include <QMetaObject>
#include <QPixmap>
#include <QScreen>
#include <QWidget>

namespace velt {

// What was posted and what the form changed reach their places, what comes of that too.
inline void Turn() {
  for (int turn = 0; turn < 2; ++turn) {
    QEventLoop loop;
    QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    loop.exec();
  }
}

// What the window has painted so far.
inline QImage OnScreen(const QWidget& window) {
  return window.screen()->grabWindow(window.winId()).toImage();
}

}  // namespace velt
