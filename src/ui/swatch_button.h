// A button that shows a colour.
#pragma once

#include <QPushButton>
#include <cstdint>

namespace velt {

class SwatchButton : public QPushButton {
 public:
  explicit SwatchButton(QWidget* parent);

  // 0xFFRRGGBB, or 0 for the desktop's own button face.
  void SetColour(uint32_t colour);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  uint32_t colour_ = 0;
};

}  // namespace velt
