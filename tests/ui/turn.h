// What tests of windows need of the real loop, screen and keyboard.
#pragma once

#include <QApplication>
#include <QEventLoop>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QTest>
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

// Shows what is to be shown by now and gives that window the keyboard.
inline void Activate(QWidget& window) {
  Turn();
  QApplication::setActiveWindow(&window);
}

// Presses a key in the widget with the keyboard.
inline void PressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  Turn();
}

inline void TypeText(const QString& text) {
  QTest::keyClicks(QApplication::focusWidget(), text);
}

// The accessible names that Tab comes by, so many from the widget with the keyboard on.
inline std::string TabWalk(int steps) {
  QStringList names;
  for (; steps > 0; --steps) {
    names << QApplication::focusWidget()->accessibleName();
    PressKey(Qt::Key_Tab);
  }
  return names.join('|').toStdString();
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
