// The S-meter: a bar on a logarithmic scale with its marks.
#pragma once

#include "ui/live_widget.h"

namespace velt {

class MeterWidget : public LiveWidget {
 public:
  explicit MeterWidget(QWidget* parent);

  // The level in twips.
  void SetLevel(int32_t twips);

  // How much of the frame is filled, 0 to 100.
  int Percent() const;

 protected:
  void Paint(Canvas& canvas) override;
  void changeEvent(QEvent* event) override;

 private:
  int BarHeight() const;
  void DrawScale(QSize size);

  int32_t level_ = 0;
  int shownBar_ = 0;  // in pixels of the device, as painted last
  QImage scale_;      // everything but the bar, as painted last
};

}  // namespace velt
