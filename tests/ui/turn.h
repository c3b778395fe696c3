// What tests of windows need of the real loop and screen.
#pragma once

#include <QEventLoop>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QWidget>
#include <stdexcept>

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

// The window's widget of that accessible name, which what the widget shows may follow. Throws,
// which fails the test, when there is none.
inline QWidget& Find(const QWidget& window, const QString& name) {
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    if ((widget->accessibleName() + ": ").startsWith(name + ": ")) return *widget;
  }
  throw std::out_of_range("no " + name.toStdString());
}

}  // namespace velt
