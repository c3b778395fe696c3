// The S-meter: a bar that rises in its frame.
#pragma once

#include <QWidget>

namespace velt {

class MeterWidget : public QWidget {
 public:
  explicit MeterWidget(QWidget* parent);

  // The bar's height in pixels; drawn no higher than the frame.
  void SetLevel(int pixels);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int Shown() const;

  int level_ = 0;
};

}  // namespace velt
