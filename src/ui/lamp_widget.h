// A round lamp. A text beside it has to say the same without colour.
#pragma once

#include <QWidget>

#include "form/controls.h"

namespace velt {

class LampWidget : public QWidget {
 public:
  explicit LampWidget(QWidget* parent);
  void SetColour(LampColour colour);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  LampColour colour_ = LampColour::Grey;
};

}  // namespace velt
