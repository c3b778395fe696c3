// The strip under the display: a tick and a text for each scale label.
#pragma once

#include <QWidget>

#include "form/main_form.h"

namespace velt {

class ScaleStrip : public QWidget {
 public:
  ScaleStrip(ControlArray<Label>& labels, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  ControlArray<Label>& labels_;
};

}  // namespace velt
