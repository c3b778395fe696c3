// The strip under the display: a tick for each scale label and its text, if there is room for it.
#pragma once

#include <QWidget>

#include "form/main_form.h"

namespace velt {

class ScaleStrip : public QWidget {
 public:
  ScaleStrip(ControlArray<Label>& labels, QWidget* parent);

  // Stands at that place; reaches beyond it at both ends, so that the texts of the outer ticks are
  // as centred as the others.
  void ShowBelow(const Rectangle& place);

  // From the first label to the last: "0kHz to 22kHz".
  QString Range() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  // Every how many labels have a text: all, or every second, ..., whichever fits.
  int Stride(int widestText) const;

  ControlArray<Label>& labels_;
  Rectangle place_;
};

}  // namespace velt
