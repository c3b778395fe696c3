// A round lamp. A text beside it has to say the same without colour.
#pragma once

#include <QWidget>

#include "form/controls.h"

namespace velt {

class LampWidget : public QWidget {
 public:
  static constexpr int kPixels = 14;

  explicit LampWidget(QWidget* parent, int pixels = kPixels);
  void SetColour(LampColour colour);
  QSize sizeHint() const override { return {pixels_, pixels_}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const int pixels_;
  LampColour colour_ = LampColour::Grey;
};

}  // namespace velt
