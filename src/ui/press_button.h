// A button that acts when it is pressed and shows what came of that: a click alone does not turn it
// over. It can be lit in a colour that tells more than being pressed in. A text that is too long
// for it is written smaller, and ends with dots where that is not enough.
#pragma once

#include <QStyleOptionToolButton>
#include <QToolButton>

namespace velt {

class PressButton : public QToolButton {
 public:
  explicit PressButton(QWidget* parent);

  // Lit in that colour with white text; an invalid colour puts the light out.
  void SetLight(const QColor& colour);

 protected:
  void nextCheckState() override {}
  void initStyleOption(QStyleOptionToolButton* option) const override;
  // A tool tip begins with the text that does not fit.
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor light_;
};

}  // namespace velt
