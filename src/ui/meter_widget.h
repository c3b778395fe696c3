// The S-meter: a bar that rises in its frame.
#pragma once

#include "ui/live_widget.h"

namespace velt {

class MeterWidget : public LiveWidget {
 public:
  explicit MeterWidget(QWidget* parent);

  // The bar's height in pixels; drawn no higher than the frame.
  void SetLevel(int pixels);

  // How much of the frame is filled, 0 to 100.
  int Percent() const;

 protected:
  void Paint(Canvas& canvas) override;

 private:
  int Shown() const;

  int level_ = 0;
};

}  // namespace velt
