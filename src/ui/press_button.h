// A button that acts when it is pressed and shows what came of that: a click alone does not turn it
// over.
#pragma once

#include <QToolButton>

namespace velt {

class PressButton : public QToolButton {
 public:
  explicit PressButton(QWidget* parent) : QToolButton(parent) {
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    setContextMenuPolicy(Qt::CustomContextMenu);
  }

 protected:
  void nextCheckState() override {}
};

}  // namespace velt
